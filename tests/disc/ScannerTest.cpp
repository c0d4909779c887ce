#include "services/disc/library/Scanner.h"

#include "services/disc/medium/FolderMedium.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::test;
namespace fs = std::filesystem;

namespace {

Contents scanFolder(const fs::path& path) {
    FolderMedium medium(path.string());
    ScanProgress progress;
    auto contents = scan(medium, progress);
    EXPECT_TRUE(contents) << (contents ? "" : contents.error());
    return contents ? std::move(*contents) : Contents{};
}

// "folder/file id name" of each item.
std::vector<std::string> listing(const Contents& contents, MediaKind kind) {
    std::vector<std::string> lines;
    for (const auto& item : contents.of(kind)) {
        lines.push_back(std::to_string(item.folderId) + "/" + std::to_string(item.fileId) + " " + item.name);
    }
    return lines;
}

std::vector<std::string> folders(const Contents& contents) {
    std::vector<std::string> lines;
    for (const auto& folder : contents.folders) {
        lines.push_back(std::to_string(folder.id) + "<" + std::to_string(folder.parentId) + " " +
                        folder.name);
    }
    return lines;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(Scanner, NumbersFilesInNaturalOrderInsideTheirFolderAndKind) {
    TempFolder disc;
    for (const char* name :
         {"10 ten.mp3", "2 two.mp3", "b/1.mp3", "b/clip 10.mp4", "b/clip 9.mp4", "b/z.jpg", "a/x.ogg"}) {
        writeFile(disc / name, "");
    }
    const Contents contents = scanFolder(disc.path());
    EXPECT_EQ(listing(contents, MediaKind::Music), (Lines{"1/1 2 two", "1/2 10 ten", "2/1 x", "3/1 1"}));
    EXPECT_EQ(listing(contents, MediaKind::Video), (Lines{"3/1 clip 9", "3/2 clip 10"}));
    EXPECT_EQ(listing(contents, MediaKind::Photo), (Lines{"3/1 z"}));
    EXPECT_EQ(contents.mixedMask(), 2 | 4 | 8);
}

TEST(Scanner, NumbersFoldersBeforeTheirSubFolders) {
    TempFolder disc;
    for (const char* name : {"b/deep/er/1.mp3", "a 10/1.mp3", "a 2/1.mp3", "b/0.mp3"}) {
        writeFile(disc / name, "");
    }
    const Contents contents = scanFolder(disc.path());
    const std::string root = disc.path().filename().string();
    EXPECT_EQ(folders(contents),
              (Lines{"1<0 " + root, "2<1 a 2", "3<1 a 10", "4<1 b", "5<4 deep", "6<5 er"}));
}

TEST(Scanner, CountsFilesAndSubFoldersOfEachKind) {
    TempFolder disc;
    for (const char* name : {"1.mp3", "a/1.mp3", "a/2.mp3", "b/1.jpg", "c/d/1.mp3"}) {
        writeFile(disc / name, "");
    }
    const Contents contents = scanFolder(disc.path());
    const auto music = [&](int folder) {
        return contents.folder(folder).counts[kindIndex(MediaKind::Music)];
    };
    EXPECT_EQ(music(1).files, 1);
    EXPECT_EQ(music(1).folders, 2) << "a and c hold music, b does not";
    EXPECT_EQ(music(2).files, 2);
    EXPECT_EQ(music(3).files + music(3).folders, 0);
    EXPECT_EQ(music(4).folders, 1);
    EXPECT_EQ(contents.folder(1).counts[kindIndex(MediaKind::Photo)].folders, 1);
}

TEST(Scanner, TrackNumbersComeBeforeNames) {
    TempFolder disc;
    place(toneFile("mp3", 1, "B", "", "", 1), disc / "z.mp3");
    place(toneFile("flac", 1, "A", "", "", 10), disc / "a.flac");
    place(toneFile("ogg", 1, "C", "", "", 2), disc / "m.ogg");
    writeFile(disc / "0 without a number.mp3", "");
    EXPECT_EQ(listing(scanFolder(disc.path()), MediaKind::Music),
              (Lines{"1/1 B", "1/2 C", "1/3 A", "1/4 0 without a number"}));
}

TEST(Scanner, TheOrderOfFilesWithoutTrackNumbersIsThatOfTheirFileNames) {
    TempFolder disc;
    place(toneFile("mp3", 1, "Zebra"), disc / "01.mp3");
    place(toneFile("ogg", 1, "Apple"), disc / "02.ogg");
    writeFile(disc / "03 - Middle.mp3", "");
    EXPECT_EQ(listing(scanFolder(disc.path()), MediaKind::Music),
              (Lines{"1/1 Zebra", "1/2 Apple", "1/3 Middle"}));
}

TEST(Scanner, CoversBesideMusicAreNoPhotos) {
    TempFolder disc;
    for (const char* name : {"a/1.mp3", "a/cover.jpg", "a/Folder.JPG", "a/front.png", "a/band.jpg",
                             "b/cover.jpg", "c/cover.mp3", "c/front.jpeg"}) {
        writeFile(disc / name, "");
    }
    const Contents contents = scanFolder(disc.path());
    EXPECT_EQ(listing(contents, MediaKind::Photo), (Lines{"2/1 band", "3/1 cover"}));
    EXPECT_EQ(listing(contents, MediaKind::Music), (Lines{"2/1 1", "4/1 cover"}));
    EXPECT_EQ(contents.folder(4).counts[kindIndex(MediaKind::Photo)].files, 0);
}

TEST(Scanner, ADiscOfMusicAndItsCoverHoldsNoPhotos) {
    TempFolder disc;
    writeFile(disc / "1.mp3", "");
    writeFile(disc / "folder.jpg", "");
    EXPECT_EQ(scanFolder(disc.path()).mixedMask(), 2);
}

TEST(Scanner, ADiscOfPhotosShowsThemWhateverTheyAreCalled) {
    TempFolder disc;
    writeFile(disc / "cover.jpg", "");
    writeFile(disc / "front.jpg", "");
    EXPECT_EQ(listing(scanFolder(disc.path()), MediaKind::Photo), (Lines{"1/1 cover", "1/2 front"}));
}

TEST(Scanner, LeavesOutEmptyFoldersHiddenFilesAndWhatCannotBePlayed) {
    TempFolder disc;
    for (const char* name :
         {"1.mp3", ".hidden.mp3", "._1.mp3", ".trash/2.mp3", "readme.txt", "noextension", "docs/a.pdf"}) {
        writeFile(disc / name, "");
    }
    fs::create_directories(disc / "empty/emptier");
    const Contents contents = scanFolder(disc.path());
    EXPECT_EQ(listing(contents, MediaKind::Music), Lines{"1/1 1"});
    EXPECT_EQ(contents.folders.size(), 1u);
}

TEST(Scanner, AFolderWithNothingToPlayIsAnEmptyDisc) {
    TempFolder disc;
    const Contents contents = scanFolder(disc.path());
    EXPECT_TRUE(contents.empty());
    EXPECT_EQ(contents.mixedMask(), 0);
}

TEST(Scanner, ExtensionsAreKnownInAnyCase) {
    TempFolder disc;
    writeFile(disc / "A.MP3", "");
    writeFile(disc / "B.JpEg", "");
    const Contents contents = scanFolder(disc.path());
    EXPECT_EQ(contents.of(MediaKind::Music).size(), 1u);
    EXPECT_EQ(contents.of(MediaKind::Photo).size(), 1u);
}

TEST(Scanner, CircularLinksAreWalkedOnce) {
    TempFolder disc;
    writeFile(disc / "a/1.mp3", "");
    fs::create_directory_symlink("..", disc / "a/up");
    fs::create_directory_symlink("a", disc / "b");
    fs::create_symlink("nowhere", disc / "broken.mp3");
    const Contents contents = scanFolder(disc.path());
    // The way back up and the second name of the folder lead to nothing new (which name is met first is up to
    // the disc).
    EXPECT_LE(contents.of(MediaKind::Music).size(), 2u);
    EXPECT_GE(contents.of(MediaKind::Music).size(), 1u);
    EXPECT_LE(contents.folders.size(), 4u);
}

TEST(Scanner, AHundredLevelsWithLongNamesAreReadAndOpened) {
    // The whole path has more than 20,000 bytes: more than the system takes at once.
    constexpr int Depth = 100;
    TempFolder disc;
    const std::string name(200, 'd');
    const auto home = fs::current_path();
    fs::current_path(disc.path());
    for (int depth = 1; depth <= Depth; ++depth) {
        fs::create_directory(name);
        fs::current_path(name);
    }
    std::ofstream("deep.mp3") << "sound";
    fs::current_path(home);
    FolderMedium medium(disc.path().string());
    ScanProgress progress;
    const auto contents = scan(medium, progress);
    ASSERT_TRUE(contents);
    ASSERT_EQ(contents->of(MediaKind::Music).size(), 1u);
    const Item& item = contents->of(MediaKind::Music).front();
    EXPECT_EQ(item.folderId, Depth + 1);
    const auto reader = medium.open(contents->pathOf(item));
    ASSERT_TRUE(reader) << reader.error();
    EXPECT_EQ((*reader)->size(), 5u);
}

TEST(Scanner, ANameMayGrowBeyond260BytesAsUtf8) {
    TempFolder disc;
    std::string bytes;
    std::string text;
    for (int i = 0; i < 120; ++i) {
        bytes += "\xCE\xD2"; // in GBK
        text += "我";
    }
    writeFile((disc.path() / (bytes + ".mp3")).string(), "");
    const Contents contents = scanFolder(disc.path());
    EXPECT_EQ(listing(contents, MediaKind::Music), Lines{"1/1 " + text});
    EXPECT_EQ(contents.of(MediaKind::Music).front().name.size(), 360u);
}

TEST(Scanner, AFolderThatTheSystemRefusesIsLeftOut) {
    TempFolder disc;
    writeFile(disc / "1.mp3", "");
    fs::create_symlink("loop", disc / "loop");
    fs::create_directories(disc / "gone/inside");
    fs::create_directory_symlink("gone/inside", disc / "link");
    fs::remove_all(disc / "gone");
    EXPECT_EQ(listing(scanFolder(disc.path()), MediaKind::Music), Lines{"1/1 1"});
}

TEST(Scanner, FoldersDeeperThanTheLimitAreLeftOut) {
    TempFolder disc;
    std::string path = disc.path().string();
    for (int depth = 1; depth <= MaxDepth + 5; ++depth) {
        path += "/d";
        writeFile(path + "/1.mp3", "");
    }
    EXPECT_EQ(scanFolder(disc.path()).of(MediaKind::Music).size(), static_cast<size_t>(MaxDepth));
}

namespace {

/** A medium of names only; some folders cannot be read. */
class NamesOnly : public Medium {
public:
    std::map<std::string, std::vector<Entry>> folders;
    std::string label() const override { return "disc"; }
    zm::Result<std::vector<Entry>> list(const std::string& folder) override {
        if (!folders.count(folder)) {
            return zm::Error{folder + ": unreadable"};
        }
        return folders[folder];
    }
    zm::Result<std::unique_ptr<ByteReader>> open(const std::string& file) override {
        return zm::Error{file + ": unreadable"};
    }
};

} // namespace

TEST(Scanner, AFolderThatCannotBeReadIsLeftOut) {
    NamesOnly medium;
    medium.folders[""] = {{"good", Entry::Type::Folder, {}}, {"bad", Entry::Type::Folder, {}}};
    medium.folders["good"] = {{"1.mp3", Entry::Type::File, {}}};
    ScanProgress progress;
    const auto contents = scan(medium, progress);
    ASSERT_TRUE(contents);
    EXPECT_EQ(listing(*contents, MediaKind::Music), Lines{"2/1 1"});
}

TEST(Scanner, ARootThatCannotBeReadIsAnError) {
    NamesOnly medium;
    ScanProgress progress;
    EXPECT_FALSE(scan(medium, progress));
}

TEST(Scanner, SixtyThousandFilesKeepTheirNumbers) {
    NamesOnly medium;
    for (int folder = 0; folder < 60; ++folder) {
        const std::string name = "folder " + std::to_string(folder);
        medium.folders[""].push_back({name, Entry::Type::Folder, {}});
        for (int file = 0; file < 1000; ++file) {
            medium.folders[name].push_back({"song " + std::to_string(file) + ".mp3", Entry::Type::File, {}});
        }
    }
    ScanProgress progress;
    const auto contents = scan(medium, progress);
    ASSERT_TRUE(contents);
    const auto& music = contents->of(MediaKind::Music);
    ASSERT_EQ(music.size(), 60000u);
    EXPECT_EQ(music.back().name, "song 999");
    EXPECT_EQ(music.back().fileId, 1000);
    EXPECT_EQ(music.back().folderId, 61);
}

TEST(Scanner, NoMoreFilesInAFolderThanFitTheirNumber) {
    NamesOnly medium;
    for (int file = 0; file < MaxFilesInFolder + 10; ++file) {
        medium.folders[""].push_back({std::to_string(file) + ".mp3", Entry::Type::File, {}});
    }
    ScanProgress progress;
    const auto contents = scan(medium, progress);
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->of(MediaKind::Music).back().fileId, MaxFilesInFolder);
}

TEST(Scanner, StopsWhenCancelled) {
    NamesOnly medium;
    medium.folders[""] = {{"1.mp3", Entry::Type::File, {}}};
    ScanProgress progress;
    progress.cancelled = true;
    EXPECT_FALSE(scan(medium, progress));
}

TEST(Scanner, NamesInAnotherCharacterSetAreShownAsUtf8AndOpenedByTheirBytes) {
    TempFolder disc;
    const std::string folder = "\xCE\xD2\xB5\xC4\xD2\xF4\xC0\xD6"; // 我的音乐 in GBK
    const std::string file = "\xD4\xC2\xC1\xC1\xB4\xFA\xB1\xED\xCE\xD2\xB5\xC4\xD0\xC4.mp3";
    writeFile((disc.path() / folder / file).string(), "");
    const Contents contents = scanFolder(disc.path());
    ASSERT_EQ(contents.of(MediaKind::Music).size(), 1u);
    EXPECT_EQ(contents.folder(2).name, "我的音乐");
    const Item& item = contents.of(MediaKind::Music).front();
    EXPECT_EQ(item.name, "月亮代表我的心");
    EXPECT_TRUE(fs::exists(disc.path() / contents.pathOf(item)));
}
