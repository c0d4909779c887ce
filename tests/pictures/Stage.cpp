#include "tests/pictures/Stage.h"

#include "DiscOsdIds.h"
#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "parts/NumberPad.h"
#include "parts/StatusBar.h"

#include "tests/pictures/Picture.h"
#include "tests/support/Eventually.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace zm::test {

namespace {

constexpr int folder = 2;

constexpr std::array<const char*, Stage::Files> names = {
    "Morning Light", "Cafe del Mar", "The Long Way Home",  "أغنية الصباح",  "晨光",        "Über den Wolken",
    "Track 07",      "Señorita",     "Nocturne in E-flat", "يا ليل يا عين", "夜曲 (Live)", "Last Train",
};

/** A sun over hills, or stripes on paper. */
void paintSleeve(Image& picture, int x, int y, bool stripes) {
    const auto set = [&](double red, double green, double blue) {
        uint8_t* pixel = picture.at(x, y);
        pixel[0] = static_cast<uint8_t>(blue);
        pixel[1] = static_cast<uint8_t>(green);
        pixel[2] = static_cast<uint8_t>(red);
        pixel[3] = 255;
    };
    if (stripes) {
        const bool line = y % 50 > 36 && x > 40 && x < 280;
        line ? set(150, 120, 90) : set(240, 234, 222);
        return;
    }
    const double down = y / 320.0;
    const double hills = 215 + 25 * std::sin(x / 48.0) + 9 * std::sin(x / 17.0);
    if (y > hills) {
        set(60 - 40 * down, 40 - 20 * down, 70 - 30 * down);
    } else if (std::hypot(x - 205, y - 130) < 42) {
        set(255, 232, 190);
    } else {
        set(70 + 185 * down, 50 + 110 * down, 120 - 40 * down);
    }
}

constexpr std::array<Catalogue::Type, 3> types = {Catalogue::Music, Catalogue::Video, Catalogue::Picture};
constexpr std::array<const char*, 3> endings = {".mp3", ".avi", ".jpg"};

} // namespace

Stage::Stage(ScreenSize screen) : unit({.catalogue = catalogue.path(), .screen = screen}), m_decoder(unit) {
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

void Stage::cover(Sleeve sleeve) {
    const bool wide = sleeve == Sleeve::PaleAndWide;
    Image picture(320, wide ? 200 : 320);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            paintSleeve(picture, x, y, wide);
        }
    }
    const std::string path = unit.runtimeDir() + "/cover.png";
    ASSERT_TRUE(writePng(path, picture));
    const nlohmann::json json{{"path", path}, {"color", wide ? "#E8E0D0" : "#B45A3C"}};
    unit.pps("zelmar/disc/cover", "cover:json:" + json.dump());
    ASSERT_TRUE(eventually(
        [&] { return unit.main.describe()["windows"]["6"]["items"]["20110"]["picture"] == path; }));
    unit.settle();
}

void Stage::modes(int repeat, int shuffle) {
    unit.disc.playState(repeat, shuffle, 0);
    const auto shown = [&](int key, int mode) {
        const Json items = unit.osd.describe()["windows"][std::to_string(OSD_WND_DVD)]["items"];
        return items[std::to_string(key)]["value"] == std::to_string(mode);
    };
    ASSERT_TRUE(
        eventually([&] { return shown(OSD_CTRL_REPEAT, repeat) && shown(OSD_CTRL_SHUFFLE, shuffle); }));
    unit.settle();
}

void Stage::showOverlay() {
    const Image screen = unit.picture();
    unit.touch(screen.width / 2, screen.height / 2);
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
