// The overlay's windows over the decoder's picture: typical, empty, longest and error contents.

#include "DiscOsdIds.h"
#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "parts/SourceGroup.h"
#include "parts/StatusBar.h"
#include "tests/pictures/Table.h"

namespace zm::test {

namespace {

/** What the player answers, by the service's numbers. */
enum : int { TIP_NO_FUNCTION = 1, TIP_FORWARD_20 = 21, TIP_LONGEST = 10, TIP_PBC_ON = 29 };

void play(Stage& stage, int mediaType) {
    stage.play(mediaType);
    stage.unit.disc.playTime(754, 5412);
    stage.showOverlay();
}

void longest(Stage& stage, int mediaType) {
    play(stage, mediaType);
    stage.unit.disc.playTime(359998, 359999);
    const int last = mediaType == PLAY_TYPE_VCD ? 99 : 65535; // two digits are all that a disc has
    stage.unit.disc.track({.curMediaId = last,
                           .curMediaIds = last,
                           .mediaId = last,
                           .mediaIds = last,
                           .chapter = 99,
                           .chapters = 99,
                           .title = 99,
                           .titles = 99,
                           .parentFolder = 2});
    stage.unit.device(DEV_STATUS_MUTE, 255);
    stage.unit.device(DEV_STATUS_CAR_TEMP, -385);
    stage.unit.time("12:05", 12);
}

/** A clip of which the service has told nothing yet. */
void empty(Stage& stage, int mediaType) {
    stage.play(mediaType);
    stage.unit.disc.track({});
    stage.showOverlay();
}

void tip(Stage& stage, int mediaType, int number) {
    play(stage, mediaType);
    stage.unit.disc.tip(number);
}

void pad(Stage& stage, int mediaType, const Track& track, const std::string& digits) {
    stage.play(mediaType);
    stage.unit.disc.track(track);
    stage.showOverlay();
    stage.clickOverlay(OSD_WND_DVD, OSD_CTRL_GOTO);
    stage.type(digits, &Stage::clickOverlay);
}

constexpr PictureRow overlayTable[] = {
    {"dvd", WND_VIDEO, OSD_WND_DVD, [](Stage& stage) { play(stage, PLAY_TYPE_DVD); }, "de"},
    {"dvd-empty", WND_VIDEO, OSD_WND_DVD, [](Stage& stage) { empty(stage, PLAY_TYPE_DVD); }},
    {"dvd-longest", WND_VIDEO, OSD_WND_DVD,
     [](Stage& stage) {
         longest(stage, PLAY_TYPE_DVD);
         stage.clickOverlay(OSD_WND_DVD, OSD_CTRL_AUDIO);
         stage.unit.disc.dvd({.audioType = "MPEG-2",
                              .audioChannel = "5.1",
                              .audioLanguage = "Portuguese (Brazil), director's comments",
                              .audio = 8,
                              .audios = 8});
     }},
    {"dvd-no-function", WND_VIDEO, OSD_WND_DVD,
     [](Stage& stage) { tip(stage, PLAY_TYPE_DVD, TIP_NO_FUNCTION); }, "de"},
    {"dvd-paused-subtitle", WND_VIDEO, OSD_WND_DVD,
     [](Stage& stage) {
         play(stage, PLAY_TYPE_DVD);
         stage.clickOverlay(OSD_WND_DVD, OSD_CTRL_SUBTITLE);
         stage.unit.disc.dvd({.subtitleLanguage = "English", .subtitle = 82, .subtitles = 4});
         stage.unit.disc.state(DISC_STATE_PAUSED);
     }},
    {"dvd-modes", WND_VIDEO, OSD_WND_DVD,
     [](Stage& stage) {
         play(stage, PLAY_TYPE_DVD);
         stage.modes(8, 1);
     }},
    {"dvd-sources", WND_VIDEO, OSD_WND_DVD,
     [](Stage& stage) {
         play(stage, PLAY_TYPE_DVD);
         stage.clickOverlay(OSD_WND_DVD, OSD_CTRL_SRC_OPEN);
     }},

    {"video", WND_VIDEO, OSD_WND_VIDEO, [](Stage& stage) { play(stage, PLAY_TYPE_VIDEO); }, "de"},
    {"video-empty", WND_VIDEO, OSD_WND_VIDEO, [](Stage& stage) { empty(stage, PLAY_TYPE_VIDEO); }},
    {"video-longest", WND_VIDEO, OSD_WND_VIDEO,
     [](Stage& stage) {
         longest(stage, PLAY_TYPE_VIDEO);
         stage.unit.disc.tip(TIP_LONGEST);
     },
     "de"},
    {"video-forward", WND_VIDEO, OSD_WND_VIDEO,
     [](Stage& stage) {
         tip(stage, PLAY_TYPE_VIDEO, TIP_FORWARD_20);
         stage.unit.disc.state(DISC_STATE_FAST_FORWARD);
     }},
    {"video-no-function", WND_VIDEO, OSD_WND_VIDEO,
     [](Stage& stage) { tip(stage, PLAY_TYPE_VIDEO, TIP_NO_FUNCTION); }},

    {"vcd", WND_VIDEO, OSD_WND_VCD, [](Stage& stage) { play(stage, PLAY_TYPE_VCD); }, "de"},
    {"vcd-empty", WND_VIDEO, OSD_WND_VCD, [](Stage& stage) { empty(stage, PLAY_TYPE_VCD); }},
    {"vcd-longest", WND_VIDEO, OSD_WND_VCD,
     [](Stage& stage) {
         longest(stage, PLAY_TYPE_VCD);
         stage.clickOverlay(OSD_WND_VCD, OSD_CTRL_AUDIO);
         stage.unit.disc.audioChannel(3);
     },
     "de"},
    {"vcd-playback-control", WND_VIDEO, OSD_WND_VCD,
     [](Stage& stage) { tip(stage, PLAY_TYPE_VCD, TIP_PBC_ON); }},
    {"vcd-no-function", WND_VIDEO, OSD_WND_VCD,
     [](Stage& stage) { tip(stage, PLAY_TYPE_VCD, TIP_NO_FUNCTION); }},

    {"photo", WND_VIDEO, OSD_WND_PICTURE, [](Stage& stage) { play(stage, PLAY_TYPE_PHOTO); }, "de"},
    {"photo-empty", WND_VIDEO, OSD_WND_PICTURE, [](Stage& stage) { empty(stage, PLAY_TYPE_PHOTO); }},
    {"photo-longest", WND_VIDEO, OSD_WND_PICTURE,
     [](Stage& stage) {
         longest(stage, PLAY_TYPE_PHOTO);
         stage.unit.disc.state(DISC_STATE_PAUSED);
     }},
    {"photo-sources", WND_VIDEO, OSD_WND_PICTURE,
     [](Stage& stage) {
         play(stage, PLAY_TYPE_PHOTO);
         stage.clickOverlay(OSD_WND_PICTURE, OSD_CTRL_SRC_OPEN);
     }},

    {"overlay-pad", WND_VIDEO, OSD_WND_GOTO,
     [](Stage& stage) { pad(stage, PLAY_TYPE_DVD, {.chapter = 4, .chapters = 18, .titles = 12}, "1"); },
     "de"},
    {"overlay-pad-empty", WND_VIDEO, OSD_WND_GOTO,
     [](Stage& stage) { pad(stage, PLAY_TYPE_VCD, {.mediaId = 3, .mediaIds = 12}, ""); }},
    {"overlay-pad-longest", WND_VIDEO, OSD_WND_GOTO,
     [](Stage& stage) { pad(stage, PLAY_TYPE_VIDEO, {.curMediaId = 1, .curMediaIds = 65535}, "65535"); }},
    {"overlay-pad-without-count", WND_VIDEO, OSD_WND_GOTO,
     [](Stage& stage) { pad(stage, PLAY_TYPE_VCD, {}, ""); }},
};

} // namespace

std::span<const PictureRow> overlayRows() {
    return overlayTable;
}

} // namespace zm::test
