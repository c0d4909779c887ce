// Images of discs with every structure damaged in every way: they are refused in words or read, soon, and what is read of
// them is what stood there before.
#include "tests/disc/DiscImageFixture.h"
#include "tests/images/ImageDamage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <deque>
#include <map>

using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

constexpr double MostSeconds = 2; ///< of the processor, for all of a disc

using Files = std::map<std::string, std::string>;

/** What became of a damaged image. */
struct Outcome {
    std::string refusal; ///< empty: it was opened
    Files files;         ///< by path, with what could be read of them
    double seconds = 0;
};

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Up to the first place that cannot be read.
std::string readAll(Medium& medium, const std::string& path) {
    constexpr size_t MostBytes = size_t{1} << 20;
    std::string bytes;
    const auto reader = medium.open(path);
    std::string piece(size_t{1} << 16, '\0');
    while (reader && bytes.size() < MostBytes) {
        const auto count = (*reader)->readAt(bytes.size(), piece);
        if (!count || *count == 0) {
            break;
        }
        bytes.append(piece, 0, *count);
    }
    return bytes;
}

void readFolders(Medium& medium, Files& files) {
    constexpr size_t MostFiles = 100;
    constexpr int MostFolders = 20;
    std::deque<std::string> folders{""};
    for (int count = 0; !folders.empty() && count < MostFolders; ++count) {
        const std::string folder = folders.front();
        folders.pop_front();
        const auto entries = medium.list(folder);
        if (!entries) {
            EXPECT_NE(entries.error(), "");
            continue;
        }
        for (const auto& entry : *entries) {
            const std::string path = folder.empty() ? entry.rawName : folder + "/" + entry.rawName;
            if (entry.type == Entry::Type::Folder) {
                folders.push_back(path);
            } else if (files.size() < MostFiles) {
                files.emplace(path, readAll(medium, path));
            }
        }
    }
}

Outcome readDisc(const std::string& path) {
    Outcome outcome;
    const double begun = processorSeconds();
    const auto medium = openMedium(path);
    if (medium) {
        ScanProgress progress;
        const auto contents = scan(**medium, progress);
        if (contents && contents->trackType) {
            for (const auto& item : contents->of(MediaKind::Music)) {
                outcome.files.emplace(item.rawName, readAll(**medium, item.rawName));
            }
        } else if (!contents) {
            outcome.refusal = contents.error();
        }
        readFolders(**medium, outcome.files);
    } else {
        outcome.refusal = medium.error();
    }
    outcome.seconds = processorSeconds() - begun;
    return outcome;
}

/** What became of all images of a form. */
struct Tally {
    int images = 0;
    int refused = 0;
    int whole = 0; ///< files
    int shorter = 0;
    int unreadable = 0;
    int different = 0;
    double longest = 0;
    std::string longestName;

    void add(const std::string& name, const Outcome& outcome, const Files& right) {
        longestName = outcome.seconds > longest ? name : longestName;
        ++images;
        refused += !outcome.refusal.empty();
        longest = std::max(longest, outcome.seconds);
        for (const auto& [path, bytes] : right) {
            const auto found = outcome.files.find(path);
            if (found == outcome.files.end() || (found->second.empty() && !bytes.empty())) {
                ++unreadable;
            } else if (found->second == bytes) {
                ++whole;
            } else if (bytes.starts_with(found->second)) {
                ++shorter;
            } else {
                ++different;
            }
        }
    }
};

// Of `MostImages` at most, every so many a structure; other ones for each kind of damage. With ZM_DAMAGES=TIMES in the
// environment there are all, and TIMES as many of what is made by chance (`./dev prove damaged-images`).
constexpr size_t MostImages = 300;

class DamagedImages : public testing::TestWithParam<ImageForm> {
protected:
    size_t sampleStep() const {
        size_t each = 0;
        for (const auto& kind : damageKinds()) {
            each += static_cast<size_t>(kind.seeds);
        }
        return 1 + each * m_image.structures.size() / MostImages;
    }

    TempFolder m_folder;
    SmallImage m_image = GetParam().make(m_folder / "image");
    std::string m_whole = readFile(m_image.damaged);
};

/** The error of listing an image's root folder once the image was opened, behind its name; empty: it is listed. */
std::string rootError(const SmallImage& image) {
    const auto medium = openMedium(image.opened);
    const auto entries = medium ? (*medium)->list("") : zm::Result<std::vector<Entry>>(medium.failure());
    return entries ? "" : entries.error().substr(image.opened.size());
}

const ImageForm& formCalled(std::string_view name) {
    return *std::find_if(imageForms().begin(), imageForms().end(),
                         [=](const ImageForm& each) { return each.name == name; });
}

constexpr size_t RootBlockPlace = 156 + 2; ///< in a descriptor
constexpr size_t RecordBlockPlace = 2;
constexpr size_t RecordSizePlace = 10;
constexpr size_t RecordNamePlace = 33;
constexpr size_t HalfBytes = 4; ///< of a number that stands there twice
constexpr size_t PlainDescriptor = size_t{16} * 2048;
constexpr size_t JolietDescriptor = size_t{17} * 2048;

} // namespace

