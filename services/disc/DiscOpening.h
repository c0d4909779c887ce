#pragma once

#include "base/Mailbox.h"
#include "services/disc/medium/Medium.h"

#include <functional>
#include <memory>
#include <string>

namespace zm::disc {

/**
 * Opens discs on a thread of their own, as what they lie on may take as long as it likes for an answer. On the loop's
 * thread.
 */
class DiscOpening {
public:
    using Opened = Result<std::shared_ptr<medium::Medium>>;
    using Done = std::function<void(Opened medium)>;

    explicit DiscOpening(EventLoop& loop) : m_mailbox(std::make_shared<Mailbox>(loop)) {}
    ~DiscOpening() { m_mailbox->close(); }
    DiscOpening(const DiscOpening&) = delete;
    DiscOpening& operator=(const DiscOpening&) = delete;

    /** Opens the disc at `path` in place of one that is still being opened. `done` is called before this returns where the
     * disc answers at once, later on the loop where it does not. */
    void open(const std::string& path, Done done);
    /** What is still being opened is not wanted any more. */
    void forget() { ++m_number; }

private:
    std::shared_ptr<Mailbox> m_mailbox;
    uint64_t m_number = 0;
};

} // namespace zm::disc
