#pragma once

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "parts/SourceGroup.h"
#include "parts/StatusBar.h"
#include "tests/views/DiscViewTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

inline constexpr char VIDEO_COMMAND[] = "zelmar/videoservice/command";
inline constexpr char NOW_PLAYING[] = "zelmar/navigator/nowplaying";

inline constexpr auto LIST_WAIT = 50ms; ///< until the rows of a list are fetched and its page is shown
inline constexpr auto LONG_AGO = 5s;    ///< a pause before it is another's, not the same one's second half

/** The whole unit with a catalogue of a few files in the root folder, and no disc yet. */
class MainView : public testing::Test {
protected:
    MainView();

    /** A disc of that type plays and its page is shown; what was sent until then is forgotten. */
    void play(int mediaType);
    /** From the play page to its list, which is shown. */
    void openList();
    /** What the view does on expiry of that timer. */
    void expire(int timer);
    /** Sends the view a launcher message. */
    void appsMessage(int kind, int subCode, int first, int second = 0);
    void viewMessage(int code);
    /** A whole touch's effect, whatever the page: press and release positions, then the released click. */
    void swipe(int window, int control, int fromX, int toX, int y);

    /** "on" and "off" requests to the video service, oldest first. */
    std::vector<std::string> captures();
    /** Applications asked for: "zmhome null". */
    std::vector<std::string> applications();
    int beeps();
    /** Those of `texts` that the log holds beyond its first `begin` lines, in its order and as often. */
    std::vector<std::string> logged(size_t begin, const std::vector<std::string>& texts);
    /** Of `lines`, `action` logs each once and in that order. */
    void expectLines(const std::vector<std::string>& lines, const std::function<void()>& action);
    /** A film or photo was left: `command` came first, its list comes up, and the way back leads to it again.
     */
    void expectLeftForTheList(const std::string& command, int state);

    Catalogue catalogue;
    Unit unit;
    DiscViewTest inside{unit};
};

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

} // namespace zm::test
