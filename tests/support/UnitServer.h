#pragma once

#include "services/bench/commands/Processor.h"
#include "services/bench/unit/HeadUnit.h"

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

/** A head unit on a thread of its own, without children, driven by commands; it notes what is published. */
class UnitServer {
public:
    explicit UnitServer(bench::unit::HeadUnitOptions options);
    ~UnitServer();

    /** An empty text, or why it cannot start. */
    std::string start();
    /** Runs one command to its end. Any thread but the head unit's. */
    struct Answer {
        int exit = 0;
        std::string out;
        std::string err;
    };
    Answer run(const std::vector<std::string>& words);
    /** Waits until the application has been resumed; false if that takes more than ten seconds. */
    bool waitReady();
    /** A copy of the composed screen. Any thread but the head unit's. */
    Image picture();
    /** Attribute lines written into `object` so far. */
    std::vector<std::string> published(const std::string& object) const;

private:
    EventLoop m_loop;
    std::unique_ptr<bench::unit::HeadUnit> m_unit;
    std::unique_ptr<bench::commands::Processor> m_processor;
    std::thread m_thread;
    mutable std::mutex m_mutex;
    std::map<std::string, std::vector<std::string>> m_published;
};

} // namespace zm::test
