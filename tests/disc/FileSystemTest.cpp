#include "BuildPaths.h"
#include "services/disc/library/Scanner.h"
#include "services/disc/medium/OpenMedium.h"
#include "services/disc/medium/SliceReader.h"
#include "services/disc/medium/UdfMedium.h"
#include "tests/disc/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr size_t BlockBytes = 2048;

class FileSystems : public testing::Test {
protected:
    void SetUp() override {
        writeFile(m_folder / "content/1 one.mp3", m_bytes);
        writeFile(m_folder / "content/Ünï/晨光 with a rather long name.mp3", "small");
        writeFile(m_folder / "content/empty.mp3", "");
    }
    static void run(const std::string& command) {
        ASSERT_EQ(std::system((command + " 2>/dev/null").c_str()), 0) << command;
    }
    std::string udf(const std::string& revision, const std::string& special = "") {
        run(std::string(ZM_SOURCE_DIR) + "/tests/disc/make-udf " + revision + " '" + (m_folder / "content") +
            "' '" + (m_folder / "disc.iso") + "' " + special);
        return m_folder / "disc.iso";
    }
    std::string iso(const std::string& options, const std::string& content = "content",
                    const std::string& name = "disc.iso") {
        const bool plain = options.find("-iso-level") != options.npos; // takes no other character set
        run("genisoimage -quiet " + std::string(plain ? "" : "-input-charset utf-8 ") + options + " -o '" +
            (m_folder / name) + "' '" + (m_folder / content) + "'");
        return m_folder / name;
    }
    std::shared_ptr<Medium> open(const std::string& path) {
        auto medium = openMedium(path);
        EXPECT_TRUE(medium) << (medium ? "" : medium.error());
        return medium ? *medium : nullptr;
    }
    static std::string errorOf(const std::string& path) {
        const auto medium = openMedium(path);
        return medium ? "" : medium.error();
    }
    static std::string bytesOf(Medium& medium, const std::string& file) {
        auto reader = medium.open(file);
        EXPECT_TRUE(reader) << (reader ? "" : reader.error());
        if (!reader) {
            return "";
        }
        // In pieces that fit nothing, each asked for as a decoder does.
        std::string bytes;
        std::string piece(5003, '\0');
        for (;;) {
            const auto count = (*reader)->readAt(bytes.size(), piece);
            EXPECT_TRUE(count) << (count ? "" : count.error());
            if (!count || *count == 0) {
                return bytes;
            }
            bytes.append(piece, 0, *count);
        }
    }
    static Names names(Medium& medium) {
        ScanProgress progress;
        const auto contents = scan(medium, progress);
        EXPECT_TRUE(contents) << (contents ? "" : contents.error());
        Names found;
        for (const auto& item : contents ? contents->of(MediaKind::Music) : std::vector<Item>()) {
            const auto& folder = contents->folder(item.folderId);
            found.push_back(folder.path.empty() ? item.rawName : folder.path + "/" + item.rawName);
        }
        return found;
    }
    void expectAll(Medium& medium) {
        EXPECT_THAT(names(medium),
                    ElementsAre("1 one.mp3", "empty.mp3", "Ünï/晨光 with a rather long name.mp3"));
        EXPECT_EQ(bytesOf(medium, "1 one.mp3"), m_bytes);
        EXPECT_EQ(bytesOf(medium, "Ünï/晨光 with a rather long name.mp3"), "small");
        EXPECT_EQ(bytesOf(medium, "empty.mp3"), "");
        EXPECT_FALSE(medium.open("nothing.mp3"));
        EXPECT_FALSE(medium.list("nowhere"));
    }

    static std::string someBytes(size_t count) {
        std::string bytes;
        for (size_t i = 0; i < count; ++i) {
            bytes += static_cast<char>(i * 7 + i / 251);
        }
        return bytes;
    }
    TempFolder m_folder;
    const std::string m_bytes = someBytes(100000);
};

void erase(const std::string& image, size_t block, size_t count) {
    std::string bytes = readFile(image);
    bytes.replace(block * BlockBytes, count * BlockBytes, count * BlockBytes, '\0');
    writeFile(image, bytes);
}

} // namespace

TEST_F(FileSystems, AUdfDiscOfAnyRevisionIsRead) {
    for (const char* revision : {"1.02", "1.50", "2.01", "2.50", "2.60"}) {
        SCOPED_TRACE(revision);
        const auto medium = open(udf(revision));
        ASSERT_TRUE(medium);
        EXPECT_EQ(medium->description().form, std::string("UDF ") + revision);
        EXPECT_EQ(medium->label(), "UDFDISC");
        expectAll(*medium);
    }
}

