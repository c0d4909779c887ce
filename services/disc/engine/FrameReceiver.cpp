#include "services/disc/engine/FrameReceiver.h"

#include "base/Threads.h"
#include "services/disc/engine/DecoderWire.h"
#include "services/disc/log/Log.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace zm::disc::engine {

FrameReceiver::FrameReceiver(std::shared_ptr<FrameSink> sink) : m_sink(std::move(sink)) {}

FrameReceiver::~FrameReceiver() {
    if (m_thread.joinable()) {
        m_loop.quit();
        m_thread.join();
    }
}

bool FrameReceiver::run() {
    if (m_thread.joinable()) {
        return true;
    }
    auto thread = startThread("pictures: no thread can be started", [this] {
        m_loop.run();
        m_watch.reset();
    });
    if (!thread) {
        logError("%s\n", thread.error().c_str());
        return false;
    }
    m_thread = std::move(*thread);
    return true;
}

void FrameReceiver::attach(UniqueFd notes, UniqueFd pictures) {
    m_loop.post([this, fd = notes.release(), memory = std::make_shared<UniqueFd>(std::move(pictures))] {
        m_watch.reset();
        m_notes.reset(fd);
        m_pictures = std::make_unique<SharedPictures>(memory->get());
        m_watch = watchFd(m_loop, fd, IoEvent::Readable, [this] { receive(); });
    });
}

void FrameReceiver::receive() {
    wire::FrameNote note;
    const ssize_t count = ::recv(m_notes.get(), &note, sizeof note, MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    const uint8_t* picture =
        count == sizeof note && note.slot < wire::Slots ? m_pictures->slot(note.slot) : nullptr;
    if (!picture) {
        m_watch.reset(); // the process has ended, or says what it should not
        return;
    }
    if (note.item == m_item) {
        m_sink->show(copyOf(picture, wire::Stride));
    }
    // A picture that is not given back is one less for the film.
    TEMP_FAILURE_RETRY(::send(m_notes.get(), &note, sizeof note, MSG_DONTWAIT | MSG_NOSIGNAL));
}

void FrameReceiver::clear() {
    m_loop.post([this] { m_sink->clear(); });
}

} // namespace zm::disc::engine
