#pragma once

#include "base/Mailbox.h"
#include "base/Result.h"
#include "base/UniqueFd.h"
#include "platform/linux/pps/PpsFile.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace zm::disc {

/** Reads objects on a thread of its own and hands each new text to the loop, in order. */
class PpsInbox {
public:
    struct Watch {
        PpsFile* file; ///< outlives the inbox; nobody else reads it meanwhile
        std::function<void(std::string)> onText;
        std::function<void()> onNewObjects{}; ///< if set: told instead of a text where the objects are new
    };

    PpsInbox(std::vector<Watch> watches, std::shared_ptr<Mailbox> home);
    ~PpsInbox();
    /** Begins to read. An error when the system has no thread to give. */
    Status start();
    PpsInbox(const PpsInbox&) = delete;
    PpsInbox& operator=(const PpsInbox&) = delete;

private:
    void run();

    std::vector<Watch> m_watches;
    std::shared_ptr<Mailbox> m_home;
    UniqueFd m_stop;
    std::thread m_thread;
};

/** One attribute line of an object's text. */
struct AttributeLine {
    std::string name;
    std::string encoding;
    std::string value;
};

/** The attributes set in an object's text, in order; object lines and deletions are left out. */
std::vector<AttributeLine> attributesOf(std::string text);

} // namespace zm::disc