namespace {

/** Counts what is read of another reader. */
class CountedReader : public ByteReader {
public:
    CountedReader(std::unique_ptr<ByteReader> image, int& reads)
        : m_image(std::move(image)), m_reads(reads) {}
    uint64_t size() const override { return m_image->size(); }
    zm::Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        ++m_reads;
        return m_image->readAt(offset, buffer);
    }

private:
    std::unique_ptr<ByteReader> m_image;
    int& m_reads;
};

} // namespace

TEST_F(FileSystems, AUdfFolderWithManyFilesIsListedInFewReads) {
    constexpr size_t Files = 500;
    for (size_t i = 0; i < Files; ++i) {
        writeFile(m_folder / ("many/Song " + std::to_string(i) + ".mp3"), std::string(3000, 'x'));
    }
    const std::string image = iso("-udf -r", "many");
    int reads = 0;
    const auto opener = [&](const std::string& name, const IsoExtent& extent) {
        auto slice =
            openSlice(image, extent.offset, std::min<uint64_t>(extent.size, fs::file_size(image)), name);
        return zm::Result<std::unique_ptr<ByteReader>>(
            std::make_unique<CountedReader>(std::move(*slice), reads));
    };
    auto whole = openSlice(image, 0, UINT64_MAX, image);
    ASSERT_TRUE(whole);
    const auto volume = findUdfVolume(**whole);
    ASSERT_TRUE(volume);
    const auto medium = UdfMedium::openImage(image, opener, *volume);
    ASSERT_TRUE(medium) << medium.error();
    const auto entries = (*medium)->list("");
    ASSERT_TRUE(entries);
    EXPECT_EQ(entries->size(), Files);
    EXPECT_LT(reads, static_cast<int>(Files) / 4);
}

TEST_F(FileSystems, AUdfFileInManyPiecesIsWhole) {
    expectAll(*open(udf("2.01", "shredded")));
}

TEST_F(FileSystems, ARareCharacterInAUdfNameIsWhole) {
    writeFile(m_folder / "content/🎵.mp3", "note");
    const auto medium = open(udf("2.01"));
    EXPECT_THAT(names(*medium), testing::Contains("🎵.mp3"));
    EXPECT_EQ(bytesOf(*medium, "🎵.mp3"), "note");
}

TEST_F(FileSystems, OfADiscWithBothUdfCounts) {
    const std::string image = iso("-V BRIDGE -J -r -udf");
    const auto medium = open(image);
    EXPECT_EQ(medium->description().form, "UDF 1.02");
    expectAll(*medium);
    // Without the descriptors of the other.
    for (size_t block = 16; block < 19; ++block) {
        erase(image, block, 1);
    }
    expectAll(*open(image));
}

TEST_F(FileSystems, WhereUdfIsDamagedTheOtherPartIsRead) {
    const std::string image = iso("-V BRIDGE -J -r -udf");
    // The places that say where everything is, at the beginning and at the end.
    std::string bytes = readFile(image);
    for (size_t block = 256; block < bytes.size() / BlockBytes; ++block) {
        if (bytes.compare(block * BlockBytes, 4, std::string("\2\0\2\0", 4)) == 0) {
            bytes[block * BlockBytes] = '\0';
        }
    }
    writeFile(image, bytes);
    const auto medium = open(image);
    EXPECT_EQ(medium->description().form, "ISO 9660 with Rock Ridge");
    EXPECT_EQ(names(*medium).size(), 3u);
}

TEST_F(FileSystems, UdfThatIsNotReadIsRefusedInWords) {
    EXPECT_EQ(errorOf(udf("1.50", "virtual")),
              (m_folder / "disc.iso") +
                  ": UDF 1.50 written in packets to a disc that can be written once is not read");
    EXPECT_EQ(errorOf(udf("2.01", "sparable")),
              (m_folder / "disc.iso") + ": UDF 2.01 written in packets to a rewritable disc is not read");
    const std::string image = udf("2.01");
    erase(image, 300, 100);
    EXPECT_EQ(errorOf(image), image + ": UDF 2.01: damaged, or of a kind that is not read");
}

TEST_F(FileSystems, ALengthThatWouldKeepTheLibraryBusyIsRefused) {
    const std::string image = udf("2.01");
    std::string bytes = readFile(image);
    constexpr size_t LogicalVolume = 34 * BlockBytes;
    ASSERT_EQ(bytes[LogicalVolume], 6);
    const std::pair<std::string, std::string> rows[] = {{std::string("\0\xF8\xFF\xFF", 4), "4294965248"},
                                                        {std::string("\0\0\0\0", 4), "0"},
                                                        {std::string("\1\0\0\0", 4), "1"}};
    for (const auto& [length, said] : rows) {
        bytes.replace(LogicalVolume + 248, 4, length);
        writeFile(image, bytes);
        EXPECT_EQ(errorOf(image),
                  image + ": UDF 2.01: damaged, what says where the root is has " + said + " bytes");
    }
}

