#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"

#include <cstddef>
#include <cstdint>

namespace zm::bench::screen {

/** Size of a window's pixels: 32 bits each, rows of `stride` bytes. */
struct SurfaceSize {
    int width = 0;
    int height = 0;
    int stride = 0;
    size_t bufferBytes() const { return static_cast<size_t>(stride) * static_cast<size_t>(height); }
};

/** The three buffers of a client's window, mapped for reading from its sealed memfd. */
class Surface {
public:
    static constexpr int Buffers = 3;
    static constexpr int LargestSide = 2048;

    Surface() = default;
    /** Refuses sizes that make no sense, a file that is too short and one that could still be cut. */
    static Result<Surface> map(const UniqueFd& memory, const SurfaceSize& size);
    Surface(Surface&& other) noexcept;
    Surface& operator=(Surface&& other) noexcept;
    ~Surface();

    const SurfaceSize& size() const { return m_size; }
    /** First pixel of buffer 0..2. The client may be writing to it at any time: it is read once, never
     * trusted. */
    const uint8_t* buffer(int index) const {
        return m_pixels + m_size.bufferBytes() * static_cast<size_t>(index);
    }

private:
    SurfaceSize m_size;
    const uint8_t* m_pixels = nullptr;
};

} // namespace zm::bench::screen
