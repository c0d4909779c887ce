#include "services/disc/medium/OpenMedium.h"

#include "services/disc/library/Scanner.h"
#include "tests/disc/DiscUnit.h"
#include "tests/disc/GoodMedium.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <random>

using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::test;

namespace {

std::string makeImage(const TempFolder& folder, const std::string& content, const std::string& options) {
    const std::string image = folder / "disc.iso";
    const std::string command = "xorriso -as mkisofs -quiet -V TESTDISC " + options + " -o '" + image +
                                "' '" + content + "' 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return image;
}

std::vector<std::string> musicNames(Medium& medium) {
    ScanProgress progress;
    const auto contents = scan(medium, progress);
    EXPECT_TRUE(contents);
    std::vector<std::string> names;
    for (const auto& item : contents->of(MediaKind::Music)) {
        names.push_back(contents->folder(item.folderId).name + "/" + item.rawName);
    }
    return names;
}

using Names = std::vector<std::string>;

} // namespace

TEST(Medium, WhatIsNoDiscIsAnErrorThatNamesThePath) {
    TempFolder folder;
    writeFile(folder / "text.txt", "no image");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    for (const std::string& path :
         {folder / "missing", folder / "text.txt", folder / "fifo", std::string()}) {
        const auto medium = openMedium(path);
        ASSERT_FALSE(medium) << path;
        EXPECT_EQ(medium.error().rfind(path, 0), 0u) << medium.error();
    }
}

TEST(Medium, AnImageWithLongNamesIsReadLikeAFolder) {
    for (const char* options : {"-r", "-J -joliet-long"}) {
        TempFolder folder;
        for (const char* name :
             {"content/10 ten.mp3", "content/2 two.mp3", "content/Ünï/晨光 with a rather long name.mp3"}) {
            writeFile(folder / name, "");
        }
        const auto medium = openGood(makeImage(folder, folder / "content", options));
        EXPECT_EQ(musicNames(*medium), (Names{"TESTDISC/2 two.mp3", "TESTDISC/10 ten.mp3",
                                              "Ünï/晨光 with a rather long name.mp3"}))
            << options;
    }
}

TEST(Medium, AnImageWithoutLongNamesShowsThemWithoutVersions) {
    TempFolder folder;
    writeFile(folder / "content/SUB/SONG.MP3", "");
    const auto medium = openGood(makeImage(folder, folder / "content", "--norock -iso-level 1"));
    EXPECT_EQ(musicNames(*medium), (Names{"sub/song.mp3"}));
}

TEST(Medium, FilesOfAnImageAreReadAtAnyPlace) {
    TempFolder folder;
    std::string bytes;
    for (int i = 0; i < 10000; ++i) {
        bytes += static_cast<char>(i * 7);
    }
    writeFile(folder / "content/first.mp3", "first");
    writeFile(folder / "content/sub/data.mp3", bytes);
    const auto medium = openGood(makeImage(folder, folder / "content", "-r"));
    EXPECT_FALSE(medium->open("sub/data.mp3")) << "its folder has not been listed";
    ASSERT_TRUE(medium->list(""));
    const auto entries = medium->list("sub");
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1u);
    EXPECT_EQ(entries->front().size, bytes.size());
    EXPECT_FALSE(medium->list("nowhere"));
    auto reader = medium->open("sub/data.mp3");
    ASSERT_TRUE(reader);
    EXPECT_EQ((*reader)->size(), bytes.size());
    for (const size_t offset : {0, 1, 2047, 2048, 5000, 9999, 10000, 20000}) {
        std::string part(300, '\0');
        const auto count = (*reader)->readAt(offset, part);
        ASSERT_TRUE(count);
        EXPECT_EQ(part.substr(0, *count), offset < bytes.size() ? bytes.substr(offset, 300) : "") << offset;
    }
}

TEST(Medium, NamesInAnImageAreWholeUpToTheFileSystemsLimit) {
    // 255 bytes, the most that Rock Ridge (and a folder of the system) can hold.
    const std::string longest = std::string(251, 'n') + ".mp3";
    TempFolder folder;
    writeFile(folder / ("content/" + longest), "sound");
    const auto medium = openGood(makeImage(folder, folder / "content", "-r"));
    EXPECT_EQ(musicNames(*medium), (Names{"TESTDISC/" + longest}));
    EXPECT_TRUE(medium->open(longest));
}

