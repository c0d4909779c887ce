#include "platform/linux/framework/Application.h"

#include "base/Paths.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/Signals.h"
#include "platform/linux/framework/ViewImpl.h"

#include <nlohmann/json.hpp>

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>

namespace zm {

using json = nlohmann::json;

namespace {

// What start-up may take of the two seconds that a caller waits.
constexpr std::chrono::milliseconds LinkLimit(1600);
constexpr std::chrono::milliseconds ScreenLimit(200);

} // namespace

Application& Application::instance() {
    // Never destroyed: threads and static objects may outlast main.
    static Application* application = new Application;
    return *application;
}

Application::Application() {
    m_settler.add(m_events);
    m_events->afterEvent = [this] {
        flushFrames();
        hideFaded();
    };
}

Status Application::open(ViewImpl& mainView, const std::string& windowGroup) {
    if (!std::setlocale(LC_CTYPE, "C.UTF-8")) {
        return Error{"locale C.UTF-8 is not there"};
    }
    if (m_events->stopped()) {
        m_events->reset();
        m_coordinator.reset();
        m_settler.resume();
    }
    m_linkClosed = UniqueFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!m_linkClosed.valid()) {
        return systemError("event descriptor");
    }
    const std::string dir = runtimeDir();
    auto link = ShellLink::connect(
        shellSocket(dir),
        {{"t", "hello"}, {"name", mainView.name}, {"group", windowGroup}, {"pid", ::getpid()}}, LinkLimit);
    if (!link) {
        return link.failure();
    }
    auto screen = ScreenClient::connect(screenSocket(dir), "app", ScreenLimit);
    if (!screen) {
        return screen.failure();
    }
    m_screen = std::move(*screen);
    const json& welcome = (*link)->welcome();
    m_clock.setManual(welcome.value("manualClock", false));
    m_headUnit.load(welcome);
    m_language = welcome.value("language", "");
    m_theme = welcome.value("theme", "");
    m_motion = welcome.value("motion", "");
    m_announced = false;
    MutexLock lock(m_linkMutex);
    m_link = std::move(*link);
    return ok();
}

Status Application::serve(void (*handle)(Application& application, const json& message)) {
    if (auto started = m_coordinator.start([] {}, [] {}); !started) {
        return started;
    }
    return link()->start([this, handle](const json& message) { handle(*this, message); },
                         [this](const std::string& why) { linkClosed(why); });
}

Status Application::run() {
    return m_events->start([this] { beginEvents(); }, [this] { endEvents(); });
}

void Application::close() {
    m_events->stop();
    if (m_events->isCurrent()) {
        return;
    }
    m_settler.giveUp();
    m_coordinator.stop();
    if (const auto connected = link()) {
        send({{"t", "bye"}});
        connected->close();
        MutexLock lock(m_linkMutex);
        m_link.reset();
    }
    for (ViewImpl* view : std::exchange(m_views, {})) {
        forget(*view);
    }
    m_children.clear();
    m_screen.reset();
}

Status Application::waitForEnd() {
    announceRunning();
    return waitForEndSignal(m_linkClosed.get());
}

Status Application::addView(ViewImpl& view) {
    auto window = m_screen->makeWindow(view.spec);
    if (!window) {
        return window.failure();
    }
    view.window = *window;
    view.scene->setSeen(view.spec.visible);
    view.scene->setMotion(motionLevel());
    m_views.push_back(&view);
    if (m_resourceWatch) {
        watchResources();
    }
    if (!m_language.empty()) {
        view.scene->setLanguage(m_language);
    }
    if (!m_theme.empty()) {
        view.scene->setTheme(m_theme);
    }
    return ok();
}

Status Application::join(ViewImpl& view) {
    if (auto added = addView(view); !added) {
        return added;
    }
    send({{"t", "view"}, {"name", view.name}, {"order", view.spec.order}});
    childPosted(view.name);
    return ok();
}

