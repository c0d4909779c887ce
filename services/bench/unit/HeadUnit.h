#pragma once

#include "services/bench/screen/Compositor.h"
#include "services/bench/screen/PlainPages.h"
#include "services/bench/screen/VideoLock.h"
#include "services/bench/screen/VideoService.h"
#include "services/bench/unit/Car.h"
#include "services/bench/unit/Child.h"
#include "services/bench/unit/DiscDrive.h"
#include "services/bench/unit/HeadUnitOptions.h"
#include "services/bench/unit/Journey.h"
#include "services/bench/unit/Launcher.h"
#include "services/bench/unit/PpsHistory.h"
#include "services/bench/unit/PpsThread.h"
#include "services/bench/unit/ShellServer.h"
#include "services/bench/unit/SoundKnob.h"
#include "services/bench/unit/Vehicle.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zm::bench::unit {

/**
 * The head unit around the application: PPS service, screen, video service, launcher, vehicle, disc drive and
 * the child processes. Everything on the loop's thread.
 */
class HeadUnit {
public:
    HeadUnit(EventLoop& loop, HeadUnitOptions options);
    ~HeadUnit();
    HeadUnit(const HeadUnit&) = delete;
    HeadUnit& operator=(const HeadUnit&) = delete;

    /** Opens all sockets and starts the children. An error says which socket or file stands in the way. */
    Status start();

    /** Called each time an application's event loop runs and its first resume has been carried out. */
    std::function<void()> onReady;
    /** Observers for whoever shows the head unit: PPS changes and launcher requests. */
    std::function<void(const std::string& object, const std::string& text)> onPpsChange;

    /** The application runs and has been resumed (or stays behind another one that is in front). */
    bool ready() const { return m_ready; }
    /** An application is not ready yet but on its way: it is being started or connected. */
    bool applicationExpected() const;
    /** Starts an application that has ended; nothing if it runs.
     * False if the head unit starts no programs. */
    bool startApplication();
    void setLanguage(const std::string& code, ShellServer::Reply reply);
    void setTheme(const std::string& name, ShellServer::Reply reply);
    void setMotion(bool on, ShellServer::Reply reply);
    /** Hands application data to the application; of a voice request the disc service hears, too. */
    void sendApplicationData(const std::string& text, ShellServer::Reply reply);

    EventLoop& loop() { return m_loop; }
    const HeadUnitOptions& options() const { return m_options; }
    ShellServer& shell() { return m_shell; }
    screen::Compositor& compositor() { return m_compositor; }
    Launcher& launcher() { return m_launcher; }
    screen::VideoLock& videoLock() { return m_videoLock; }
    Vehicle& vehicle() { return m_vehicle; }
    Car& car() { return m_car; }
    Journey& journey() { return m_journey; }
    DiscDrive& drive() { return m_drive; }
    const PpsHistory& history() const { return m_history; }
    std::chrono::steady_clock::time_point began() const { return m_began; }
    SoundKnob& sound() { return m_sound; }
    std::vector<Child*> children();
    Child* child(const std::string& name);

    /** Whether the player comes to the front when a disc is inserted. */
    bool discComesToFront() const;
    /** {"running","children","devices","time","language","theme","motion","launcher","front","drive","fault","clock",
     * "volume","revision"} for a page. */
    Json state();
    std::string ppsSocket() const;

    /** Grows with each PPS change and each message to the application. */
    uint64_t activity() const { return m_ppsChanges + m_shell.messagesSent(); }

    /** Lets `drain` hand on now what a command follows; called by drainFollowers until unfollow of the same
     * owner. */
    void follow(const void* owner, std::function<void()> drain);
    void unfollow(const void* owner);
    void drainFollowers();

private:
    void connectParts();
    void makeChildren();
    void applicationRuns();
    void applicationGone(bool inOrder);
    void applicationDown();
    void discInserted();
    /** The pages of other applications tell what the car says now. */
    void showCarStatus();
    Json welcome() const;

    EventLoop& m_loop;
    const HeadUnitOptions m_options;
    PpsThread m_pps;
    screen::Compositor m_compositor;
    screen::VideoService m_video;
    screen::VideoLock m_videoLock{m_compositor};
    ShellServer m_shell;
    screen::PlainPages m_pages;
    Launcher m_launcher;
    Vehicle m_vehicle;
    Car m_car;
    Journey m_journey;
    DiscDrive m_drive;
    SoundKnob m_sound;
    std::unique_ptr<Child> m_application;
    std::unique_ptr<Child> m_discService;
    std::string m_language = "en";
    std::string m_theme = "night";
    bool m_motion;
    bool m_ready = false;
    bool m_startAgain = false; ///< a disc was inserted while the application was on its way out
    uint64_t m_ppsChanges = 0;
    PpsHistory m_history;
    const std::chrono::steady_clock::time_point m_began = std::chrono::steady_clock::now();
    std::map<const void*, std::function<void()>> m_followers;
};

} // namespace zm::bench::unit