TEST(ImagesWithoutARoot, SayThatInTheirOwnName) {
    const TempFolder folder;
    const SmallImage image = formCalled("Iso").make(folder / "image");
    const std::string whole = readFile(image.damaged);
    const WhileDamaged damaged(image.damaged, whole, {PlainDescriptor + RootBlockPlace, "\xff\xff\xff\x7f"});
    EXPECT_EQ(rootError(image), ": folder lies outside of the image");
}

TEST(ImagesWithoutARoot, ForTheLongNamesAreReadByTheShortOnes) {
    const TempFolder folder;
    const SmallImage image = formCalled("Joliet").make(folder / "image");
    const std::string whole = readFile(image.damaged);
    const Files right = readDisc(image.opened).files;
    for (const char* place : {"\xff\xff\xff\x7f", "\x10\xff\xff\x7f", "\x10"}) {
        const WhileDamaged damaged(image.damaged, whole, {JolietDescriptor + RootBlockPlace, place});
        EXPECT_TRUE(readDisc(image.opened).files == right);
    }
}

// The second one is right, the highest byte first.
TEST(NumbersOfARecord, CountFromTheHalfThatLeadsIntoTheImage) {
    const TempFolder folder;
    const SmallImage image = formCalled("Iso").make(folder / "image");
    const std::string whole = readFile(image.damaged);
    const Files right = readDisc(image.opened).files;
    const size_t record = whole.find("TWO.MP3;1") - RecordNamePlace;
    const std::string outside = "\xff\xff\xff\x7f";
    for (const size_t number : {RecordBlockPlace, RecordSizePlace}) {
        for (const size_t half : {size_t{0}, HalfBytes}) {
            SCOPED_TRACE(std::to_string(number) + " + " + std::to_string(half));
            const WhileDamaged damaged(image.damaged, whole, {record + number + half, outside});
            EXPECT_TRUE(readDisc(image.opened).files == right);
        }
    }
}

TEST(NumbersOfARecord, LeaveAFileOutWhereNoneLeadsIntoTheImageOrItsSizesDifferToo) {
    const TempFolder folder;
    const SmallImage image = formCalled("Iso").make(folder / "image");
    const std::string whole = readFile(image.damaged);
    Files others = readDisc(image.opened).files;
    ASSERT_EQ(others.erase("music/two.mp3"), 1U);
    const size_t record = whole.find("TWO.MP3;1") - RecordNamePlace;
    const std::string outside = "\xff\xff\xff\x7f";
    for (const std::string& block :
         {outside + outside,
          outside + whole.substr(record + RecordBlockPlace + HalfBytes, HalfBytes) + "\1"}) {
        const WhileDamaged damaged(image.damaged, whole, {record + RecordBlockPlace, block});
        EXPECT_TRUE(readDisc(image.opened).files == others);
    }
}

TEST_P(DamagedImages, AreReadSoonOrRefusedInWordsAndNeverTakenForOthers) {
    const Files right = readDisc(m_image.opened).files;
    ASSERT_FALSE(m_image.structures.empty());
    const char* factor = std::getenv("ZM_DAMAGES");
    const int times = factor ? std::atoi(factor) : 1;
    const size_t step = factor ? 1 : sampleStep();
    Tally tally;
    size_t first = 0;
    for (const auto& kind : damageKinds()) {
        for (size_t i = first++ % step; i < m_image.structures.size(); i += step) {
            for (int seed = 0; seed < kind.seeds * times; ++seed) {
                const std::string name = std::string(kind.name) + ", structure " + std::to_string(i) +
                                         " at " + std::to_string(m_image.structures[i].begin) + ", seed " +
                                         std::to_string(seed);
                SCOPED_TRACE(name);
                std::minstd_rand random(static_cast<unsigned>(seed * 1000) + static_cast<unsigned>(i) + 1);
                random.discard(3);
                const Damage damage = kind.make(m_whole, m_image, m_image.structures[i], random);
                const WhileDamaged damaged(m_image.damaged, m_whole, damage);
                const Outcome outcome = readDisc(m_image.opened);
                const int before = tally.different;
                tally.add(name, outcome, right);
                EXPECT_LT(outcome.seconds, MostSeconds);
                EXPECT_TRUE(outcome.refusal.empty() || outcome.refusal.starts_with(m_folder.path().string()))
                    << outcome.refusal;
                EXPECT_TRUE(!GetParam().secured || kind.sealed || tally.different == before)
                    << "a file is another one";
            }
        }
    }
    EXPECT_TRUE(readFile(m_image.damaged) == m_whole) << "each damage was undone";
    std::printf(
        "damaged images: %s: %d, refused %d; files: whole %d, shorter %d, unreadable %d, different %d; "
        "longest %.3f s (%s)\n",
        GetParam().name, tally.images, tally.refused, tally.whole, tally.shorter, tally.unreadable,
        tally.different, tally.longest, tally.longestName.c_str());
}

INSTANTIATE_TEST_SUITE_P(All, DamagedImages, testing::ValuesIn(imageForms()),
                         [](const auto& form) { return std::string(form.param.name); });