TEST_F(FileSystems, TheNewestSessionCounts) {
    fs::create_directories(m_folder / "second");
    writeFile(m_folder / "second/2 two.mp3", "of the second session");
    const std::string first = iso("-V FIRST -J -r");
    // Between two sessions of a disc lie at least 11,400 blocks.
    const size_t begin = (fs::file_size(first) / BlockBytes + 11400 + 15) / 16 * 16;
    const std::string second =
        iso("-V SECOND -J -r -C 0," + std::to_string(begin) + " -M '" + first + "'", "second", "second.iso");
    std::string whole = readFile(first);
    whole.resize(begin * BlockBytes);
    writeFile(m_folder / "both.iso", whole + readFile(second));
    const auto medium = open(m_folder / "both.iso");
    EXPECT_EQ(medium->label(), "SECOND");
    EXPECT_EQ(medium->description().form, "ISO 9660 with Rock Ridge, the newest of several sessions");
    EXPECT_THAT(names(*medium),
                ElementsAre("1 one.mp3", "2 two.mp3", "empty.mp3", "Ünï/晨光 with a rather long name.mp3"));
    EXPECT_EQ(bytesOf(*medium, "1 one.mp3"), m_bytes);
    EXPECT_EQ(bytesOf(*medium, "2 two.mp3"), "of the second session");
}

TEST_F(FileSystems, AnImageInsideAnImageIsNoSession) {
    fs::create_directories(m_folder / "outer");
    fs::rename(iso("-V INNER -J -r", "content", "inner.iso"), m_folder / "outer/inner.iso");
    writeFile(m_folder / "outer/outer.mp3", "sound");
    const auto medium = open(iso("-V OUTER -J -r", "outer"));
    EXPECT_EQ(medium->label(), "OUTER");
    EXPECT_THAT(names(*medium), ElementsAre("outer.mp3"));
}

TEST_F(FileSystems, LongPlainNamesAreRead) {
    fs::create_directories(m_folder / "plain");
    const std::string name = std::string(80, 'n') + " Mixed Case.mp3";
    writeFile(m_folder / ("plain/" + name), "sound");
    const auto medium = open(iso("-V LONG -iso-level 4", "plain"));
    EXPECT_EQ(medium->description().form, "ISO 9660:1999");
    EXPECT_THAT(names(*medium), ElementsAre(name));
}

TEST_F(FileSystems, LinksLeadToWhatTheyStandFor) {
    writeFile(m_folder / "linked/Music/a.mp3", "a");
    writeFile(m_folder / "linked/Music/deep/b.mp3", "b");
    fs::create_directories(m_folder / "linked/Zoo");
    const std::pair<const char*, const char*> links[] = {{"../Music/a.mp3", "Zoo/1 file.mp3"},
                                                         {"./1 file.mp3", "Zoo/2 link to a link.mp3"},
                                                         {"../Zoo/./way/b.mp3", "Zoo/3 by a link.mp3"},
                                                         {"../Music/deep", "Zoo/way"},
                                                         {"/Music/deep/b.mp3", "Zoo/4 from the root.mp3"}};
    for (const auto& [target, name] : links) {
        fs::create_symlink(target, m_folder / (std::string("linked/") + name));
    }
    const auto medium = open(iso("-V LINKS -r -J", "linked"));
    EXPECT_THAT(names(*medium),
                ElementsAre("Music/a.mp3", "Music/deep/b.mp3", "Zoo/1 file.mp3", "Zoo/2 link to a link.mp3",
                            "Zoo/3 by a link.mp3", "Zoo/4 from the root.mp3"));
    for (const char* file : {"Zoo/1 file.mp3", "Zoo/2 link to a link.mp3"}) {
        EXPECT_EQ(bytesOf(*medium, file), "a") << file;
    }
    for (const char* file : {"Zoo/3 by a link.mp3", "Zoo/4 from the root.mp3"}) {
        EXPECT_EQ(bytesOf(*medium, file), "b") << file;
    }
}

TEST_F(FileSystems, LinksThatLeadNowhereAreLeftOut) {
    writeFile(m_folder / "linked/a.mp3", "a");
    const std::pair<const char*, const char*> links[] = {{"2.mp3", "1.mp3"},       {"1.mp3", "2.mp3"},
                                                         {"missing.mp3", "3.mp3"}, {"../../out.mp3", "4.mp3"},
                                                         {"5.mp3/x.mp3", "5.mp3"}, {"a.mp3/b.mp3", "6.mp3"}};
    for (const auto& [target, name] : links) {
        fs::create_symlink(target, m_folder / (std::string("linked/") + name));
    }
    fs::create_symlink(".", m_folder / "linked/round");
    const auto medium = open(iso("-V LINKS -r", "linked"));
    EXPECT_THAT(names(*medium), testing::Contains("a.mp3").Times(1));
    EXPECT_THAT(names(*medium), testing::Each(HasSubstr("a.mp3")));
}

