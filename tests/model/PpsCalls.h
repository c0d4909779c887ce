#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** An object that was opened or closed, and how that ended. */
struct PpsCall {
    std::string path; ///< without options
    bool good = false;

    bool operator==(const PpsCall&) const = default;
};

void PrintTo(const PpsCall& call, std::ostream* out);

/** What this process opened and closed since the last call of the same function, oldest first. */
std::vector<PpsCall> takePpsOpenings();
std::vector<PpsCall> takePpsClosings();

/** The next closing of this object, which the platform never refuses, is told to have failed. */
void failPpsClosing(const std::string& path);

} // namespace zm::test
