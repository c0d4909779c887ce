#pragma once

#include "base/Rect.h"
#include "base/Result.h"
#include "base/UniqueFd.h"

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zm {

/** The connection that a window's frames take. */
class ScreenLink {
public:
    virtual ~ScreenLink() = default;
    virtual Status send(const nlohmann::json& message, const std::vector<int>& fds = {}) = 0;
    /** Takes in what the compositor sent (buffers given back), without waiting. */
    virtual Status receive() = 0;
};

/** What a new window is like. */
struct SurfaceSpec {
    std::string name;
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    int order = 1;  ///< higher is in front
    bool alpha = false;
    bool visible = true;
};

/**
 * A window and its three shared buffers of premultiplied ARGB32 pixels (B G R A in memory). There are two
 * ways to fill it, one of which a window keeps to:
 * - pages: draw into `surface`, which keeps its content, and `present` what changed;
 * - video: take `freeBuffer`, write a whole frame into it, `commitBuffer`.
 */
class ScreenWindow {
public:
    /** `link` outlives the window. */
    ScreenWindow(ScreenLink& link, int number, SurfaceSpec spec);
    ~ScreenWindow();
    ScreenWindow(const ScreenWindow&) = delete;
    ScreenWindow& operator=(const ScreenWindow&) = delete;

    int number() const { return m_number; }
    const SurfaceSpec& spec() const { return m_spec; }
    /** Bytes from one row to the next, of the surface and of each buffer. */
    int stride() const { return m_stride; }

    /** The private surface, `stride` * height bytes, black and transparent at first. */
    uint8_t* surface();
    /**
     * Shows the surface's `damage` (and what earlier calls could not show) as a new frame. With all buffers
     * at the compositor the damage waits; `waiting` is then true and a later call shows it. No damage, no
     * frame.
     */
    Status present(const std::vector<Rect>& damage);
    /** Whether damage waits for a free buffer. */
    bool waiting() const { return m_waiting; }

    /** A buffer that the compositor does not hold, or null when there is none at the moment. */
    uint8_t* freeBuffer();
    /** Shows the buffer that `freeBuffer` gave last as a whole new frame. */
    Status commitBuffer();

    /** Frames committed so far. */
    int64_t frames() const { return m_seq; }

    /** Makes the sealed memory and maps it, once, before anything is shown; gives its descriptor. */
    Result<UniqueFd> allocate();
    /** The compositor has given back what was committed with number `seq`. */
    void released(int buffer, int64_t seq);

private:
    Status commit(int buffer, const std::vector<Rect>& damage);
    int freeIndex() const;
    void copyFromSurface(int buffer, const Rect& area);
    uint8_t* bufferPixels(int buffer) const;

    struct Buffer {
        bool held = false;       ///< at the compositor
        int64_t seq = 0;         ///< of its latest commit
        std::vector<Rect> stale; ///< where it is older than the surface
    };

    ScreenLink& m_link;
    int m_number;
    SurfaceSpec m_spec;
    int m_stride;
    size_t m_bufferBytes;
    uint8_t* m_memory = nullptr;
    std::vector<uint8_t> m_surface;
    std::array<Buffer, 3> m_buffers;
    std::vector<Rect> m_waitingDamage;
    bool m_waiting = false;
    int m_taken = -1;
    int64_t m_seq = 0;
};

} // namespace zm
