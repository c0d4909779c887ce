#pragma once

#include "base/Result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zm {

/** One change of one object, or its present state. */
struct PpsChange {
    /**
     * Its place among all changes of all objects: a change that was written later has a greater number, also
     * when the service was started anew in between. A present state has that of the latest change anywhere.
     */
    uint64_t number;
    std::string text;
};

/** What a read gave. */
struct PpsChanges {
    std::vector<PpsChange> changes;
    /** The reader knows all that was written up to this number. */
    uint64_t upTo = 0;

    /** All texts, one behind the other. */
    std::string text() const;
    /** What travels from the service to the reader. */
    std::string encoded() const;
    static Result<PpsChanges> decode(std::string_view encoded);
};

} // namespace zm