TEST(Medium, JolietNamesOfManyBytesAreWhole) {
    // 85 characters, 255 bytes as UTF-8.
    std::string longest;
    for (int i = 0; i < 83; ++i) {
        longest += "晨";
    }
    longest += "n.jpeg";
    TempFolder folder;
    writeFile(folder / ("content/" + longest), "");
    const auto medium = openGood(makeImage(folder, folder / "content", "--norock -J -joliet-long"));
    const auto entries = medium->list("");
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1u);
    EXPECT_EQ(entries->front().rawName, longest);
}

TEST(Medium, AnImageAHundredFoldersDeepIsRead) {
    TempFolder folder;
    std::string path = "content";
    for (int depth = 1; depth <= 100; ++depth) {
        path += "/d" + std::to_string(depth);
    }
    writeFile(folder / (path + "/deep.mp3"), "sound");
    // The second way keeps deep folders elsewhere and leaves references to them.
    for (const char* options : {"-r", "-r -rr_reloc_dir /moved"}) {
        const auto medium = openGood(makeImage(folder, folder / "content", options));
        EXPECT_EQ(musicNames(*medium), (Names{"d100/deep.mp3"})) << options;
    }
}

TEST(Medium, AnImageIsPlayed) {
    TempFolder folder;
    place(toneFile("mp3", 30, "In the image", "Ann"), folder / "content/a/1.mp3");
    place(toneFile("m4a", 30, "Second"), folder / "content/a/2.m4a");
    DiscUnit unit;
    unit.startService(makeImage(folder, folder / "content", "-r -J"));
    unit.command(187, 1, 0);
    unit.next("ID3", [](const Published& each) { return each.json()["title"] == "In the image"; });
    unit.nextState(PlayState::Playing);
    unit.command(1);
    unit.next("ID3", [](const Published& each) { return each.json()["title"] == "Second"; });
    unit.nextState(PlayState::Playing);
    unit.next("playtime", [](const Published& each) { return each.json()["time"] == 2; });
}

TEST(Medium, ADamagedImageDoesNoHarm) {
    TempFolder folder;
    for (int file = 0; file < 20; ++file) {
        writeFile(folder / ("content/a/b/" + std::string(200, 'n') + std::to_string(file) + ".mp3"), "sound");
    }
    const std::string image = makeImage(folder, folder / "content", "-r -J");
    const std::string good = readFile(image);
    std::mt19937 random(1);
    // What describes the disc lies between its 16th and its 64th block.
    std::uniform_int_distribution<size_t> places(16 * 2048, std::min<size_t>(64 * 2048, good.size()) - 1);
    int opened = 0;
    for (int round = 0; round < 200; ++round) {
        std::string damaged = good;
        for (int change = 0; change < 200; ++change) {
            damaged[places(random)] = static_cast<char>(random());
        }
        writeFile(image, damaged);
        if (const auto medium = openMedium(image)) {
            ++opened;
            ScanProgress progress;
            if (const auto contents = scan(**medium, progress)) {
                EXPECT_LE(contents->of(MediaKind::Music).size(), 1000u);
            }
        }
    }
    EXPECT_GT(opened, 50) << "most damage is met while reading folders";
}

TEST(Medium, WhatHasNoNameInAnImageIsLeftOut) {
    TempFolder folder;
    writeFile(folder / "content/SUB/SONG.MP3", "");
    writeFile(folder / "content/NEXT.MP3", "");
    const std::string image = makeImage(folder, folder / "content", "--norock -iso-level 1");
    std::string bytes = readFile(image);
    // The folder's record, behind the length of its name: only a version is left of it.
    const size_t name = bytes.rfind("\3SUB");
    ASSERT_NE(name, bytes.npos);
    bytes.replace(name, 4, "\3;10");
    writeFile(image, bytes);
    const auto medium = openGood(image);
    const auto entries = medium->list("");
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 1u);
    EXPECT_EQ(entries->front().rawName, "next.mp3");
    EXPECT_EQ(medium->list("")->size(), 1u) << "the root is still the root";
}
