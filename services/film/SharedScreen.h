#pragma once

#include "base/Image.h"
#include "base/Rect.h"
#include "base/ScreenSize.h"
#include "services/film/Moment.h"
#include "services/film/SharedMemory.h"

#include <array>
#include <cstdint>

namespace zm::film {

/** A finger on the screen: where it came down, where it is, or was lifted. */
struct Finger {
    int32_t fromX = 0;
    int32_t fromY = 0;
    int32_t x = 0;
    int32_t y = 0;
    Moment lifted = 0; ///< in the future while it is down; 0: none has been there
};

/**
 * The composed screen and the latest fingers, on their way from the bench to whoever films it. Neither waits for the
 * other: a reader that meets a change looks again.
 */
class SharedScreen {
public:
    using Fingers = std::array<Finger, 8>;

    /** New memory, all black, whose size can no longer be changed. */
    static Result<UniqueFd> make(ScreenSize size = {});
    /** `fd` came from `make`. */
    static Result<SharedScreen> open(int fd);

    /** What `frame` has inside `area`; by one process only. */
    void put(const Image& frame, Rect area);
    const ScreenSize& size() const { return m_size; }
    /** By the same. */
    void put(const Fingers& fingers);
    /**
     * The screen as it was at one moment, into a picture of that size; false if it changed whenever it was looked at.
     */
    bool take(Image& frame, Fingers& fingers) const;

private:
    struct Content;
    SharedScreen(SharedMemory memory, ScreenSize size);
    Content& content() const;
    template <class Change>
    void change(const Change& make);

    size_t stride() const { return size_t{4} * static_cast<size_t>(m_size.width); }
    uint8_t* pixels() const;

    SharedMemory m_memory;
    ScreenSize m_size;
};

} // namespace zm::film
