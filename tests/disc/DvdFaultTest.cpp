#include "tests/disc/DvdFixture.h"

#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

/** A DVD in the drive whose files can be changed. */
class DamagedDvd : public Dvd {
protected:
    void copy(DvdKind kind) { fs::copy(dvdFolder(kind), m_disc / "dvd", fs::copy_options::recursive); }
    std::string path() const { return m_disc / "dvd"; }
    std::string file(const std::string& name) const { return path() + "/VIDEO_TS/" + name; }
    void write(const std::string& name, size_t at, const std::string& bytes) {
        std::fstream stream(file(name), std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(static_cast<std::streamoff>(at));
        stream << bytes;
    }
    void insert() {
        m_unit.startService();
        m_unit.request({{"op", "insert"}, {"path", path()}});
        m_unit.command(187, 1, 0);
    }
    /** What the drive says of the disc, once that contains `words`. */
    void nextReport(const std::string& words) {
        m_unit.next("drivestate", [&](const Published& each) {
            return each.json()["state"] == "error" &&
                   each.json()["text"].get<std::string>().find(words) != std::string::npos;
        });
    }
    void ejects() {
        m_unit.command(13);
        m_unit.nextState(PlayState::Ejecting);
        m_unit.next("disc", "0");
    }

    TempFolder m_disc;
};

} // namespace

TEST_F(DamagedDvd, ADiscOfAnotherRegionIsToldAndNotPlayed) {
    copy(DvdKind::Menus);
    write("VIDEO_TS.IFO", 0x23, "\xFE"); // for region 1 only
    insert();
    m_unit.next("mediatype", "0");
    nextReport("region");
    m_unit.next("errorstatus", "144");
    EXPECT_FALSE(m_unit.follows("discstate", "2", 500ms));
    ejects();
    m_unit.next("errorstatus", "0");
}

TEST_F(DamagedDvd, AnEncryptedFilmIsRefusedInWords) {
    copy(DvdKind::Film);
    // The bits of each packet that say so.
    std::string film = readFile(file("VTS_01_1.VOB"));
    for (size_t at = 0; at < film.size(); at += 2048) {
        if (film[at + 17] == '\xe0') {
            film[at + 20] = static_cast<char>(film[at + 20] | 0x30);
        }
    }
    writeFile(file("VTS_01_1.VOB"), film);
    insert();
    nextReport("copy-protected");
    m_unit.nextState(PlayState::Error);
    ejects();
}

TEST_F(DamagedDvd, AnEncryptedImageIsRefusedInWords) {
    std::string image = readFile(dvdImage(DvdKind::Stills));
    for (size_t at = 0; at + 2048 <= image.size(); at += 2048) {
        if (image.compare(at, 4, std::string("\0\0\1\xba", 4)) == 0 && image[at + 17] == '\xe0') {
            image[at + 20] = static_cast<char>(image[at + 20] | 0x30);
        }
    }
    writeFile(m_disc / "dvd", image);
    insert();
    nextReport("copy-protected");
    m_unit.nextState(PlayState::Error);
    ejects();
}

TEST_F(Dvd, ALibraryThatDecryptsIsNotLoadedEvenIfThereIsOne) {
    TempFolder libraries;
    writeFile(libraries / "library.c", "void* dvdcss_open(char* disc) { return 0; }\n");
    const std::string library = libraries / "libdvdcss.so.2";
    const std::string command =
        "gcc -shared -fPIC -o '" + library + "' '" + std::string(libraries / "library.c") + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    ::setenv("LD_LIBRARY_PATH", libraries.path().c_str(), 1);
    playTitle(1);
    ::unsetenv("LD_LIBRARY_PATH");
    const pid_t reader = dvdReaderOf(::getpid());
    ASSERT_GT(reader, 0);
    const std::string loaded = readFile("/proc/" + std::to_string(reader) + "/maps");
    EXPECT_NE(loaded.find("libdvdread"), std::string::npos);
    EXPECT_EQ(loaded.find("libdvdcss"), std::string::npos) << loaded;
}

