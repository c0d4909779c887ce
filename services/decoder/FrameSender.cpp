#include "services/decoder/FrameSender.h"

#include "services/disc/engine/DecoderWire.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>

namespace zm::decoder {

using namespace zm::disc::engine;

namespace {

// The service shows a picture within this time, or it is not worth waiting for.
constexpr int WaitMilliseconds = 200;

} // namespace

FrameSender::FrameSender() : m_pictures(wire::RingFd) {
    static_assert(std::tuple_size_v<decltype(m_away)> == wire::Slots);
}

void FrameSender::begin(uint64_t item) {
    MutexLock lock(m_mutex);
    m_item = item;
}

void FrameSender::takeBack() {
    wire::FrameNote note;
    while (::recv(wire::FramesFd, &note, sizeof note, MSG_DONTWAIT) == sizeof note) {
        m_away.at(note.slot) = false;
    }
}

void FrameSender::show(const DrawPicture& draw) {
    MutexLock lock(m_mutex);
    takeBack();
    auto place = std::find(m_away.begin(), m_away.end(), false);
    if (place == m_away.end()) {
        pollfd waiting{wire::FramesFd, POLLIN, 0};
        ::poll(&waiting, 1, WaitMilliseconds);
        takeBack();
        place = std::find(m_away.begin(), m_away.end(), false);
    }
    const auto slot = static_cast<uint64_t>(place - m_away.begin());
    uint8_t* picture = place != m_away.end() ? m_pictures.slot(slot) : nullptr;
    if (!picture) {
        return;
    }
    draw(picture, wire::Stride);
    const wire::FrameNote note{m_item, slot};
    *place = ::send(wire::FramesFd, &note, sizeof note, MSG_NOSIGNAL) == sizeof note;
}

} // namespace zm::decoder
