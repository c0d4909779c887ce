#pragma once

#include "platform/linux/pps/PpsChange.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zm {

/**
 * Puts what was read from several objects, one after the other, into the order in which it was written. What
 * may still be preceded by something that is not read yet waits here.
 */
class ChangeOrder {
public:
    /** Takes what a read of an object gave. */
    void add(int object, PpsChanges read);
    /** Whether something waits. */
    bool waits() const { return !m_waiting.empty(); }
    /**
     * Takes out, in order, what nothing can precede any more. `unread` are the objects that had more to read
     * at some moment after all reads so far; all others had nothing.
     */
    std::vector<std::pair<int, std::string>> take(const std::vector<int>& unread);

private:
    struct Change {
        uint64_t number;
        int object;
        std::string text;
    };
    std::vector<Change> m_waiting;  ///< in order of their numbers
    std::map<int, uint64_t> m_upTo; ///< how far each object was read
};

} // namespace zm
