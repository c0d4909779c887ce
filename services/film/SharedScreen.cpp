#include "services/film/SharedScreen.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <atomic>
#include <cstring>
#include <thread>

namespace zm::film {

namespace {

// A change takes a fraction of a millisecond, unless whoever makes it has to wait for a processor.
constexpr int Looks = 20;
constexpr std::chrono::microseconds Pause(300);

constexpr size_t Stride = size_t{4} * SharedScreen::Width;

} // namespace

struct SharedScreen::Content {
    std::atomic<uint64_t> changes; ///< odd while one is being made
    Fingers fingers;
    std::array<uint8_t, Stride * Height> pixels;
};

Result<UniqueFd> SharedScreen::make() {
    UniqueFd fd(::memfd_create("screen", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!fd.valid() || ::ftruncate(fd.get(), sizeof(Content)) != 0 ||
        ::fcntl(fd.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return systemError("shared screen");
    }
    return fd;
}

Result<SharedScreen> SharedScreen::open(int fd) {
    auto memory = SharedMemory::map(fd, sizeof(Content));
    if (!memory) {
        return memory.failure();
    }
    return SharedScreen(std::move(*memory));
}

SharedScreen::SharedScreen(SharedMemory memory) : m_memory(std::move(memory)) {}

SharedScreen::Content& SharedScreen::content() const {
    return *static_cast<Content*>(m_memory.bytes());
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
    const Rect inside =
        area.intersected({0, 0, Width, Height}).intersected({0, 0, frame.width, frame.height});
    change([&] {
        for (int y = inside.y; y < inside.y + inside.h; ++y) {
            std::memcpy(content().pixels.data() + y * Stride + size_t{4} * inside.x, frame.at(inside.x, y),
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
            std::memcpy(frame.pixels.data(), content().pixels.data(), content().pixels.size());
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
