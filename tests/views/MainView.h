#pragma once

#include "DiscOsdView.h"
#include "DiscView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "parts/SourceGroup.h"
#include "parts/StatusBar.h"
#include "tests/support/Commands.h"
#include "tests/support/Harness.h"
#include "tests/views/TimeOfDay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

inline constexpr char VIDEO_COMMAND[] = "zelmar/videoservice/command";
inline constexpr char NOW_PLAYING[] = "zelmar/navigator/nowplaying";

inline constexpr auto LIST_WAIT = 50ms; ///< until the rows of a list are fetched and its page is shown
inline constexpr auto LONG_AGO = 5s;    ///< a pause before it is another's, not the same one's second half

/** The view states that something leads to. */
inline constexpr int EVERY_STATE[] = {VIEW_STATE_MUSIC_LIST, VIEW_STATE_VIDEO_LIST, VIEW_STATE_PHOTO_LIST,
                                      VIEW_STATE_AUDIO_PLAY, VIEW_STATE_VIDEO_PLAY, VIEW_STATE_PHOTO_PLAY,
                                      VIEW_STATE_GOTO,       VIEW_STATE_LOADING,    VIEW_STATE_EXIT,
                                      VIEW_STATE_NO_DISC,    VIEW_STATE_DISC_ERROR, VIEW_STATE_REGION_ERROR};

/** What the log says of the view when the disc service reports that it wrote on in the catalogue. */
struct Reported {
    int folder = 0;  ///< opened last
    int state = 0;   ///< VIEW_STATE_...
    int source = 0;  ///< LIST_FROM_...
    int browsed = 0; ///< PLAY_TYPE_... whose list is browsed
};

/** The whole unit with a catalogue of a few files in the root folder, and no disc yet. */
class MainView : public testing::Test {
protected:
    explicit MainView(UnitOptions options = {});

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

    /** Reports a catalogue that has grown in a folder that the disc does not have. A list of all
     * files of the browsed type is then read again; nothing else changes. */
    Reported reported();
    int state() { return reported().state; }
    /** PLAY_LIST_... to which a play page returns. Leaves the page for that list. */
    int returnTarget();
    /** Brings the view into a state, from whatever state, by what the disc service
     * reports and the driver does. */
    void reach(int state);
    /** Whether the window with the decoder's picture is there and shown. */
    bool videoShown();
    /** A main view that has lost its controller for the time of `task`. */
    void withoutController(const std::function<void(DiscView&)>& task);
    void clickWithoutController(int window, int control);

    /** "on" and "off" requests to the video service, oldest first. */
    std::vector<std::string> captures();
    /** Applications asked for: "zmhome null". */
    std::vector<std::string> applications();
    int beeps();
    /** Those of `texts` that the log holds beyond its first `begin` lines, in its order and as often. */
    std::vector<std::string> logged(size_t begin, const std::vector<std::string>& texts);
    /** Of `lines`, `action` logs each once and in that order. */
    void expectLines(const std::vector<std::string>& lines, const std::function<void()>& action);
    /** A film or photo was left: `command` came first, its list comes up,
     * and the way back leads to it again. */
    void expectLeftForTheList(const std::string& command, int state);

    /** The pixels of an area of the screen. */
    std::vector<uint8_t> cut(const Rect& area);
    /** After `action` each of the items looks otherwise than before; `view` may be the overlay or the main view. */
    void expectChange(const View& view, int page, std::initializer_list<int> items,
                      const std::function<void()>& action);

    Catalogue catalogue;
    Unit unit;
};

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

} // namespace zm::test
