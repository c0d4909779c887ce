#pragma once

/*
 * The whole unit inside one test process: head unit (PPS service, compositor, video service, passive
 * launcher, manual clock), the application with both views, controller and catalogue worker on the real
 * stand-ins; no disc service: the test plays it. One Unit at a time.
 *
 *     TEST(MusicPage, ShowsTheTitle) {
 *         Catalogue catalogue;                       // optional; made before the unit starts
 *         catalogue.file(1, 1, Catalogue::Music, "a.mp3");
 *         Unit unit({.catalogue = catalogue.path()});
 *         unit.disc.insert(2);                       // a disc with music files that plays
 *         unit.disc.id3("Title", "Artist", "Album");
 *         EXPECT_EQ(unit.main.window(), 6);
 *         EXPECT_EQ(unit.main.item(6, 2065).text, "Title");
 *         unit.clearCommands();
 *         unit.click(6, 6522);                       // the view's OnClick; unit.touch(x, y) hits items
 *         EXPECT_THAT(unit.commands(), testing::ElementsAre(PlayPause()));
 *         unit.advance(8s);                          // fires what falls due, in order of time
 *     }
 *
 * Every action returns when the unit is settled again: all published changes delivered, view queue empty,
 * worker idle (or held), frames composed, log written. An action that fails adds a test failure that names
 * it.
 */

#include "services/bench/screen/Compositor.h"
#include "tests/support/Catalogue.h"
#include "tests/support/DiscPlayer.h"
#include "tests/support/Screen.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class DiscView;
class DiscOsdView;
class DiscViewController;

namespace zm::test {

using namespace std::chrono_literals;

struct UnitOptions {
    std::string catalogue = {}; ///< SQLite file; empty: a file that does not exist
    std::string song = {};      ///< long parameter "song" of the application
    std::string resources = {}; ///< folder with the resource files and a slash; empty: the program's own
    bool firstResume = true;    ///< false: the launcher's first resume does not reach the view
    /** What the disc service has published before the application starts: object and line. */
    std::vector<std::pair<std::string, std::string>> published = {};
    ScreenSize screen = {};
};

class Unit {
public:
    explicit Unit(UnitOptions options = {});
    ~Unit();

    // ---- what the world does ----

    /** Writes `lines` ("disc::1", "-disc") into `object` ("zelmar/disc/device") as one change. */
    void pps(const std::string& object, const std::vector<std::string>& lines);
    void pps(const std::string& object, const std::string& line) { pps(object, std::vector{line}); }
    /** Launcher status: "resume", "pause", "showonly", "hideonly", "quit". */
    void app(const std::string& status);
    void appData(const std::string& text);
    void device(int id, int value);
    /** Sets a value without a message. */
    void deviceSilently(int id, int value);
    /** From now on reading `id` fails. */
    void deviceFails(int id);
    /** "23:05" and 12 or 24. */
    void time(const std::string& text, int format);
    void language(const std::string& code);
    /** A hard key. */
    void key(int code);
    /** A whole touch; 800 ms and more count as held. */
    void touch(int x, int y, std::chrono::milliseconds hold = 0ms);
    void drag(int x1, int y1, int x2, int y2);
    /** A touch in the middle of an item of the page, wherever the resource has put it. */
    void touchItem(const View& view, int window, int item, std::chrono::milliseconds hold = 0ms);
    /** The main view's OnClick: press (state 0) and release (state 1). */
    void click(int window, int control);
    /** OnClick with one state. */
    void click(int window, int control, int state);
    void clickOsd(int window, int control);
    void clickOsd(int window, int control, int state);
    void advance(std::chrono::milliseconds time);
    void holdCatalogue(int rows);
    void releaseCatalogue();
    /** Waits until nothing moves any more; actions do so themselves. */
    void settle();

    // ---- what can be seen ----

    View main{*this, "main"};
    View osd{*this, "osd"};
    DiscPlayer disc{*this};

    /** The "video" member of the screen's description. */
    Json video();
    /** The composed screen, all windows one over the other. */
    Image picture() const;
    /** Player commands since the start or the last clearCommands, oldest first; see Commands.h. */
    std::vector<std::string> commands() const;
    void clearCommands();
    /** All attribute lines that anybody wrote into `object`, oldest first: "zmvideo:json:{...}". */
    std::vector<std::string> published(const std::string& object) const;
    /** The present value of one attribute (without its encoding); empty if there is none. */
    std::string attribute(const std::string& object, const std::string& name);
    /** What the application asked of the launcher, as `zmctl requests` prints it. */
    std::vector<std::string> requests();
    void clearRequests();
    /** Lines of the system log, oldest first: severity, blank, text. */
    std::vector<std::string> log() const;
    /** Those that contain `text`. */
    std::vector<std::string> log(const std::string& text) const;
    /** Codes of the view messages that reached the main view. */
    std::vector<int> viewMessages() const;

    // ---- the inside ----

    /** Runs `task` on the view's event thread and waits for it. */
    void onViewThread(std::function<void()> task);
    DiscView& view();
    DiscOsdView& osdView();
    DiscViewController& controller();
    /** Ends the application as SIGTERM does and gives the result of its start-up and shut-down sequence. */
    bool endApplication();

    struct Answer {
        int exit = 0;
        std::string out;
        std::string err;
    };
    /** Any command of zmctl. */
    Answer run(const std::vector<std::string>& words) const;
    /** As `run`; failing is a test failure. */
    std::string must(const std::vector<std::string>& words) const;
    /** As `must`, and settles. */
    void act(const std::vector<std::string>& words);
    const std::string& runtimeDir() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace zm::test