void Application::leave(ViewImpl& view) {
    auto remove = [this, &view] {
        if (std::erase(m_views, &view) > 0) {
            ScreenWindow* window = view.window;
            forget(view);
            m_screen->closeWindow(window);
        }
    };
    if (!m_events->running() || m_events->isCurrent()) {
        remove();
    } else {
        // However long a handler takes: what the thread does behind it would touch a view that is no more.
        m_events->runAndWait(remove, TimePoint::max());
    }
}

void Application::forget(ViewImpl& view) {
    m_touch.forget(view);
    m_clock.cancelAll(&view);
    view.window = nullptr;
}

Touchable* Application::touchedAt(Point at) const {
    ViewImpl* touched = mainView();
    for (size_t i = 1; i < m_views.size(); ++i) {
        if (m_views[i]->isUnder(at) &&
            (touched == m_views.front() || m_views[i]->spec.order > touched->spec.order)) {
            touched = m_views[i];
        }
    }
    return touched;
}

ViewImpl* Application::joinedView(const std::string& name) const {
    const auto found =
        std::find_if(m_views.begin(), m_views.end(), [&](ViewImpl* view) { return view->name == name; });
    return found == m_views.begin() || found == m_views.end() ? nullptr : *found;
}

ViewImpl* Application::viewByRole(const std::string& role) const {
    const size_t index = role == "main" ? 0 : role == "osd" ? 1 : m_views.size();
    return index < m_views.size() ? m_views[index] : nullptr;
}

bool Application::perform(ViewImpl& view, std::function<void()> task) {
    if (m_events->stopped()) {
        return false;
    }
    if (m_events->isCurrent() || !m_events->running()) {
        task();
        return true;
    }
    m_events->post([this, &view, task = std::move(task)] {
        if (std::find(m_views.begin(), m_views.end(), &view) != m_views.end()) {
            task();
            // Start-up shows the first page from its own thread; what the head unit then sends cannot
            // overtake it.
            if (view.isMain()) {
                announceRunning();
            }
        }
    });
    return true;
}

void Application::post(AppMessage kind, int first, int second) {
    m_events->post([=, this] { deliver(kind, first, second); });
}

void Application::deliver(AppMessage kind, int first, int second) {
    if (ViewImpl* view = mainView()) {
        APP_MSG_S message{{3, static_cast<int>(kind), first, second}};
        view->view.OnAppsMessage(&message);
    }
}

void Application::childPosted(const std::string& name) {
    m_events->post([this, name] {
        if (ViewImpl* view = mainView()) {
            view->view.OnChildPost(name.c_str());
        }
    });
}

std::shared_ptr<ShellLink> Application::link() {
    MutexLock lock(m_linkMutex);
    return m_link;
}

bool Application::send(const json& message) {
    const auto connected = link();
    return connected && connected->send(message);
}

bool Application::startMonitor(int number) {
    constexpr int Known[] = {static_cast<int>(Monitor::Launcher), static_cast<int>(Monitor::Device),
                             static_cast<int>(Monitor::Clock)};
    if (std::find(std::begin(Known), std::end(Known), number) == std::end(Known)) {
        return false;
    }
    m_headUnit.startMonitor(static_cast<Monitor>(number));
    if (number == static_cast<int>(Monitor::Device)) {
        // What an earlier application was told holds for this one, before anything else happens to it: the
        // car may be driving.
        for (const auto& [id, value] : m_headUnit.toldDevices()) {
            post(AppMessage::Device, id, value);
        }
    }
    return send({{"t", "monitor"}, {"number", number}});
}

void Application::announceRunning() {
    if (m_events->running() && !m_announced.exchange(true)) {
        send({{"t", "running"}});
    }
}

void Application::linkClosed(const std::string& why) {
    reportFailure("the head unit went away: " + why);
    const uint64_t one = 1;
    if (::write(m_linkClosed.get(), &one, sizeof one) < 0) {
        reportFailure(systemError("event descriptor").message);
    }
}

} // namespace zm
