#pragma once

#include "base/Result.h"

#include <sys/resource.h>

#include <initializer_list>
#include <utility>

namespace zm::jail {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
/** The sanitizers of addresses and threads need more memory and files than a jail leaves. */
inline constexpr bool Possible = false;
#else
inline constexpr bool Possible = true;
#endif

/** Sets each limit for the rest of this process's life, soft and hard. An error when the system refuses one. */
inline Status limit(std::initializer_list<std::pair<__rlimit_resource, rlim_t>> limits) {
    for (const auto& [what, most] : limits) {
        const rlimit both{most, most};
        if (::setrlimit(what, &both) != 0) {
            return systemError("a limit");
        }
    }
    return ok();
}

} // namespace zm::jail