TEST_F(DamagedDvd, ATableThatIsDamagedOrMissingIsReadFromItsCopy) {
    copy(DvdKind::Menus);
    write("VIDEO_TS.IFO", 0, std::string(12, 'x'));
    fs::remove(file("VTS_01_0.IFO"));
    insert();
    m_unit.nextState(PlayState::Playing);
    nextMenu();
    touchButton(2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
}

TEST_F(DamagedDvd, TablesThatSayNothingAreAnErrorAndTheDiscComesOut) {
    copy(DvdKind::Menus);
    for (const char* name : {"VIDEO_TS.IFO", "VIDEO_TS.BUP"}) {
        const auto size = fs::file_size(file(name));
        writeFile(file(name), "DVDVIDEO-VMG" + std::string(size - 12, '\xff'));
        write(name, 0x23, std::string(1, '\0'));
    }
    insert();
    m_unit.nextState(PlayState::Error);
    ejects();
}

TEST_F(Dvd, TheDeathOfTheReaderIsToldAndTheNextDiscPlays) {
    playTitle(1);
    const pid_t reader = dvdReaderOf(::getpid());
    ASSERT_GT(reader, 0);
    ::kill(reader, SIGSEGV);
    m_unit.next("drivestate", [](const Published& each) {
        return each.json()["text"].get<std::string>().find("signal 11") != std::string::npos;
    });
    m_unit.nextState(PlayState::Error);
    m_unit.command(13);
    m_unit.next("disc", "0");
    m_unit.request({{"op", "insert"}, {"path", dvdImage(DvdKind::Menus)}});
    m_unit.nextState(PlayState::Playing);
    nextPlace(1, 1); // where it was
    EXPECT_TRUE(shows(red));
}

TEST_F(Dvd, NothingIsLeftBehindWhenTheDiscIsOut) {
    playTitle(1);
    const pid_t reader = dvdReaderOf(::getpid());
    ASSERT_GT(reader, 0);
    m_unit.command(13);
    m_unit.next("disc", "0");
    EXPECT_TRUE(eventually([&] { return dvdReaderOf(::getpid()) == 0; }));
    EXPECT_TRUE(m_unit.pictures().waitCleared());
}

TEST_F(Dvd, ADriveThatFailsIsAReadErrorAndComesOut) {
    playTitle(1);
    m_unit.request({{"op", "fault"}, {"kind", "read"}});
    m_unit.nextState(PlayState::Error);
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting, 500ms);
    m_unit.next("disc", "0");
}

TEST_F(Dvd, ADriveThatDoesNotAnswerCanBeEmptiedAtOnce) {
    playTitle(1);
    m_unit.request({{"op", "fault"}, {"kind", "noanswer"}});
    m_unit.command(183, 3);
    m_unit.mark();
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting, 500ms);
    m_unit.next("disc", "0");
    EXPECT_TRUE(eventually([&] { return dvdReaderOf(::getpid()) == 0; }));
}

TEST_F(Dvd, ADecoderThatHangsLeavesNoReaderBehind) {
    playTitle(1);
    EXPECT_TRUE(m_unit.sound().waitForTone(440));
    m_unit.sound().hang(true);
    m_unit.command(130);
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting);
    EXPECT_TRUE(eventually([] { return dvdReaderOf(::getpid()) == 0; }));
    m_unit.sound().hang(false);
}

TEST_F(Dvd, ManyJumpsInARowNeverHang) {
    playTitle(1);
    unsigned seed = 7;
    const auto random = [&](unsigned below) {
        seed = seed * 1103515245u + 12345u;
        return static_cast<int>((seed >> 16) % below);
    };
    for (int i = 0; i < 100; ++i) {
        switch (random(8)) {
        case 0:
            m_unit.command(184, 1 + random(2));
            break;
        case 1:
            m_unit.command(183, 1 + random(3));
            break;
        case 2:
            m_unit.command(185, random(18));
            break;
        case 3:
            m_unit.command(21);
            break;
        case 4:
            touchButton(1 + random(3));
            break;
        case 5:
            m_unit.command(random(2) ? 11 : 18);
            break;
        case 6:
            m_unit.command(3 + random(2));
            break;
        default:
            m_unit.command(1 + random(2));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(random(60)));
    }
    m_unit.mark();
    m_unit.command(184, 2);
    nextPlace(2, 1);
    m_unit.command(184, 1);
    nextPlace(1, 1);
    m_unit.command(183, 2);
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    nextTime(8, 10);
    EXPECT_TRUE(eventually([&] { return m_unit.sound().tone() == 440 || m_unit.sound().tone() == 880; }));
}
