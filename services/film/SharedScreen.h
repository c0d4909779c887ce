#pragma once

#include "base/Image.h"
#include "base/Rect.h"
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
    static constexpr int Width = 800;
    static constexpr int Height = 480;
    using Fingers = std::array<Finger, 8>;

    /** New memory, all black, whose size can no longer be changed. */
    static Result<UniqueFd> make();
    /** `fd` came from `make`. */
    static Result<SharedScreen> open(int fd);

    /** What `frame` has inside `area`; by one process only. */
    void put(const Image& frame, Rect area);
    /** By the same. */
    void put(const Fingers& fingers);
    /**
     * The screen as it was at one moment, into a picture of that size; false if it changed whenever it was looked at.
     */
    bool take(Image& frame, Fingers& fingers) const;

private:
    struct Content;
    explicit SharedScreen(SharedMemory memory);
    Content& content() const;
    template <class Change>
    void change(const Change& make);

    SharedMemory m_memory;
};

} // namespace zm::film
