// The main view's pages: typical, empty, longest and error contents.

#include "DiscOsdIds.h"
#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "parts/NumberPad.h"
#include "parts/SourceGroup.h"
#include "parts/StatusBar.h"
#include "tests/pictures/Table.h"

namespace zm::test {

namespace {

constexpr int railClose = 500;
constexpr int regionError = 144;

void music(Stage& stage) {
    stage.play(PLAY_TYPE_MUSIC);
    stage.song("Ana Lindqvist Trio", "Coastal Roads");
}

void musicLongest(Stage& stage) {
    stage.nameFilesLong();
    stage.play(PLAY_TYPE_MUSIC);
    const std::string more = " with a name that nobody would ever print on the sleeve of a record";
    stage.song("An orchestra" + more, "A collection" + more);
    stage.unit.disc.track({.curMediaId = 65535, .curMediaIds = 65535, .parentFolder = 2});
    stage.unit.disc.playTime(359998, 359999);
}

void musicArabicTitles(Stage& stage) {
    stage.play(PLAY_TYPE_MUSIC);
    stage.song("فرقة الساحل", "طرق ساحلية");
    stage.unit.disc.track({.curMediaId = 4, .curMediaIds = Stage::Files, .parentFolder = 2});
}

void list(Stage& stage) {
    music(stage);
    stage.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    stage.wait();
}

void listLongest(Stage& stage) {
    musicLongest(stage);
    stage.unit.disc.track({.curMediaId = 2, .curMediaIds = Stage::Files, .parentFolder = 2});
    stage.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    stage.wait();
}

void listWithout(Stage& stage, int bit, int tab) {
    list(stage);
    stage.unit.disc.mixedType((MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO) & ~bit);
    stage.click(WND_MEDIA_LIST, tab);
    stage.wait();
}

void folders(Stage& stage) {
    stage.nameFolders();
    list(stage);
    stage.click(WND_MEDIA_LIST, ITEM_FOLDER_MENU);
    stage.wait();
}

void openFolder(Stage& stage, int row) {
    folders(stage);
    const Rect rows = stage.unit.main.item(WND_MEDIA_LIST, ITEM_LIST).rect;
    stage.unit.touch(rows.x + rows.w / 2, rows.y + rows.h * (2 * row + 1) / 10);
    stage.wait();
}

void compactDisc(Stage& stage) {
    stage.play(PLAY_TYPE_CD);
    stage.unit.disc.id3("Track 03", "", "");
    stage.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    stage.wait();
}

void pad(Stage& stage, int count, const std::string& digits) {
    stage.play(PLAY_TYPE_CD);
    stage.unit.disc.track({.mediaIds = count});
    stage.unit.key(K_GOTO);
    stage.type(digits, &Stage::click);
}

void driving(Stage& stage, int mediaType) {
    stage.play(mediaType);
    stage.unit.device(DEV_STATUS_PARKING, 0);
}

constexpr PictureRow pageTable[] = {
    {"message-loading", WND_DISC_LOADING, 0,
     [](Stage& stage) {
         stage.unit.disc.presence(1);
         stage.unit.disc.state(DISC_STATE_LOADING);
     }},
    {"message-no-disc", WND_DISC_LOADING, 0, [](Stage& stage) { stage.unit.disc.presence(0); }},
    {"message-ejecting", WND_DISC_LOADING, 0,
     [](Stage& stage) {
         music(stage);
         stage.unit.disc.state(DISC_STATE_EJECTING);
     }},
    {"message-region", WND_DISC_LOADING, 0,
     [](Stage& stage) {
         stage.unit.disc.presence(1);
         stage.unit.disc.mediaType(PLAY_TYPE_DVD);
         stage.unit.disc.error(regionError);
     },
     "de"},
    {"message-sources", WND_DISC_LOADING, 0,
     [](Stage& stage) {
         stage.unit.disc.presence(0);
         stage.click(WND_DISC_LOADING, OSD_CTRL_SRC_OPEN);
     },
     "de"},
    {"disc-error", WND_DISC_ERROR, 0,
     [](Stage& stage) {
         music(stage);
         stage.unit.disc.state(DISC_STATE_ERROR);
     },
     "de"},

    {"music", WND_AUDIO_PLAY, 0, music, "zh", true},
    {"music-cover", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.cover(Stage::Sleeve::Landscape);
     },
     "zh", true},
    {"music-cover-wide", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.cover(Stage::Sleeve::PaleAndWide);
     }},
    {"music-empty", WND_AUDIO_PLAY, 0, [](Stage& stage) { stage.unit.disc.insert(PLAY_TYPE_MUSIC); }},
    {"music-longest", WND_AUDIO_PLAY, 0, musicLongest},
    {"music-arabic-titles", WND_AUDIO_PLAY, 0, musicArabicTitles},
    {"music-paused-folder-modes", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.unit.disc.playState(4, 2, 0);
         stage.unit.disc.state(DISC_STATE_PAUSED);
     }},
    {"music-pressed-single-mode", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.unit.disc.playState(2, 1, 0);
         stage.press(WND_AUDIO_PLAY, ITEM_NEXT);
     }},
    {"music-status", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.unit.device(DEV_STATUS_MUTE, 255);
         stage.unit.device(DEV_STATUS_BT, 1);
         stage.unit.device(DEV_STATUS_CAR_TEMP, -385);
         stage.unit.time("12:05", 12);
     }},
    {"music-status-unknown", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.unit.device(DEV_STATUS_BT, 0);
         stage.unit.device(DEV_STATUS_CAR_TEMP, CAR_TEMP_UNKNOWN * 10);
     }},
    {"music-sources", WND_AUDIO_PLAY, 0,
     [](Stage& stage) {
         music(stage);
         stage.click(WND_AUDIO_PLAY, OSD_CTRL_SRC_OPEN);
     }},

    {"driving-video", WND_PARKING, 0, [](Stage& stage) { driving(stage, PLAY_TYPE_DVD); }, "de"},
    {"driving-photo", WND_PARKING, 0, [](Stage& stage) { driving(stage, PLAY_TYPE_PHOTO); }, "de"},
    {"picture", WND_VIDEO, 0, [](Stage& stage) { stage.play(PLAY_TYPE_VIDEO); }},

    {"pad", WND_GOTO, 0, [](Stage& stage) { pad(stage, 24, "1"); }, "de"},
    {"pad-empty", WND_GOTO, 0, [](Stage& stage) { pad(stage, 24, ""); }},
    {"pad-longest", WND_GOTO, 0, [](Stage& stage) { pad(stage, 65535, "65535"); }},
    {"pad-without-count", WND_GOTO, 0, [](Stage& stage) { pad(stage, 0, ""); }},

    {"list", WND_MEDIA_LIST, 0, list, "de", true},
    {"list-loading", WND_MEDIA_LIST, 0,
     [](Stage& stage) {
         list(stage);
         stage.unit.holdCatalogue(0);
         stage.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
     }},
    {"list-longest", WND_MEDIA_LIST, 0, listLongest},
    {"list-no-music", WND_MEDIA_LIST, 0,
     [](Stage& stage) {
         list(stage);
         stage.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
         stage.wait();
         stage.unit.disc.mixedType(MIXED_VIDEO);
         stage.click(WND_MEDIA_LIST, ITEM_TAB_MUSIC);
         stage.wait();
     },
     "de"},
    {"list-no-video", WND_MEDIA_LIST, 0,
     [](Stage& stage) { listWithout(stage, MIXED_VIDEO, ITEM_TAB_VIDEO); }},
    {"list-no-photo", WND_MEDIA_LIST, 0,
     [](Stage& stage) { listWithout(stage, MIXED_PHOTO, ITEM_TAB_PHOTO); }},
    {"list-end", WND_MEDIA_LIST, 0,
     [](Stage& stage) {
         list(stage);
         stage.unit.disc.track({.curMediaId = 12, .curMediaIds = 12, .parentFolder = 2});
         stage.unit.drag(480, 380, 480, 90);
         stage.unit.advance(3s);
     }},
    {"list-pressed", WND_MEDIA_LIST, 0,
     [](Stage& stage) {
         list(stage);
         stage.press(WND_MEDIA_LIST, ITEM_LIST);
     }},
    {"list-folded", WND_MEDIA_LIST, 0,
     [](Stage& stage) {
         list(stage);
         stage.click(WND_MEDIA_LIST, railClose);
     }},
    {"list-folders", WND_MEDIA_LIST, 0, folders, "de"},
    {"folder", WND_FOLDER_LIST, 0, [](Stage& stage) { openFolder(stage, 1); }, "de"},
    {"folder-empty", WND_FOLDER_LIST, 0, [](Stage& stage) { openFolder(stage, 4); }, "de"},
    {"folder-longest", WND_FOLDER_LIST, 0,
     [](Stage& stage) {
         listLongest(stage);
         stage.click(WND_MEDIA_LIST, ITEM_FOLDER_MENU);
         stage.wait();
         const Rect view = stage.unit.main.item(WND_MEDIA_LIST, ITEM_LIST).rect;
         stage.unit.touch(view.x + view.w / 2, view.y + 30);
         stage.wait();
     }},
    {"cd-tracks", WND_CD_LIST, 0, compactDisc, "de"},
    {"cd-tracks-empty", WND_CD_LIST, 0,
     [](Stage& stage) {
         stage.removeFiles();
         compactDisc(stage);
     }},
    {"cd-tracks-longest", WND_CD_LIST, 0,
     [](Stage& stage) {
         stage.nameFilesLong();
         compactDisc(stage);
     }},
};

} // namespace

std::span<const PictureRow> pageRows() {
    return pageTable;
}

} // namespace zm::test
