#pragma once

#include "services/bench/unit/HeadUnitOptions.h"
#include "services/bench/unit/ShellServer.h"

#include <deque>
#include <functional>
#include <string>

namespace zm::bench::screen {
class Compositor;
class PlainPages;
} // namespace zm::bench::screen

namespace zm::bench::unit {

/** What the launcher can tell the application; the numbers go over the wire. */
enum class AppStatus { Resume = 0, Pause = 1, ShowOnly = 2, HideOnly = 3, Quit = 4 };

/**
 * The head unit's launcher: brings applications to the front. There is one real application, the disc player
 * ("zmdisc"); the others are plain pages with an area that leads back to it.
 */
class Launcher {
public:
    Launcher(LauncherMode mode, ShellServer& shell, screen::Compositor& compositor,
             screen::PlainPages& pages);

    /** A request of the application: recorded, and carried out by an active launcher. */
    void requested(const Json& message);
    /** Sends a status; a resume also brings the disc player to the front. */
    void send(AppStatus status, ShellServer::Reply reply);
    /** The application has ended and nobody starts it again: the home page comes to the front. */
    void applicationEnded();
    /** The disc player comes to the front with the resume that follows its start. */
    void bringToFront();

    /** The disc player was told to show itself, and nothing else since. */
    bool resumed() const { return discInFront() && m_last == AppStatus::Resume; }
    /** What it was told last. */
    AppStatus last() const { return m_last; }
    /** The disc player was told to quit, and whether because it asked for it. */
    bool quitting() const { return m_last == AppStatus::Quit; }
    bool quitsByItsWish() const { return quitting() && m_closeWanted; }

    /** The disc player is in front, so that input belongs to it. */
    bool discInFront() const { return m_front == DiscApplication; }
    const std::string& front() const { return m_front; }
    LauncherMode mode() const { return m_mode; }
    /** The pages of other applications have another look now: the one in front is drawn anew. */
    void pagesChanged();
    /** A finger has left a plain page at that point. */
    void released(int x, int y);

    /** What was asked, one JSON text each, oldest first; the latest 10000. */
    const std::deque<std::string>& requests() const { return m_requests; }
    void clearRequests() { m_requests.clear(); }
    /** How many there have been. */
    uint64_t requested() const { return m_requested; }

    /** A plain page's area that leads back was touched while the application is not running. */
    std::function<void()> onStartWanted;
    /** The application is about to be told `status`. */
    std::function<void(AppStatus status)> onStatus;
    /** A request was recorded. */
    std::function<void(const Json& request)> onRequest;

    static constexpr const char* DiscApplication = "zmdisc";

private:
    void switchTo(const std::string& application);
    void showFront(const std::string& application);

    const LauncherMode m_mode;
    ShellServer& m_shell;
    screen::Compositor& m_compositor;
    screen::PlainPages& m_pages;
    std::string m_front = DiscApplication;
    AppStatus m_last = AppStatus::Pause; ///< that was sent
    bool m_closeWanted = false;          ///< the application has asked to be closed
    std::deque<std::string> m_requests;
    uint64_t m_requested = 0;
};

} // namespace zm::bench::unit
