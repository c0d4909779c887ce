#include "tests/disc/DvdFixture.h"

#include <filesystem>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

/** What a command is forbidden by: the bit of the disc's, and a title where it would be possible. */
struct Rule {
    const char* name;
    int bit;
    int command;
    int number = 0;
    int title = 1;
};

void PrintTo(const Rule& rule, std::ostream* out) {
    *out << rule.name;
}

uint32_t numberAt(const std::string& bytes, size_t at) {
    uint32_t number = 0;
    for (size_t i = 0; i < 4; ++i) {
        number = number << 8 | static_cast<uint8_t>(bytes[at + i]);
    }
    return number;
}

// Bits count from the lowest of four bytes, the highest of which comes first.
void setBit(std::string& bytes, size_t at, int bit) {
    char& byte = bytes[at + 3 - static_cast<size_t>(bit) / 8];
    byte = static_cast<char>(byte | 1 << bit % 8);
}

/** The disc of `Menus` with its own prohibitions. */
class ForbiddingDvd : public Dvd {
protected:
    ForbiddingDvd() {
        fs::create_directories(m_disc / "VIDEO_TS");
        for (const auto& entry : fs::directory_iterator(dvdFolder(DvdKind::Menus) + "/VIDEO_TS")) {
            fs::create_symlink(entry.path(), file(entry.path().filename()));
        }
    }
    fs::path file(const std::string& name) const { return fs::path(m_disc / "VIDEO_TS") / name; }
    void replace(const std::string& name, const std::string& bytes) {
        fs::remove(file(name));
        writeFile(file(name), bytes);
    }
    /** In both titles. */
    void forbidInTitles(int bit) {
        constexpr size_t ChainsAt = 0xCC;
        std::string table = readFile(file("VTS_01_0.IFO"));
        const size_t chains = numberAt(table, ChainsAt) * 2048;
        for (size_t title = 0; title < 2; ++title) {
            const size_t chain = chains + numberAt(table, chains + 8 + title * 8 + 4);
            setBit(table, chain + 8, bit);
        }
        replace("VTS_01_0.IFO", table);
        replace("VTS_01_0.BUP", table);
    }
    /** In all menus, by their navigation packs. */
    void forbidInMenus(int bit) {
        for (const char* name : {"VIDEO_TS.VOB", "VTS_01_0.VOB"}) {
            std::string film = readFile(file(name));
            for (size_t pack = 0; pack + 2048 <= film.size(); pack += 2048) {
                if (film.substr(pack + 38, 4) == std::string("\0\0\1\xbf", 4)) {
                    setBit(film, pack + 53, bit);
                }
            }
            replace(name, film);
        }
    }
    /** All buttons act as soon as they are chosen. */
    void letButtonsActAtOnce() {
        constexpr size_t ButtonsAt = 187;
        constexpr size_t ButtonBytes = 18;
        for (const char* name : {"VIDEO_TS.VOB", "VTS_01_0.VOB"}) {
            std::string film = readFile(file(name));
            for (size_t pack = 0; pack + 2048 <= film.size(); pack += 2048) {
                for (size_t i = 0; i < 3 && film.substr(pack + 38, 4) == std::string("\0\0\1\xbf", 4); ++i) {
                    char& byte = film[pack + ButtonsAt + i * ButtonBytes + 3];
                    byte = static_cast<char>(byte | 0x40);
                }
            }
            replace(name, film);
        }
    }
    /** A table that keeps everything in the disc from everybody but those of the highest level. */
    void addParentalTable() {
        constexpr size_t TableAt = 0xCC;
        std::string disc = readFile(file("VIDEO_TS.IFO"));
        const auto number = [](uint64_t value, int bytes) {
            std::string text;
            for (int i = bytes - 1; i >= 0; --i) {
                text += static_cast<char>(value >> 8 * i);
            }
            return text;
        };
        const std::string levels(2 * 8, '\xff'); // the menus, one title set, for each of eight levels
        const std::string masks = levels + levels;
        // One country and one title set; behind it the masks.
        const std::string table = number(1, 2) + number(1, 2) + number(16 + masks.size() - 1, 4) + "GB" +
                                  number(0, 2) + number(16, 2) + number(0, 2) + masks;
        disc.replace(TableAt, 4, number(disc.size() / 2048, 4));
        disc += table + std::string(2048 - table.size(), '\0');
        disc.replace(0x1C, 4, number(disc.size() / 2048 - 1, 4)); // the last of the tables
        replace("VIDEO_TS.IFO", disc);
        replace("VIDEO_TS.BUP", disc);
    }
    void begin(int title) {
        playDisc(m_disc.path().string());
        nextMenu();
        touchButton(title);
        nextPlace(title, 1);
        nextTime(1, 3);
    }
    /** The command is answered with the tip, and that is all. */
    void expectRefused(const Rule& rule) {
        m_unit.mark();
        watch();
        m_unit.command(rule.command, rule.number);
        nextTip(1);
        nextTime(2, 5);
        EXPECT_EQ(published("keyinvalid").size(), 1u);
        EXPECT_EQ(published("msgtip").size(), 1u);
        for (const char* name : {"discstate", "trackinfo", "dvdstate", "playspeed"}) {
            EXPECT_TRUE(published(name).empty()) << name;
        }
    }

