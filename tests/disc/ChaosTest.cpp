#include "services/disc/library/Scanner.h"
#include "services/disc/medium/OpenMedium.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <random>

using namespace zm::test;
using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

constexpr uintmax_t Block = 2048;
// How soon after a fault's end everything is right again.
constexpr auto Recovery = 2s;

/** Files of this process cannot grow any more, as on a full disk. */
class DiskFull {
public:
    DiskFull() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_limit);
        rlimit full = m_limit;
        full.rlim_cur = 1;
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~DiskFull() { setrlimit(RLIMIT_FSIZE, &m_limit); }

private:
    rlimit m_limit{};
};

// Reads all that the image claims to hold. Whether it can be opened at all.
bool readThrough(const std::string& image) {
    const auto medium = openMedium(image);
    if (!medium) {
        return false;
    }
    ScanProgress progress;
    const auto contents = scan(**medium, progress);
    for (const auto& row : kinds) {
        for (const auto& item : contents ? contents->of(row.kind) : std::vector<Item>{}) {
            if (const auto reader = (*medium)->open(contents->pathOf(item))) {
                std::vector<char> bytes(4 * Block);
                // Errors are as welcome as bytes; only a crash would be a fault.
                static_cast<void>((*reader)->readAt(0, bytes));
                static_cast<void>((*reader)->readAt((*reader)->size() - 1, bytes));
            }
        }
    }
    return true;
}

class DiscChaos : public testing::Test {
protected:
    DiscChaos() { place(toneFile("mp3", 5, "Song"), m_good / "1.mp3"); }

    void insert(const std::string& path) { m_unit.request({{"op", "insert"}, {"path", path}}); }

    // The good disc is inserted and plays in time.
    void expectRecovery() {
        const auto begun = std::chrono::steady_clock::now();
        insert(m_good.path().string());
        m_unit.next("ID3", [](const Published& each) { return each.json()["title"] == "Song"; });
        EXPECT_LE(m_unit.nextState(PlayState::Playing).when - begun, Recovery);
    }

    // A disc of so many files that it is still being read when the next request comes.
    std::string longDisc() {
        constexpr int Files = 4000;
        place(toneFile("mp3", 5, "Song"), m_other / "long/0.mp3");
        for (int file = 1; file < Files; ++file) {
            std::filesystem::create_hard_link(m_other / "long/0.mp3",
                                              m_other / ("long/" + std::to_string(file) + ".mp3"));
        }
        return m_other / "long";
    }

    std::string makeImage() {
        writeFile(m_other / "content/a/1.mp3", readFile(m_good / "1.mp3").substr(0, 3 * Block));
        writeFile(m_other / "content/b/photo.jpg", std::string(5, 'x'));
        const std::string image = m_other / "disc.iso";
        const std::string command = "xorriso -as mkisofs -quiet -r -J -no-pad -o '" + image + "' '" +
                                    m_other / "content" + "' 2>/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return image;
    }

    std::vector<std::string> catalogued() {
        sqlite3* database = nullptr;
        sqlite3_open_v2(m_unit.catalogue().c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
        std::vector<std::string> names;
        sqlite3_exec(
            database, "SELECT filename FROM files",
            [](void* into, int, char** cells, char**) {
                static_cast<std::vector<std::string>*>(into)->emplace_back(cells[0]);
                return 0;
            },
            &names, nullptr);
        sqlite3_close(database);
        return names;
    }

    TempFolder m_good;
    TempFolder m_other;
    DiscUnit m_unit;
};

using Names = std::vector<std::string>;

} // namespace

TEST_F(DiscChaos, ADiskThatIsFullIsAnErrorAndTheNextDiscPlays) {
    m_unit.play(m_good.path().string());
    writeFile(m_other / "clip.mp3", "");
    {
        const DiskFull full;
        insert(m_other.path().string());
        m_unit.next("disc", "1");
        m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "error"; });
        m_unit.nextState(PlayState::Error);
        EXPECT_EQ(catalogued(), Names{}) << "nothing of the disc before";
    }
    expectRecovery();
    EXPECT_EQ(catalogued(), Names{"Song"});
}

