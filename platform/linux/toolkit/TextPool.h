#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zm {

/**
 * Many texts in one piece of memory, so that a text costs no allocation of its own. A text that is dropped
 * leaves its bytes unused until the pool is packed.
 */
class TextPool {
public:
    /** Where a text stands; that of the empty text to begin with. */
    struct Place {
        uint32_t start = 0;
        uint32_t size = 0;
    };

    /** Adds the text as UTF-8. */
    Place add(const wchar_t* text);
    std::string_view at(Place place) const {
        return std::string_view(m_bytes).substr(place.start, place.size);
    }
    void drop(Place place) { m_unused += place.size; }
    void clear();

    /** Whether so much is unused that packing is worth while. */
    bool wasteful() const;
    /** Adds the text at `place` of another pool. */
    Place take(const TextPool& from, Place place);

private:
    std::string m_bytes;
    size_t m_unused = 0;
};

} // namespace zm
