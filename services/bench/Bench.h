#pragma once

#include "platform/linux/slog/LogFile.h"
#include "services/bench/Options.h"
#include "services/bench/commands/CommandProcessor.h"
#include "services/bench/commands/CtlServer.h"
#include "services/bench/display/Display.h"
#include "services/bench/unit/HeadUnit.h"
#include "services/bench/web/WebServer.h"

#include <memory>

namespace zm {

/** The head unit with its two doors: ctl.sock and the page. Everything on the loop's thread. */
class Bench {
public:
    Bench(EventLoop& loop, BenchOptions options);
    ~Bench();

    /** Starts everything; an error says what stands in the way. */
    Status start();
    HeadUnit& unit() { return m_unit; }

private:
    void announce();
    Result<std::string> startPage();
    Status openDisplay();
    bool isPlaying();
    void runForPage(std::vector<std::string> words, std::function<void(WebBackend::Answer)> done);
    WebState::Sources pageSources();

    EventLoop& m_loop;
    const BenchOptions m_options;
    HeadUnit m_unit;
    CommandProcessor m_processor;
    CtlServer m_ctl;
    LogReader m_log;
    std::unique_ptr<WebServer> m_page;
    std::unique_ptr<bench::display::Display> m_display;
    std::string m_url;
    bool m_announced = false;
};

} // namespace zm
