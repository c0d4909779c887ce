#include "services/disc/engine/ScreenFrames.h"

#include "services/disc/log/Log.h"

#include <poll.h>

#include <algorithm>

namespace zm::disc::engine {

namespace {

constexpr std::chrono::milliseconds RetryTime{500};
// A single picture must not be lost because the compositor is about to give a buffer back.
constexpr int BufferWaitMilliseconds = 100;

} // namespace

ScreenFrames::ScreenFrames(std::string socket) : m_socket(std::move(socket)) {}

bool ScreenFrames::connect() {
    if (m_client && !m_client->broken()) {
        return true;
    }
    m_window = nullptr;
    m_client.reset();
    const auto now = std::chrono::steady_clock::now();
    if (now < m_nextTry) {
        return false;
    }
    m_nextTry = now + RetryTime;
    auto client = ScreenClient::connect(m_socket, "video", std::chrono::milliseconds(0));
    if (!client) {
        return false;
    }
    SurfaceSpec spec;
    spec.name = "video";
    spec.width = PictureWidth;
    spec.height = PictureHeight;
    auto window = (*client)->makeWindow(spec);
    if (!window) {
        logWarning("video window: %s\n", window.error().c_str());
        return false;
    }
    m_client = std::move(*client);
    m_window = *window;
    return true;
}

uint8_t* ScreenFrames::freeBuffer() {
    uint8_t* buffer = m_window->freeBuffer();
    if (!buffer) {
        pollfd waiting{m_client->fd(), POLLIN, 0};
        ::poll(&waiting, 1, BufferWaitMilliseconds);
        buffer = m_window->freeBuffer();
    }
    return buffer;
}

void ScreenFrames::show(const DrawPicture& draw) {
    MutexLock lock(m_mutex);
    if (!connect()) {
        return;
    }
    uint8_t* buffer = freeBuffer();
    if (!buffer) {
        return;
    }
    draw(buffer, m_window->stride());
    commit();
    m_shown = true;
}

void ScreenFrames::commit() {
    if (auto shown = m_window->commitBuffer(); !shown) {
        logWarning("%s\n", shown.error().c_str());
    }
}

void ScreenFrames::clear() {
    MutexLock lock(m_mutex);
    uint8_t* buffer = m_shown && connect() ? freeBuffer() : nullptr;
    if (buffer) {
        std::fill_n(buffer, m_window->stride() * PictureHeight, uint8_t{0});
        commit();
    }
    m_shown = false;
}

} // namespace zm::disc::engine
