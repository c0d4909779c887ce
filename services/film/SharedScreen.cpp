#include "services/film/SharedScreen.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <thread>

namespace zm::film {

namespace {

// A change takes a fraction of a millisecond, unless whoever makes it has to wait for a processor.
constexpr int Looks = 20;
constexpr std::chrono::microseconds Pause(300);

// What comes first in the memory; the pixels follow.
constexpr size_t Head = 4096;

size_t pixelBytes(ScreenSize size) {
    return size_t{4} * static_cast<size_t>(size.width) * static_cast<size_t>(size.height);
}

} // namespace

struct SharedScreen::Content {
    ScreenSize size;               ///< never changes
    std::atomic<uint64_t> changes; ///< odd while one is being made
    Fingers fingers;
};

Result<UniqueFd> SharedScreen::make(ScreenSize size) {
    static_assert(sizeof(Content) <= Head);
    const auto bytes = static_cast<off_t>(Head + pixelBytes(size));
    UniqueFd fd(::memfd_create("screen", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!fd.valid() || ::ftruncate(fd.get(), bytes) != 0 ||
        ::fcntl(fd.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return systemError("shared screen");
    }
    if (::pwrite(fd.get(), &size, sizeof size, offsetof(Content, size)) != sizeof size) {
        return systemError("shared screen");
    }
    return fd;
}

Result<SharedScreen> SharedScreen::open(int fd) {
    ScreenSize size;
    if (::pread(fd, &size, sizeof size, offsetof(Content, size)) != sizeof size) {
        return systemError("shared screen");
    }
    auto memory = SharedMemory::map(fd, Head + pixelBytes(size));
    if (!memory) {
        return memory.failure();
    }
    return SharedScreen(std::move(*memory), size);
}

SharedScreen::SharedScreen(SharedMemory memory, ScreenSize size)
    : m_memory(std::move(memory)), m_size(size) {}

SharedScreen::Content& SharedScreen::content() const {
    return *static_cast<Content*>(m_memory.bytes());
}

uint8_t* SharedScreen::pixels() const {
    return static_cast<uint8_t*>(m_memory.bytes()) + Head;
}

template <class Change>
void SharedScreen::change(const Change& make) {
    auto& changes = content().changes;
    changes.fetch_add(1, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
    make();
    changes.fetch_add(1, std::memory_order_release);
}

void SharedScreen::put(const Image& frame, Rect area) {
    const Rect inside = area.intersected(m_size.area()).intersected({0, 0, frame.width, frame.height});
    change([&] {
        for (int y = inside.y; y < inside.y + inside.h; ++y) {
            std::memcpy(pixels() + y * stride() + size_t{4} * inside.x, frame.at(inside.x, y),
                        size_t{4} * inside.w);
        }
    });
}

void SharedScreen::put(const Fingers& fingers) {
    change([&] { content().fingers = fingers; });
}

bool SharedScreen::take(Image& frame, Fingers& fingers) const {
    const auto& changes = content().changes;
    for (int look = 0; look < Looks; ++look) {
        const uint64_t before = changes.load(std::memory_order_acquire);
        if (before % 2 == 0) {
            fingers = content().fingers;
            std::memcpy(frame.pixels.data(), pixels(), pixelBytes(m_size));
            std::atomic_thread_fence(std::memory_order_acquire);
            if (changes.load(std::memory_order_relaxed) == before) {
                return true;
            }
        }
        std::this_thread::sleep_for(Pause);
    }
    return false;
}

} // namespace zm::film
