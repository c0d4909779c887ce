#include "services/bench/screen/Surface.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <string>
#include <utility>

namespace zm::bench::screen {

Result<Surface> Surface::map(const UniqueFd& memory, const SurfaceSize& size) {
    const bool sane = size.width > 0 && size.width <= LargestSide && size.height > 0 &&
                      size.height <= LargestSide && size.stride >= size.width * 4 &&
                      size.stride <= LargestSide * 8 && size.stride % 4 == 0;
    if (!sane) {
        return Error{"window of " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                     " pixels, stride " + std::to_string(size.stride) + ": not possible"};
    }
    // Without these seals the client could cut the file and each access behind its end would kill this
    // process.
    constexpr int Wanted = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;
    const int seals = ::fcntl(memory.get(), F_GET_SEALS);
    if (seals < 0 || (seals & Wanted) != Wanted) {
        return Error{"window memory: not a memfd sealed against shrinking, growing and further seals"};
    }
    struct stat info {};
    const size_t bytes = size.bufferBytes() * Buffers;
    if (::fstat(memory.get(), &info) != 0 || static_cast<size_t>(info.st_size) < bytes) {
        return Error{"window memory: " + std::to_string(info.st_size) + " bytes, " + std::to_string(bytes) +
                     " needed"};
    }
    void* pixels = ::mmap(nullptr, bytes, PROT_READ, MAP_SHARED, memory.get(), 0);
    if (pixels == MAP_FAILED) {
        return systemError("window memory");
    }
    Surface result;
    result.m_size = size;
    result.m_pixels = static_cast<const uint8_t*>(pixels);
    return result;
}

Surface::Surface(Surface&& other) noexcept
    : m_size(other.m_size), m_pixels(std::exchange(other.m_pixels, nullptr)) {}

Surface& Surface::operator=(Surface&& other) noexcept {
    std::swap(m_size, other.m_size);
    std::swap(m_pixels, other.m_pixels);
    return *this;
}

Surface::~Surface() {
    if (m_pixels) {
        ::munmap(const_cast<uint8_t*>(m_pixels), m_size.bufferBytes() * Buffers);
    }
}

} // namespace zm::bench::screen
