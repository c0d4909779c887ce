#include "services/bench/unit/Launcher.h"

#include "services/bench/screen/Compositor.h"
#include "services/bench/screen/PlainPages.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace zm::bench::unit {

namespace {

constexpr size_t MaxRequests = 10000;
constexpr const char* HomeApplication = "zmhome";

// Applications with a sound of their own: the disc player pauses for them and plays on behind all others.
constexpr std::array<std::string_view, 4> AudioSources = {"zmradio", "zmusb", "zmbttel", "zmaux1"};

bool isAudioSource(std::string_view application) {
    return std::find(AudioSources.begin(), AudioSources.end(), application) != AudioSources.end();
}

std::string text(const Json& message, const char* member) {
    auto found = message.find(member);
    return found != message.end() && found->is_string() ? found->get<std::string>() : std::string();
}

} // namespace

Launcher::Launcher(LauncherMode mode, ShellServer& shell, screen::Compositor& compositor,
                   screen::PlainPages& pages)
    : m_mode(mode), m_shell(shell), m_compositor(compositor), m_pages(pages) {}

void Launcher::requested(const Json& message) {
    nlohmann::ordered_json request;
    for (const char* member : {"op", "app", "type", "data"}) {
        if (auto found = message.find(member); found != message.end()) {
            request[member] = *found;
        }
    }
    ++m_requested;
    m_requests.push_back(request.dump(-1, ' ', false, Json::error_handler_t::replace));
    if (m_requests.size() > MaxRequests) {
        m_requests.pop_front();
    }
    if (onRequest) {
        onRequest(request);
    }
    if (m_mode == LauncherMode::Passive) {
        return;
    }
    const std::string op = text(message, "op");
    const std::string application = text(message, "app");
    if (op == "QueryLauncher") {
        switchTo(application);
    } else if (op == "QueryCloseApp" && application == DiscApplication) {
        send(AppStatus::Quit, [](const auto&) {});
        m_closeWanted = true;
    }
}

void Launcher::switchTo(const std::string& application) {
    if (application == DiscApplication) {
        send(AppStatus::Resume, [](const auto&) {});
        return;
    }
    showFront(application);
    send(isAudioSource(application) ? AppStatus::Pause : AppStatus::HideOnly, [](const auto&) {});
}

void Launcher::send(AppStatus status, ShellServer::Reply reply) {
    m_last = status;
    m_closeWanted = false;
    if (status == AppStatus::Resume) {
        bringToFront();
    }
    if (onStatus) {
        onStatus(status);
    }
    m_shell.ask({{"t", "app"}, {"status", static_cast<int>(status)}}, std::move(reply));
}

void Launcher::applicationEnded() {
    if (m_mode == LauncherMode::Active) {
        showFront(discInFront() ? HomeApplication : m_front);
    }
}

void Launcher::bringToFront() {
    m_last = AppStatus::Resume;
    showFront(DiscApplication);
}

void Launcher::showFront(const std::string& application) {
    m_front = application;
    m_compositor.setCover(discInFront() ? std::nullopt : std::optional(m_pages.draw(application)));
    m_compositor.setAppVisible(discInFront());
}

void Launcher::pagesChanged() {
    if (!discInFront()) {
        m_compositor.setCover(m_pages.draw(m_front));
    }
}

void Launcher::released(int x, int y) {
    if (!m_pages.wayBack().contains(x, y)) {
        return;
    }
    if (m_shell.running()) {
        send(AppStatus::Resume, [](const auto&) {});
    } else if (onStartWanted) {
        onStartWanted();
    }
}

} // namespace zm::bench::unit
