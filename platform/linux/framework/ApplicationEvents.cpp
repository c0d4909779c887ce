// What the application does on its event thread: frames, properties, ticks, language and theme.

#include "base/Paths.h"
#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/ViewImpl.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace zm {

namespace {

// Animations get no more ticks than the screen has frames.
constexpr int64_t MinTickMs = 10;

// The vehicle's value that says whether the car drives; one that cannot be read says so, too.
constexpr int ParkingDevice = 2;
constexpr int Driving = 0;

// The numbers that OnLanguageChange gets.
constexpr const char* Languages[] = {"en", "de", "zh", "ar"};

int languageNumber(const std::string& code) {
    const auto found = std::find(std::begin(Languages), std::end(Languages), code);
    return found == std::end(Languages) ? 0 : static_cast<int>(found - std::begin(Languages));
}

} // namespace

void Application::beginEvents() {
    m_screenWatch = watchFd(m_events->loop(), m_screen->fd(), IoEvent::Readable, [this] {
        m_events->runEvent([this] { noteScreen(m_screen->receive()); }, Counted::No);
    });
    if (!mainView()->scene->shownWindows().empty()) {
        announceRunning();
    }
    followBoundObjects();
    // A car has neither the wish nor the time to look at its files.
    if (const char* wanted = std::getenv("ZM_WATCH_RESOURCES"); wanted && *wanted) {
        m_resourceWatch = std::make_unique<ResourceWatch>(
            m_events->loop(), [this] { m_events->runEvent([this] { reloadResources(); }, Counted::Yes); });
        watchResources();
    }
}

void Application::followBoundObjects() {
    const auto show = [this](const Binding& binding, const std::string& text, PictureFilePtr picture) {
        // Of no concern to the application, which is quiet meanwhile.
        m_events->post(
            [this, binding, text, picture] {
                for (const ViewImpl* view : m_views) {
                    view->scene->publish(binding, text, picture);
                }
            },
            Counted::No);
    };
    std::map<Binding, BoundAs> bindings;
    for (const ViewImpl* view : m_views) {
        bindings.merge(view->scene->bindings());
    }
    if (const Status begun = m_boundObjects.start(ppsSocket(runtimeDir()), std::move(bindings), show);
        !begun) {
        reportFailure(begun.error());
    }
}

void Application::watchResources() {
    for (const ViewImpl* view : m_views) {
        if (const Status watched = m_resourceWatch->watch(view->scene->files()); !watched) {
            reportFailure(watched.error());
        }
    }
}

void Application::reloadResources() {
    for (const ViewImpl* view : m_views) {
        if (const Status loaded = view->scene->reload(); loaded) {
            reportNews(view->scene->files().front() + " was read again");
        } else {
            reportFailure(loaded.error() + " (the old pages stay)");
        }
    }
    watchResources();
}

void Application::endEvents() {
    m_screenWatch.reset();
    m_resourceWatch.reset();
    m_boundObjects.stop();
    m_clock.disarm();
    for (ViewImpl* view : m_views) {
        view->view.OnClose();
    }
}

void Application::flushFrames() {
    for (ViewImpl* view : m_views) {
        noteScreen(view->paint());
        armTick(*view);
    }
}

void Application::flushProps() {
    for (ViewImpl* view : m_views) {
        noteScreen(view->flushProps());
    }
    if (const ViewImpl* main = mainView()) {
        noteScreen(m_children.flush(*m_screen, main->map));
    }
}

void Application::noteScreen(const Status& status) {
    if (!status && m_screenWatch.active()) {
        reportFailure(status.error());
        // A broken descriptor would be ready all the time.
        m_screenWatch.reset();
    }
}

void Application::armTick(ViewImpl& view) {
    const AppClock::Key key{&view, 0};
    const int64_t next = view.scene->nextTick();
    if (next < 0) {
        m_clock.cancel(key);
        return;
    }
    const int64_t due = std::max(next, view.tickedMs + MinTickMs);
    if (m_clock.due(key) != due) {
        m_clock.set(key, {due, 0, AlarmKind::Tick, [this, &view] {
                              view.tickedMs = m_clock.nowMs();
                              view.scene->tick(view.tickedMs);
                              armTick(view);
                          }});
    }
}

void Application::hideFaded() {
    for (ViewImpl* view : m_views) {
        if (view->hideFaded()) {
            noteScreen(view->flushProps());
        }
    }
}

// What only pleases does not move while the car drives, nor on a clock that stands.
MotionLevel Application::motionLevel() const {
    if (m_motion == "off") {
        return MotionLevel::Off;
    }
    const bool parked = m_headUnit.device(ParkingDevice).value_or(Driving) != Driving;
    return m_motion == "on" && parked && !m_clock.manual() ? MotionLevel::Full : MotionLevel::Reduced;
}

void Application::followMotion() {
    for (const ViewImpl* view : m_views) {
        if (const MotionLevel level = motionLevel(); view->scene->motion() != level) {
            view->scene->setMotion(level);
        }
    }
}

void Application::setMotion(const std::string& wish) {
    m_motion = wish;
    followMotion();
}

void Application::finishFades() {
    for (const ViewImpl* view : m_views) {
        view->scene->finishFades();
    }
    flushFrames();
    hideFaded();
}

void Application::setLanguage(const std::string& code) {
    m_language = code;
    for (ViewImpl* view : m_views) {
        view->scene->setLanguage(code);
        view->view.OnLanguageChange(languageNumber(code));
    }
}

void Application::setTheme(const std::string& name) {
    m_theme = name;
    for (ViewImpl* view : m_views) {
        view->scene->setTheme(name);
        view->view.OnUIStytleChange(name == "night" ? 1 : 0);
    }
}

} // namespace zm
