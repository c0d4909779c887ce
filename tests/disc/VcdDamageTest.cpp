#include "tests/disc/PictureFixture.h"
#include "tests/disc/VcdImage.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <random>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

constexpr size_t SectorSize = 2352;
constexpr size_t SectorHead = 24;

/** A VCD with menus whose sectors can be changed. */
class DamagedVcd : public testing::Test {
protected:
#ifdef __SANITIZE_THREAD__
    void SetUp() override {
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
    }
#endif
    DamagedVcd() {
        for (const char* name : {"disc.cue", "disc.bin"}) {
            fs::copy(fs::path(vcdImage("menu")).parent_path() / name, m_folder.path() / name);
        }
    }
    std::string image() const {
        return m_folder / "disc.bin";
    }
    std::string sheet() const {
        return m_folder / "disc.cue";
    }
    static size_t placeOf(size_t sector) {
        return sector * SectorSize + SectorHead;
    }
    void write(size_t at, const std::string& bytes) {
        std::fstream stream(image(), std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(static_cast<std::streamoff>(at));
        stream << bytes;
    }
    bool shows(Colour colour) {
        return m_unit.pictures().waitFor(MiddleX, MiddleY, colour);
    }
    void nextTrack(int track, int of) {
        m_unit.next("trackinfo", [=](const Published& each) {
            return each.json()["mediaid"] == track && each.json()["mediaids"] == of;
        });
    }

    TempFolder m_folder;
    DiscUnit m_unit;
};

} // namespace

TEST_F(DamagedVcd, ListsThatLeadInACircleSwitchPlaybackControlOff) {
    // The list of the first choice, at the fourth place of eight bytes: no items, and next itself.
    const size_t list = placeOf(184) + 4 * 8;
    write(list + 1, std::string(1, '\0'));
    write(list + 6, std::string("\0\4", 2));
    m_unit.play(sheet());
    EXPECT_TRUE(shows(red));
    m_unit.command(182, 1);
    m_unit.next("msgtip", "30");
    nextTrack(1, 2);
    EXPECT_TRUE(shows(green));
}

TEST_F(DamagedVcd, AFilmThatIsGoneIsToldAndTheListsGoOn) {
    m_unit.play(sheet());
    fs::resize_file(image(), SectorSize * 1300);
    m_unit.command(182, 2);
    nextTrack(2, 2);
    m_unit.next("errorstatus", "32");
    m_unit.next("errorstatus", "0");
    nextTrack(0, 2); // the picture behind it
    EXPECT_TRUE(shows({255, 255, 255}));
    m_unit.nextState(PlayState::Stopped);
}

TEST_F(DamagedVcd, NoiseInTheTablesNeverEndsTheServiceNorHoldsItUp) {
    constexpr std::array<std::pair<size_t, unsigned>, 4> tables{
        {{150, 64}, {151, 30}, {152, 20}, {184, 128}}};
    const std::string whole = readFile(image());
    m_unit.startService();
    m_unit.command(187, 1);
    for (unsigned seed = 0; seed < 10; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::string bytes = whole;
        for (unsigned i = 1 + random() % 20; i > 0; --i) {
            const auto& [sector, size] = tables[random() % tables.size()];
            bytes[placeOf(sector) + random() % size] = static_cast<char>(random());
        }
        writeFile(image(), bytes);
        m_unit.mark();
        m_unit.request({{"op", "insert"}, {"path", sheet()}});
        m_unit.next("disc", "1");
        m_unit.next("discstate",
                    [](const Published& each) { return each.value == "2" || each.value == "9"; });
        for (const int choice : {1, 3, 4, 2}) {
            m_unit.command(182, choice);
            std::this_thread::sleep_for(100ms);
        }
        m_unit.mark();
        m_unit.command(12); // never available
        m_unit.next("msgtip", "1", 2s);
    }
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting, 2s);
}
