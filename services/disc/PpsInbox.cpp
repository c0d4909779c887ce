#include "services/disc/PpsInbox.h"

#include "base/Threads.h"
#include "sys/pps.h"

#include <poll.h>
#include <sys/eventfd.h>

namespace zm::disc {

namespace {

// While the service is away there is nothing to wait on.
constexpr int ReconnectMilliseconds = 100;

} // namespace

PpsInbox::PpsInbox(std::vector<Watch> watches, std::shared_ptr<Mailbox> home)
    : m_watches(std::move(watches)), m_home(std::move(home)), m_stop(::eventfd(0, EFD_CLOEXEC)) {}

PpsInbox::~PpsInbox() {
    ::eventfd_write(m_stop.get(), 1);
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

Status PpsInbox::start() {
    auto thread = startThread("the objects cannot be read, no thread can be started", [this] { run(); });
    if (!thread) {
        return thread.failure();
    }
    m_thread = std::move(*thread);
    return ok();
}

void PpsInbox::run() {
    for (;;) {
        std::vector<pollfd> waiting{{m_stop.get(), POLLIN, 0}};
        int timeout = -1;
        for (const auto& watch : m_watches) {
            const int fd = watch.file->pollFd();
            timeout = fd < 0 ? ReconnectMilliseconds : timeout;
            waiting.push_back({fd, POLLIN, 0});
        }
        ::poll(waiting.data(), waiting.size(), timeout);
        if (waiting.front().revents) {
            return;
        }
        for (size_t i = 0; i < m_watches.size(); ++i) {
            auto& watch = m_watches[i];
            if (waiting[i + 1].fd >= 0 && !waiting[i + 1].revents) {
                continue;
            }
            auto text = watch.file->read();
            if (watch.onNewObjects && watch.file->reconnected()) {
                m_home->post(watch.onNewObjects);
                continue;
            }
            if (text && !text->empty()) {
                m_home->post([onText = watch.onText, text = std::move(*text)] { onText(text); });
            }
        }
    }
}

std::vector<AttributeLine> attributesOf(std::string text) {
    std::vector<AttributeLine> lines;
    char* rest = text.data();
    pps_attrib_t line{};
    pps_status_t status;
    while ((status = ppsparse(&rest, nullptr, nullptr, &line, 0)) != PPS_END && status != PPS_ERROR) {
        if (status == PPS_ATTRIBUTE) {
            lines.push_back(
                {line.attr_name, line.encoding ? line.encoding : "", line.value ? line.value : ""});
        }
    }
    return lines;
}

} // namespace zm::disc
