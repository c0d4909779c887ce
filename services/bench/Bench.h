#pragma once

#include "platform/linux/slog/LogFile.h"
#include "services/bench/Options.h"
#include "services/bench/commands/CtlServer.h"
#include "services/bench/commands/Processor.h"
#include "services/bench/display/Display.h"
#include "services/bench/mpris/Mpris.h"
#include "services/bench/unit/HeadUnit.h"
#include "services/bench/web/Server.h"

#include <memory>

namespace zm::bench {

/** The head unit with its two interfaces, ctl.sock and the page. Everything on the loop's thread. */
class Bench {
public:
    Bench(EventLoop& loop, Options options);
    ~Bench();

    /** Called once, when the screen can be used. */
    std::function<void()> onReady;
    /** Starts everything; an error says what stands in the way. */
    Status start();
    unit::HeadUnit& unit() { return m_unit; }

private:
    void announce();
    Result<std::string> startPage();
    Status openDisplay();
    Status joinDesktop();
    bool isPlaying();
    void runCommand(std::vector<std::string> words, std::function<void(web::Backend::Answer)> done);
    web::State::Sources pageSources();

    EventLoop& m_loop;
    const Options m_options;
    unit::HeadUnit m_unit;
    commands::Processor m_processor;
    commands::CtlServer m_ctl;
    LogReader m_log;
    std::unique_ptr<web::Server> m_page;
    std::unique_ptr<display::Display> m_display;
    std::unique_ptr<mpris::Mpris> m_mpris;
    std::string m_url;
    bool m_announced = false;
};

} // namespace zm::bench
