#include "services/bench/Bench.h"

#include "base/Paths.h"
#include "services/bench/web/OpenPage.h"

#include <cstdio>

namespace zm::bench {

namespace {

constexpr int UsualPort = 8480;
constexpr size_t PageLogLines = 500;
constexpr std::chrono::seconds CommandTime(60);

Json logJson(const std::vector<LogEntry>& entries) {
    Json result = Json::array();
    for (const auto& entry : entries) {
        result.push_back({{"severity", entry.severity}, {"process", entry.process}, {"text", entry.text}});
    }
    return result;
}

} // namespace

Bench::Bench(EventLoop& loop, Options options)
    : m_loop(loop), m_options(std::move(options)), m_unit(loop, m_options.unit),
      m_processor(m_unit, startLine(m_options)),
      m_ctl(loop, ctlSocket(m_options.unit.runtimeDir), m_processor),
      m_log(logFile(m_options.unit.runtimeDir)) {}

Bench::~Bench() = default;

Status Bench::start() {
    m_unit.onReady = [this] { announce(); };
    if (m_options.web) {
        auto url = startPage();
        if (!url) {
            return url.failure();
        }
        m_url = *url;
    }
    if (m_options.display) {
        if (auto opened = openDisplay(); !opened) {
            return opened;
        }
    }
    m_unit.compositor().onDamage = [this](Rect area) {
        if (m_page) {
            m_page->screen().damaged(area);
        }
        if (m_display) {
            m_display->damaged(area);
        }
        m_processor.film().damaged(area);
    };
    if (m_options.commands) {
        if (auto prepared = m_processor.film().prepare(); !prepared) {
            return prepared;
        }
    }
    if (auto started = m_unit.start(); !started) {
        return started;
    }
    if (m_options.mpris) {
        if (auto joined = joinDesktop(); !joined) {
            return joined;
        }
    }
    return m_options.commands ? m_ctl.start() : ok();
}

// Standard output is read by whoever waits for the bench: one line, once.
void Bench::announce() {
    if (std::exchange(m_announced, true)) {
        return;
    }
    if (onReady) {
        onReady();
    }
    std::printf(m_url.empty() ? "ready\n" : "ready %s\n", m_url.c_str());
    std::fflush(stdout);
    if (m_options.open) {
        if (const auto opened = web::openPage(m_url, m_options.unit.runtimeDir); !opened) {
            std::fprintf(stderr, "zmbench: no browser could be opened: %s\n", opened.error().c_str());
        }
    }
}

Result<std::string> Bench::startPage() {
    web::Backend backend{
        [this](std::vector<std::string> words, std::function<void(web::Backend::Answer)> done) {
            runCommand(std::move(words), std::move(done));
        },
        m_unit.compositor(), pageSources(), m_processor.film().pageFile()};
    m_page = std::make_unique<web::Server>(m_loop, std::move(backend), m_options.unit.shareDir + "/web",
                                           m_options.unit.runtimeDir + "/page-token");
    m_unit.onPpsChange = [this](const std::string& object, const std::string& text) {
        m_page->state().ppsChanged(object, text);
    };
    m_unit.launcher().onRequest = [this](const Json& request) { m_page->state().requested(request); };
    if (m_options.port) {
        return m_page->start(*m_options.port);
    }
    // The same one each time, so that a bookmark and a tunnel find it; a second bench takes another.
    auto url = m_page->start(UsualPort);
    return url ? url : m_page->start(0);
}

void Bench::runCommand(std::vector<std::string> words, std::function<void(web::Backend::Answer)> done) {
    auto answer = std::make_shared<web::Backend::Answer>();
    auto limit = std::make_shared<SourceHandle>();
    auto run = std::make_shared<commands::Run>(
        std::move(words), "/",
        commands::Run::Sink{[answer](const std::string& text) { answer->out += text; },
                            [answer](const std::string& text) { answer->err += text; },
                            [answer, limit, done = std::move(done)](int status) {
                                limit->reset();
                                answer->exit = status;
                                done(*answer);
                            }});
    // A page gets its answer in one piece: a command that follows something must not collect for ever.
    *limit = afterDelay(m_loop, CommandTime, [run] { run->fail("the command does not end by itself"); });
    m_processor.execute(run);
}

Status Bench::openDisplay() {
    m_display = std::make_unique<display::Display>(
        m_loop, m_unit.compositor(),
        display::Display::Actions{
            [this](std::vector<std::string> words) { runCommand(std::move(words), [](const auto&) {}); },
            [this] { return isPlaying(); }, [this] { m_loop.quit(); }});
    auto opened = m_display->open(m_options.fullScreen);
    return opened ? std::move(opened) : Status(Error{"--display: " + opened.error()});
}

Status Bench::joinDesktop() {
    m_mpris = std::make_unique<mpris::Mpris>(
        m_loop, mpris::Mpris::Unit{m_unit.ppsSocket(),
                                   [this](std::vector<std::string> words) {
                                       runCommand(std::move(words), [](const auto&) {});
                                   },
                                   [this] { return m_unit.sound().volume(); }});
    m_unit.sound().onTurned = [this] { m_mpris->volumeChanged(); };
    const auto said = m_mpris->start();
    if (!said) {
        return said.failure();
    }
    if (!said->empty()) {
        std::fprintf(stderr, "zmbench: %s\n", said->c_str());
    }
    return ok();
}

bool Bench::isPlaying() {
    auto status = PpsFile::open(m_unit.ppsSocket(), "/pps/zelmar/disc/status", 0, 0);
    const auto text = status ? status->read() : Result<std::string>(std::string());
    return text && text->find("\ndiscstate::2\n") != std::string::npos;
}

web::State::Sources Bench::pageSources() {
    web::State::Sources sources;
    sources.state = [this] {
        Json state = m_unit.state();
        state["recording"] = m_processor.recording().target();
        state["film"] = m_processor.film().target();
        state["pageFilm"] = m_processor.film().pageFile();
        return state;
    };
    sources.objects = [this] {
        std::vector<std::pair<std::string, std::string>> objects;
        const auto names = ppsList(m_unit.ppsSocket());
        for (const auto& name : names ? *names : std::vector<std::string>()) {
            auto file = PpsFile::open(m_unit.ppsSocket(), "/pps/" + name, 0, 0);
            const auto text = file ? file->read() : Result<std::string>(std::string());
            objects.emplace_back(name, text ? *text : std::string());
        }
        return objects;
    };
    sources.logTail = [this] {
        return logJson(LogReader(logFile(m_options.unit.runtimeDir)).last(PageLogLines));
    };
    sources.newLog = [this] { return logJson(m_log.readNew()); };
    return sources;
}

} // namespace zm::bench
