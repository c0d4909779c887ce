#include "services/ctl/Shrink.h"

#include <algorithm>

namespace zm::ctl {

namespace {

using Selection = std::vector<size_t>;

// `all` without the part from `begin` to `end`.
Selection without(const Selection& all, size_t begin, size_t end) {
    Selection rest(all.begin(), all.begin() + static_cast<long>(begin));
    rest.insert(rest.end(), all.begin() + static_cast<long>(end), all.end());
    return rest;
}

} // namespace

// Ever smaller pieces are left out; a piece that is not needed is gone for good. From the end: what comes late often
// hangs on what came early, seldom the other way round.
Selection smallest(size_t count, const Try& tryOut) {
    Selection left(count);
    for (size_t i = 0; i < count; ++i) {
        left[i] = i;
    }
    for (size_t piece = std::max<size_t>(count / 2, 1); count > 0;) {
        bool smaller = false;
        for (size_t end = left.size(); end > 0;) {
            const size_t begin = end - std::min(piece, end);
            Selection rest = without(left, begin, end);
            if (const auto needed = rest.empty() ? std::nullopt : tryOut(rest)) {
                rest.resize(*needed);
                left = std::move(rest);
                smaller = true;
            }
            end = std::min(begin, left.size());
        }
        if (piece == 1 && !smaller) {
            break;
        }
        piece = piece == 1 ? 1 : piece / 2;
    }
    return left;
}

} // namespace zm::ctl