TEST_F(FileSystems, CompressedFilesAreRead) {
    const std::string text(300000, 'z');
    writeFile(m_folder / "content/3 zeros.mp3", std::string(200000, '\0') + "end");
    writeFile(m_folder / "content/2 text.mp3", text);
    const std::string image = m_folder / "z.iso";
    run("xorriso -outdev '" + image + "' -blank as_needed -volid ZISO -joliet on -map '" +
        (m_folder / "content") + "' / -set_filter_r --zisofs / -- >/dev/null");
    const auto medium = open(image);
    EXPECT_EQ(names(*medium).size(), 5u);
    EXPECT_EQ(bytesOf(*medium, "2 text.mp3"), text);
    EXPECT_EQ(bytesOf(*medium, "3 zeros.mp3"), std::string(200000, '\0') + "end");
    EXPECT_EQ(bytesOf(*medium, "1 one.mp3"), m_bytes);
    const auto entries = medium->list("");
    ASSERT_TRUE(entries);
    for (const auto& entry : *entries) {
        if (entry.rawName == "2 text.mp3") {
            EXPECT_EQ(entry.size, text.size());
        }
    }
}

TEST_F(FileSystems, ADamagedCompressedFileSaysSo) {
    writeFile(m_folder / "content/2 text.mp3", std::string(300000, 'z'));
    const std::string image = m_folder / "z.iso";
    run("xorriso -outdev '" + image + "' -blank as_needed -volid ZISO -map '" + (m_folder / "content") +
        "' / -set_filter_r --zisofs / -- >/dev/null");
    std::string bytes = readFile(image);
    const size_t place = bytes.find("\x37\xE4\x53\x96\xC9\xDB\xD6\x07");
    ASSERT_NE(place, bytes.npos);
    for (size_t at = place + 64; at < place + 120; ++at) {
        bytes[at] = 'x';
    }
    writeFile(image, bytes);
    const auto medium = open(image);
    ASSERT_TRUE(medium->list(""));
    std::string buffer(1000, '\0');
    std::string error;
    for (const char* file : {"1 one.mp3", "2 text.mp3"}) {
        auto reader = medium->open(file);
        const auto count = reader ? (*reader)->readAt(0, buffer) : reader.failure();
        error += count ? "" : count.error();
    }
    EXPECT_THAT(error, HasSubstr(".mp3: "));
    EXPECT_THAT(error, HasSubstr("compressed"));
}

TEST_F(FileSystems, FilesThatAreCompressedInAnotherWaySaySo) {
    writeFile(m_folder / "content/2 text.mp3", std::string(300000, 'z'));
    const std::string image = m_folder / "z.iso";
    run("xorriso -outdev '" + image + "' -blank as_needed -volid ZISO -map '" + (m_folder / "content") +
        "' / -set_filter_r --zisofs / -- >/dev/null");
    std::string bytes = readFile(image);
    size_t entries = 0;
    for (size_t at = bytes.find("ZF\x10\1pz"); at != bytes.npos; at = bytes.find("ZF\x10\1pz", at + 1)) {
        bytes[at + 4] = 'x';
        ++entries;
    }
    ASSERT_GT(entries, 0u);
    writeFile(image, bytes);
    const auto medium = open(image);
    ASSERT_TRUE(medium->list(""));
    const auto reader = medium->open("2 text.mp3");
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error(), image + ": 2 text.mp3: compressed in a way that is not read");
}

TEST_F(FileSystems, WhatIsNotReadIsRefusedInWords) {
    struct Row {
        size_t place;
        std::string bytes;
        const char* what;
    };
    const Row rows[] = {
        {1024, "BD", "an HFS disc without an ISO 9660 part, which is not read"},
        {1024, "H+", "an HFS+ disc without an ISO 9660 part, which is not read"},
        {512, std::string("PM\0\0", 4), "an Apple disc without an ISO 9660 part, which is not read"},
        {3, "NTFS    ", "an NTFS disk, which is not read"},
        {82, "FAT32   ", "a FAT disk, which is not read"},
        {0, "MComprHD", "a compressed image (CHD), which is not read"},
        {0, "\x1F\x8B", "compressed (gzip): unpack it first"},
        {0, "PK\3\4", "an archive (zip): unpack it first"},
        {0, "", "not a disc image"},
    };
    for (const auto& row : rows) {
        std::string bytes(100000, '\0');
        bytes.replace(row.place, row.bytes.size(), row.bytes);
        writeFile(m_folder / "x.iso", bytes);
        EXPECT_EQ(errorOf(m_folder / "x.iso"), (m_folder / "x.iso") + ": " + row.what);
    }
}
