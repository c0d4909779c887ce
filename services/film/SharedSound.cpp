#include "services/film/SharedSound.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>

namespace zm::film {

namespace {

constexpr Moment ListenTime = 3 * Second;
constexpr size_t Channels = 2;
constexpr size_t PieceFrames = 1024;
constexpr size_t Pieces = 128;

struct Piece {
    std::atomic<uint64_t> number; ///< one more than its place in all sound; 0 while it is written
    Moment moment;
    uint32_t rate;
    uint32_t frames;
    std::array<int16_t, PieceFrames * Channels> samples;
};

} // namespace

struct SharedSound::Content {
    std::atomic<Moment> listened;
    std::atomic<uint64_t> written;
    std::array<Piece, Pieces> pieces;
};

std::string SharedSound::pathIn(const std::string& runtimeDir) {
    return runtimeDir + "/sound";
}

Status SharedSound::make(const std::string& path) {
    const UniqueFd fd(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    return fd.valid() && ::ftruncate(fd.get(), sizeof(Content)) == 0 ? ok() : Status(systemError(path));
}

std::unique_ptr<SharedSound> SharedSound::open(const std::string& path) {
    const UniqueFd fd(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    struct stat info {};
    if (!fd.valid() || ::fstat(fd.get(), &info) != 0 || info.st_size != sizeof(Content)) {
        return nullptr;
    }
    auto memory = SharedMemory::map(fd.get(), sizeof(Content));
    return memory ? std::unique_ptr<SharedSound>(new SharedSound(std::move(*memory))) : nullptr;
}

SharedSound::SharedSound(SharedMemory memory) : m_memory(std::move(memory)) {}

SharedSound::Content& SharedSound::content() const {
    return *static_cast<Content*>(m_memory.bytes());
}

bool SharedSound::isListenedTo() const {
    const Moment listened = content().listened.load(std::memory_order_relaxed);
    return listened != 0 && now() - listened < ListenTime;
}

void SharedSound::write(Moment moment, uint32_t rate, std::span<const int16_t> samples) {
    for (size_t done = 0; done < samples.size();) {
        const size_t count = std::min(samples.size() - done, PieceFrames * Channels);
        const uint64_t number = content().written.fetch_add(1);
        Piece& piece = content().pieces[number % Pieces];
        piece.number.store(0, std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_release);
        piece.moment = moment + static_cast<Moment>(done / Channels) * Second / rate;
        piece.rate = rate;
        piece.frames = static_cast<uint32_t>(count / Channels);
        std::ranges::copy(samples.subspan(done, count), piece.samples.begin());
        piece.number.store(number + 1, std::memory_order_release);
        done += count;
    }
}

void SharedSound::listen() {
    content().listened.store(now(), std::memory_order_relaxed);
}

uint64_t SharedSound::next() const {
    return content().written.load();
}

bool SharedSound::read(uint64_t& next, HeardSound& sound) const {
    const uint64_t end = content().written.load(std::memory_order_acquire);
    if (end - next > Pieces) {
        next = end - std::min<uint64_t>(end, Pieces);
    }
    while (next < end) {
        const Piece& piece = content().pieces[next % Pieces];
        const uint64_t before = piece.number.load(std::memory_order_acquire);
        if (before < next + 1 && end - next < Pieces / 2) {
            return false; // it is being written
        }
        sound.moment = piece.moment;
        sound.rate = piece.rate;
        const size_t frames = std::min<size_t>(piece.frames, PieceFrames);
        sound.samples.assign(piece.samples.begin(),
                             piece.samples.begin() + static_cast<long>(frames * Channels));
        std::atomic_thread_fence(std::memory_order_acquire);
        const bool whole = before == next + 1 && piece.number.load(std::memory_order_relaxed) == before;
        ++next;
        if (whole) {
            return true;
        }
    }
    return false;
}

} // namespace zm::film
