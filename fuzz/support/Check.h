#pragma once

#include <cstdio>
#include <cstdlib>

namespace zm::fuzz {

/** What has to hold for every input: the target ends with `what` as a finding if it does not. */
inline void check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "check failed: %s\n", what);
        std::abort();
    }
}

} // namespace zm::fuzz
