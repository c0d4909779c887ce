#include "services/bench/film/Film.h"

#include "base/JsonMessage.h"
#include "services/film/SharedSound.h"

#include <nlohmann/json.hpp>

#include <sys/wait.h>

#include <cstdio>
#include <cstring>
#include <utility>

namespace zm::bench::film {

namespace {

// "film.webm: 12.3 s, 369 frames, none dropped".
std::string summary(const std::string& path, const Json& film) {
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.1f", film.value("milliseconds", 0) / 1000.0);
    const auto dropped = film.value("dropped", int64_t{0});
    return path + ": " + seconds + " s, " + std::to_string(film.value("frames", int64_t{0})) + " frames, " +
           (dropped == 0 ? "none" : std::to_string(dropped)) + " dropped";
}

std::string endOf(int status) {
    return WIFSIGNALED(status) ? std::string("was ended by: ") + ::strsignal(WTERMSIG(status))
                               : "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

Film::Film(EventLoop& loop, screen::Compositor& compositor, std::string program, std::string runtimeDir)
    : m_loop(loop), m_compositor(compositor), m_program(std::move(program)),
      m_runtimeDir(std::move(runtimeDir)) {}

Film::~Film() {
    m_process.reset();
    // Nobody can fetch it any more.
    std::remove(pageFile().c_str());
}

Status Film::prepare() {
    return zm::film::SharedSound::make(zm::film::SharedSound::pathIn(m_runtimeDir));
}

std::string Film::pageFile() const {
    return m_runtimeDir + "/page-film.webm";
}

std::string Film::running() const {
    return m_process ? m_order.path : "";
}

void Film::begin(FilmOrder order, std::function<void(const Status&)> begun) {
    if (m_process) {
        begun(Error{"a film is being made already: " + m_order.path + "; \"zmctl film --stop\" ends that"});
        return;
    }
    auto memory = zm::film::SharedScreen::make(m_compositor.size());
    auto screen = memory ? zm::film::SharedScreen::open(memory->get())
                         : Result<zm::film::SharedScreen>(memory.failure());
    if (!screen) {
        begun(screen.failure());
        return;
    }
    std::vector<std::string> arguments{zm::film::SharedSound::pathIn(m_runtimeDir), order.path};
    if (order.overwrite) {
        arguments.emplace_back("--overwrite");
    }
    auto process = FilmProcess::launch(m_loop, m_program, arguments, memory->get());
    if (!process) {
        begun(process.failure());
        return;
    }
    m_screen = std::make_unique<zm::film::SharedScreen>(std::move(*screen));
    m_screen->put(m_compositor.compose(), m_compositor.size().area());
    m_screen->put(m_touches.latest());
    m_process = std::move(*process);
    m_process->onMessage = [this](const std::string& text) { heard(text); };
    m_process->onGone = [this](int status) { gone(status); };
    m_order = std::move(order);
    m_begun = std::move(begun);
    m_said.reset();
    m_told.reset();
}

void Film::heard(const std::string& text) {
    const Json message = parseMessage(text);
    const std::string kind = message.is_object() ? message.value("t", "") : "";
    if (kind == "begun" && m_begun) {
        if (m_order.length) {
            m_limit = afterDelay(m_loop, *m_order.length, [this] { m_process->end(); });
        }
        std::exchange(m_begun, nullptr)(ok());
    } else if (kind == "refused") {
        m_told = Error{message.value("why", "")};
    } else if (kind == "ended") {
        const std::string said = summary(m_order.path, message);
        const std::string failure = message.value("failure", "");
        m_told =
            failure.empty()
                ? Result<std::string>(said + "\n")
                : Error{"the film ended early: " + failure + "; what was filmed until then is in " + said};
    }
}

void Film::gone(int status) {
    m_limit.reset();
    m_screen.reset();
    // It is called from there.
    m_loop.post([process = std::shared_ptr<FilmProcess>(std::move(m_process))] {});
    auto said = m_told.value_or(Result<std::string>(
        Error{"zmfilm " + endOf(status) + "; what was filmed until then is in " + m_order.path}));
    if (const auto begun = std::exchange(m_begun, nullptr)) {
        begun(said ? ok() : Status(said.failure()));
        if (m_waiting.empty()) {
            m_order = {};
            return;
        }
    }
    conclude(std::move(said));
}

void Film::conclude(Result<std::string> said) {
    if (!said) {
        std::fprintf(stderr, "zmbench: %s\n", said.error().c_str());
    }
    const auto waiting = std::exchange(m_waiting, {});
    if (waiting.empty()) {
        m_said = std::move(said);
        return;
    }
    m_order = {};
    for (const auto& each : waiting) {
        each(said);
    }
}

void Film::end(Ended ended) {
    if (m_process) {
        onceEnded(std::move(ended));
        m_process->end();
    } else if (m_said) {
        m_order = {};
        const auto said = std::exchange(m_said, std::nullopt);
        ended(*said);
    } else {
        ended(Error{"no film is being made; \"zmctl film FILE.webm\" begins one"});
    }
}

void Film::damaged(Rect area) {
    if (m_screen) {
        m_screen->put(m_compositor.compose(), area);
    }
}

void Film::share() {
    if (m_screen) {
        m_screen->put(m_touches.latest());
    }
}

void Film::pressed(int x, int y) {
    m_touches.pressed(x, y);
    share();
}

void Film::moved(int x, int y) {
    m_touches.moved(x, y);
    share();
}

void Film::released(int x, int y) {
    m_touches.released(x, y);
    share();
}

void Film::dragged(int fromX, int fromY, int x, int y) {
    m_touches.dragged(fromX, fromY, x, y);
    share();
}

} // namespace zm::bench::film
