#include "tests/pictures/Stage.h"

#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "parts/NumberPad.h"
#include "parts/StatusBar.h"

#include <array>

namespace zm::test {

namespace {

constexpr int folder = 2;

constexpr std::array<const char*, Stage::Files> names = {
    "Morning Light", "Cafe del Mar", "The Long Way Home",  "أغنية الصباح",  "晨光",        "Über den Wolken",
    "Track 07",      "Señorita",     "Nocturne in E-flat", "يا ليل يا عين", "夜曲 (Live)", "Last Train",
};

constexpr std::array<Catalogue::Type, 3> types = {Catalogue::Music, Catalogue::Video, Catalogue::Picture};
constexpr std::array<const char*, 3> endings = {".mp3", ".avi", ".jpg"};

} // namespace

Stage::Stage() : unit({.catalogue = catalogue.path()}), m_decoder(unit) {
    nameFiles();
    unit.device(DEV_STATUS_CAR_TEMP, 215);
    unit.device(DEV_STATUS_BT, 2);
    unit.time("14:35", 24);
}

void Stage::play(int mediaType) {
    unit.disc.videoMode(VIDEO_MODE_ON);
    unit.disc.insert(mediaType, MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
    unit.disc.playState(1, 0, 0);
    unit.disc.track({.curMediaId = 3,
                     .curMediaIds = Files,
                     .mediaId = 3,
                     .mediaIds = Files,
                     .chapter = 4,
                     .chapters = 18,
                     .title = 1,
                     .titles = 3,
                     .parentFolder = folder});
    if (!IsAudioType(mediaType)) {
        m_decoder.showBars();
    }
}

void Stage::song(const std::string& artist, const std::string& album) {
    unit.disc.id3("", artist, album);
    unit.disc.playTime(83, 227);
}

void Stage::showOverlay() {
    unit.touch(SCREEN_WIDTH / 2, SCREEN_HEIGHT / 2);
}

void Stage::click(int window, int control) {
    unit.click(window, control, BT_STATE_RELEASED);
}

void Stage::clickOverlay(int window, int control) {
    unit.clickOsd(window, control, BT_STATE_RELEASED);
}

void Stage::type(const std::string& digits, void (Stage::*touch)(int window, int control)) {
    for (const char digit : digits) {
        (this->*touch)(GOTO_WINDOW, digit == '0' ? GOTO_KEY_0 : GOTO_KEY_1 + (digit - '1'));
    }
}

void Stage::press(int window, int item) {
    const Rect rect = unit.main.item(window, item).rect;
    unit.act({"press", std::to_string(rect.x + rect.w / 2), std::to_string(rect.y + rect.h / 2)});
}

void Stage::wait() {
    unit.advance(50ms);
}

void Stage::removeFiles() {
    catalogue.sql("DELETE FROM files");
    catalogue.sql("DELETE FROM folders");
}

void Stage::nameFiles() {
    removeFiles();
    for (size_t i = 0; i < types.size(); ++i) {
        for (size_t file = 0; file < names.size(); ++file) {
            catalogue.file(static_cast<int>(file) + 1, folder, types[i],
                           std::string(names[file]) + endings[i]);
        }
        catalogue.folder(folder, 1, types[i], "Albums", 0, Files);
    }
}

void Stage::nameFilesLong() {
    removeFiles();
    const std::string text = "A name that goes on and on because the disc was burned by somebody "
                             "who writes everything into the name, even the year 1998";
    const std::string arabic = "أغنية طويلة جدا جدا لا تنتهي أبدا لأن من نسخ القرص كتب كل شيء في اسم الملف";
    for (const Catalogue::Type type : types) {
        for (int file = 1; file <= Files; ++file) {
            catalogue.file(file, folder, type, (file % 3 == 2 ? arabic : text) + " " + std::to_string(file));
        }
        catalogue.file(65535, folder, type, text);
        catalogue.folder(folder, 1, type, text, 0, Files + 1);
    }
}

void Stage::nameFolders() {
    removeFiles();
    constexpr std::array<const char*, 6> folders = {"root",   "Albums", "Holiday 2019",
                                                    "موسيقى", "相片",   "Empty"};
    for (size_t i = 0; i < types.size(); ++i) {
        for (int id = 1; id <= static_cast<int>(folders.size()); ++id) {
            const int count = id == folder ? Files : 0;
            catalogue.folder(id, id == 1 ? 0 : 1, types[i], folders[static_cast<size_t>(id) - 1],
                             id == 1 ? static_cast<int>(folders.size()) - 1 : 0, count);
        }
        for (size_t file = 0; file < names.size(); ++file) {
            catalogue.file(static_cast<int>(file) + 1, folder, types[i],
                           std::string(names[file]) + endings[i]);
        }
    }
}

} // namespace zm::test