    TempFolder m_disc;
};

class ForbiddenCommand : public ForbiddingDvd, public testing::WithParamInterface<Rule> {};

} // namespace

TEST_P(ForbiddenCommand, IsAnsweredWithTheTip) {
    forbidInTitles(GetParam().bit);
    begin(GetParam().title);
    expectRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Dvd, ForbiddenCommand,
                         testing::Values(Rule{"Time", 0, 185, 8}, Rule{"TimeOfTheTitle", 5, 185, 8},
                                         Rule{"Chapter", 1, 183, 2}, Rule{"Title", 2, 184, 2},
                                         Rule{"Stop", 3, 22}, Rule{"Previous", 6, 2}, Rule{"Next", 7, 1},
                                         Rule{"Forward", 8, 3}, Rule{"Backward", 9, 4},
                                         Rule{"TitleMenu", 10, 145}, Rule{"Menu", 11, 21},
                                         Rule{"Pause", 19, 130}, Rule{"PlayPause", 19, 5},
                                         Rule{"Sound", 20, 11}, Rule{"Subtitle", 21, 18},
                                         Rule{"Angle", 22, 12, 0, 2}, Rule{"Passage", 5, 10}),
                         [](const auto& rule) { return std::string(rule.param.name); });

TEST_F(ForbiddingDvd, NextAtATitlesEndIsAnotherTitle) {
    forbidInTitles(2);
    begin(1);
    m_unit.command(1);
    nextPlace(1, 2);
    m_unit.command(1);
    nextPlace(1, 3);
    EXPECT_TRUE(shows(blue));
    m_unit.mark();
    watch();
    m_unit.command(1);
    nextTip(1);
    EXPECT_TRUE(published("trackinfo").empty());
}

TEST_F(ForbiddingDvd, AButtonThatMayNotBePressedIsAnsweredWithTheTip) {
    forbidInMenus(17);
    playDisc(m_disc.path().string());
    nextMenu();
    m_unit.mark();
    watch();
    m_unit.command(188, 600, 20);
    touchButton(2);
    nextTip(1);
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 1s));
    EXPECT_EQ(published("msgtip").size(), 1u) << "the touch beside all of them says nothing";
}

TEST_F(ForbiddingDvd, ButtonsThatActWhenChosenWaitForTheTouch) {
    letButtonsActAtOnce();
    playDisc(m_disc.path().string());
    nextMenu();
    EXPECT_TRUE(m_unit.pictures().waitFor(177, 133, yellow)) << "the first one is chosen from the beginning";
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 1s));
    touchButton(2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
}

TEST_F(ForbiddingDvd, ADiscWithLevelsForParentsIsPlayedWhole) {
    addParentalTable();
    begin(1);
    EXPECT_TRUE(shows(red));
    m_unit.command(184, 2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
    m_unit.command(189, 1234);
    nextTip(1);
    m_unit.command(183, 2);
    nextPlace(2, 2);
    for (const auto& each : m_unit.recorder().all()) {
        EXPECT_FALSE(each.name == "parental" && each.value == "true");
    }
}

TEST_F(ForbiddingDvd, AMenuThatMayNotBeLeftIsAnsweredWithTheTip) {
    forbidInMenus(16);
    begin(1);
    m_unit.command(21);
    nextMenu();
    m_unit.mark();
    m_unit.command(21);
    nextTip(1);
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 1s));
}

TEST_F(Dvd, ThereIsNoPasswordAsTheUnitLimitsNothing) {
    playTitle(1);
    m_unit.mark();
    m_unit.command(189, 1234);
    nextTip(1);
    nextTime(1, 5);
    for (const auto& each : m_unit.recorder().all()) {
        EXPECT_FALSE(each.name == "parental" && each.value == "true");
    }
}

TEST_F(Dvd, ATouchOnAPausedMenuPlaysOn) {
    play(DvdKind::Menus);
    nextMenu();
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(188, 600, 20);
    EXPECT_FALSE(m_unit.follows("discstate", "2", 500ms));
    touchButton(2);
    m_unit.nextState(PlayState::Playing);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
    nextTime(1, 3);
}