TEST_F(DiscChaos, ADriveThatGoesAwayWhileADiscIsReadIsBackWithTheNextDisc) {
    m_unit.startService();
    m_unit.command(187, 1, 0);
    insert(longDisc());
    m_unit.nextState(PlayState::Loading);
    m_unit.request({{"op", "fault"}, {"kind", "gone"}});
    m_unit.next("disc", "2");
    EXPECT_FALSE(m_unit.follows("mixedtype", "2", 1s)) << "nothing more of the disc that is gone";
    expectRecovery();
    EXPECT_EQ(catalogued(), Names{"Song"});
}

TEST_F(DiscChaos, ADiscThatVanishesWhileItIsReadDoesNotHoldTheNextOneUp) {
    m_unit.startService();
    m_unit.command(187, 1, 0);
    const std::string disc = longDisc();
    insert(disc);
    m_unit.nextState(PlayState::Loading);
    std::filesystem::remove_all(disc);
    expectRecovery();
    EXPECT_EQ(catalogued(), Names{"Song"});
}

TEST_F(DiscChaos, AFolderThatIsGoneWhenItIsReadIsADiscError) {
    m_unit.startService();
    m_unit.command(187, 1, 0);
    std::filesystem::create_directories(m_other / "gone");
    insert(m_other / "gone");
    std::filesystem::remove_all(m_other / "gone");
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "error"; });
    expectRecovery();
}

TEST_F(DiscChaos, ACatalogueThatIsTakenAwayIsMadeAnewWhilePlayingGoesOn) {
    m_unit.play(m_good.path().string());
    m_unit.mark();
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::filesystem::remove(m_unit.catalogue() + suffix);
    }
    const auto gone = std::chrono::steady_clock::now();
    EXPECT_LE(m_unit.next("updatedb", "65537").when - gone, Recovery);
    EXPECT_EQ(catalogued(), Names{"Song"});
    EXPECT_EQ(m_unit.since("discstate"), Names{});
}

TEST_F(DiscChaos, AnImageThatEndsAtAnyOfItsBlocksDoesNoHarm) {
    const std::string image = makeImage();
    const std::string whole = readFile(image);
    ASSERT_GT(whole.size(), 20 * Block);
    for (uintmax_t size = whole.size() / Block * Block;; size -= Block) {
        std::filesystem::resize_file(image, size);
        const bool opened = readThrough(image);
        EXPECT_TRUE(!opened || size > 16 * Block) << size;
        if (size == 0) {
            break;
        }
    }
    m_unit.startService();
    m_unit.command(187, 1, 0);
    for (const uintmax_t blocks : {17, 19, 21, 25, 30}) {
        writeFile(image, whole.substr(0, blocks * Block));
        m_unit.mark();
        insert(image);
        m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] != "reading"; });
    }
    expectRecovery();
}

TEST_F(DiscChaos, AnImageWithFlippedBitsDoesNoHarm) {
    constexpr int Rounds = 1500;
    const std::string image = makeImage();
    std::string bytes = readFile(image);
    std::mt19937 random(7);
    std::uniform_int_distribution<size_t> places(16 * Block, bytes.size() - 1);
    int opened = 0;
    for (int round = 0; round < Rounds; ++round) {
        std::fstream file(image, std::ios::in | std::ios::out | std::ios::binary);
        const size_t place = places(random);
        file.seekp(static_cast<std::streamoff>(place));
        file.put(static_cast<char>(bytes[place] ^ (1 << random() % 8)));
        file.close();
        opened += readThrough(image);
        std::fstream(image, std::ios::in | std::ios::out | std::ios::binary)
            .seekp(static_cast<std::streamoff>(place))
            .put(bytes[place]);
    }
    EXPECT_GT(opened, Rounds * 9 / 10) << "one bit rarely hides the whole disc";
}
