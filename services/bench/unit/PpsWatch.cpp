#include "services/bench/unit/PpsWatch.h"

namespace zm::bench::unit {

namespace {

constexpr int ReadOnlyCreate = 256;
constexpr std::chrono::milliseconds ReconnectInterval(100);

} // namespace

Result<std::unique_ptr<PpsWatch>> PpsWatch::open(EventLoop& loop, const std::string& socket,
                                                 const std::string& object, Callback onText) {
    auto file = PpsFile::open(socket, "/pps/" + object + "?delta", ReadOnlyCreate, 0666);
    if (!file) {
        return file.failure();
    }
    return std::unique_ptr<PpsWatch>(new PpsWatch(loop, std::move(*file), std::move(onText)));
}

PpsWatch::PpsWatch(EventLoop& loop, PpsFile file, Callback onText)
    : m_loop(loop), m_file(std::move(file)), m_onText(std::move(onText)) {
    arm();
}

void PpsWatch::arm() {
    const int fd = m_file.pollFd();
    if (fd >= 0) {
        m_source = watchFd(m_loop, fd, IoEvent::Readable, [this] {
            drain();
            arm();
        });
    } else {
        m_source = afterDelay(m_loop, ReconnectInterval, [this] { arm(); });
    }
}

void PpsWatch::drain() {
    for (auto text = m_file.read(); text && !text->empty(); text = m_file.read()) {
        m_onText(*text);
    }
}

} // namespace zm::bench::unit
