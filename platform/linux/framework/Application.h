#pragma once

#include "base/Mutex.h"
#include "platform/linux/framework/AppClock.h"
#include "platform/linux/framework/BoundObjects.h"
#include "platform/linux/framework/ChildWindows.h"
#include "platform/linux/framework/EventThread.h"
#include "platform/linux/framework/HeadUnitState.h"
#include "platform/linux/framework/ResourceWatch.h"
#include "platform/linux/framework/Settler.h"
#include "platform/linux/framework/ShellLink.h"
#include "platform/linux/framework/TouchInput.h"
#include "platform/linux/framework/ViewHost.h"
#include "platform/linux/screen/ScreenClient.h"
#include "platform/linux/toolkit/MotionLevel.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace Oro::ZMCAR {
struct ViewImpl;
}

namespace zm {

using ViewImpl = Oro::ZMCAR::ViewImpl;

/** The second word of an application message. */
enum class AppMessage { AppStatus = 0, Data = 1, Timer = 2, Time = 3, Device = 4 };

/**
 * What the process shares: the connections to the head unit and the compositor, the event thread, the clock,
 * and the views. There is one; it lives as long as the process, `open` and `close` bound its sessions. Unless
 * said otherwise a call belongs to the event thread, or to the main thread while no event thread runs.
 */
class Application : public ViewHost {
public:
    static Application& instance();

    EventThread& events() { return *m_events; }
    AppClock& clock() { return m_clock; }
    HeadUnitState& headUnit() { return m_headUnit; }
    Settler& settler() { return m_settler; }
    /** The thread for what has to wait for the event thread. */
    EventThread& coordinator() { return m_coordinator; }
    TouchInput& touch() { return m_touch; }
    ChildWindows& children() { return m_children; }

    /** Connects to head unit and compositor in the name of the main view. Main thread. */
    Status open(ViewImpl& mainView, const std::string& windowGroup);
    /** Starts to hand the head unit's messages to `handle`, on the receiving thread; once the main
     * view is there. Main thread. */
    Status serve(void (*handle)(Application& application, const nlohmann::json& message));
    /** Starts the event thread. Main thread. */
    Status run();
    /** Ends the event thread and the connections. Main thread; on the event thread only the events end. */
    void close();
    /** Waits for a signal or the head unit's end. Main thread. */
    Status waitForEnd();

    /** Makes the window of a view; the first one is the main view. */
    Status addView(ViewImpl& view);
    /** Adds a view that lies over the main view, and tells everybody. */
    Status join(ViewImpl& view);
    /** Returns when the event thread does nothing with the view any more: after the handler that runs. Any thread. */
    void leave(ViewImpl& view);
    /** The main view, then the joined ones in the order of joining. */
    const std::vector<ViewImpl*>& views() const { return m_views; }
    ViewImpl* mainView() const { return m_views.empty() ? nullptr : m_views.front(); }
    ViewImpl* joinedView(const std::string& name) const;
    /** The main view under "main", the first joined one under "osd"; else null. */
    ViewImpl* viewByRole(const std::string& role) const;

    /** Runs `task` for `view` now on the event thread (or before it runs), else posts it. False
     * once closed. Any thread. */
    bool perform(ViewImpl& view, std::function<void()> task);
    /** Queues an application message for the main view. Any thread. */
    void post(AppMessage kind, int first, int second);
    /** Hands it over at once. */
    void deliver(AppMessage kind, int first, int second);
    /** Queues OnChildPost of the main view. Any thread. */
    void childPosted(const std::string& name);

    /** Draws and commits what changed in all views. */
    void flushFrames();
    /** Makes pending window properties take effect. */
    void flushProps();
    bool isMain(const ViewImpl& view) const override { return mainView() == &view; }
    ScreenClient* screen() override { return m_screen.get(); }
    void lifted(LiftedFrom item) override { m_touch.lifted(std::move(item)); }
    /** Tells of the screen connection's failure, once. */
    void noteScreen(const Status& status);

    /** Any thread; false without a head unit. */
    bool send(const nlohmann::json& message);
    bool startMonitor(int number);
    /** Tells the head unit, once, that the event loop runs and start-up has shown
     * its first page. Any thread. */
    void announceRunning();

    void setLanguage(const std::string& code);
    void setTheme(const std::string& name);
    /** "on", "off", or "" for what tells something only. */
    void setMotion(const std::string& wish);
    /** Moves as much as is wished and allowed now. */
    void followMotion();
    /** Draws and commits what the pages say; what is on its way in or out has arrived. */
    void finishFades();

private:
    Application();
    void forget(ViewImpl& view);
    /** The joined view that is in front, shown and hit; else the main view. */
    Touchable* touchedAt(Point at) const;
    void armTick(ViewImpl& view);
    /** Takes windows off the screen whose pages have faded. */
    void hideFaded();
    MotionLevel motionLevel() const;
    void beginEvents();
    void endEvents();
    std::shared_ptr<ShellLink> link();
    void linkClosed(const std::string& why);
    void watchResources();
    void reloadResources();
    void followBoundObjects();

    HeadUnitState m_headUnit;
    Settler m_settler;
    // Shared with a `settle` that may still be looking at it.
    std::shared_ptr<EventThread> m_events = std::make_shared<EventThread>();
    EventThread m_coordinator;
    AppClock m_clock{*m_events};
    TouchInput m_touch{m_clock, [this](Point at) { return touchedAt(at); }};
    ChildWindows m_children;
    std::vector<ViewImpl*> m_views;
    std::unique_ptr<ScreenClient> m_screen;
    SourceHandle m_screenWatch;
    std::unique_ptr<ResourceWatch> m_resourceWatch; ///< for developers only
    BoundObjects m_boundObjects;
    std::string m_language;
    std::string m_theme;
    std::string m_motion;

    Mutex m_linkMutex;
    std::shared_ptr<ShellLink> m_link ZM_GUARDED_BY(m_linkMutex);
    std::atomic<bool> m_announced = false;
    UniqueFd m_linkClosed;
};

} // namespace zm
