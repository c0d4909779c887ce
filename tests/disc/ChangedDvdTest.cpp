// Discs with bytes that are not what they should be. A few in every run; all with ZM_CHANGED_DVDS=1500 (tables) and
// ZM_CHANGED_FILMS=300, or some of them with FIRST-END.
#include "tests/disc/DvdFixture.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

struct Range {
    int first = 0;
    int end = 0;
};

// "N" is from 0 to N, "FIRST-END" a part of that.
Range rangeFrom(const char* variable, int usual) {
    const char* text = std::getenv(variable);
    Range range{0, usual};
    if (text && std::sscanf(text, "%d-%d", &range.first, &range.end) == 1) {
        range = {0, range.first};
    }
    return range;
}

class ChangedDvd : public Dvd {
protected:
    template <class Damage>
    void playEach(const Range& range, Damage damage) {
        m_unit.startService();
        m_unit.command(187, 1, 0);
        for (int seed = range.first; seed < range.end; ++seed) {
            m_random.seed(static_cast<unsigned>(seed));
            const fs::path disc = m_folder.path() / std::to_string(seed);
            fs::create_directories(disc / "VIDEO_TS");
            for (const auto& file : fs::directory_iterator(fs::path(dvdFolder(kind())) / "VIDEO_TS")) {
                fs::create_symlink(file.path(), disc / "VIDEO_TS" / file.path().filename());
            }
            damage(disc / "VIDEO_TS");
            play(seed, disc.string());
            if (HasFatalFailure()) {
                return;
            }
        }
        m_unit.command(13);
        m_unit.nextState(PlayState::Ejecting, 2s);
        m_unit.next("disc", "0");
        EXPECT_TRUE(eventually([&] { return dvdReaderOf(::getpid()) == 0; }));
        for (const auto& [what, count] : m_outcomes) {
            std::printf("%5d %s\n", count, what.c_str());
        }
    }

    /** One to twelve bytes of the tables; their copies are not touched, or changed in the same way. */
    void changeTables(const fs::path& folder) {
        const bool copies = below(2) == 0;
        std::map<std::string, std::string> tables;
        for (const char* name : {"VIDEO_TS", "VTS_01_0"}) {
            tables[name] = readFile((folder / (std::string(name) + ".IFO")).string());
        }
        for (int i = 1 + below(12); i > 0; --i) {
            change(below(2) == 0 ? tables["VIDEO_TS"] : tables["VTS_01_0"]);
        }
        for (const auto& [name, bytes] : tables) {
            replace(folder / (name + ".IFO"), bytes);
            if (copies) {
                replace(folder / (name + ".BUP"), bytes);
            }
        }
    }

    /** One to three hundred bytes of menu and film. */
    void changeFilm(const fs::path& folder) {
        for (const char* name : {"VIDEO_TS.VOB", "VTS_01_1.VOB"}) {
            std::string bytes = readFile((folder / name).string());
            for (int i = 1 + below(300); i > 0; --i) {
                change(bytes);
            }
            replace(folder / name, bytes);
        }
    }

private:
    static constexpr DvdKind kind() { return DvdKind::Menus; }
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    void change(std::string& bytes) { bytes[m_random() % bytes.size()] = static_cast<char>(m_random()); }
    static void replace(const fs::path& file, const std::string& bytes) {
        fs::remove(file);
        writeFile(file.string(), bytes);
    }

    // From one disc to the next: what it was, and that the service answers.
    void play(int seed, const std::string& disc) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        m_unit.forget();
        m_unit.request({{"op", "insert"}, {"path", disc}});
        m_unit.next("disc", "1", 5s);
        const auto begun = m_unit.next(
            "discstate", [](const Published& each) { return each.value == "2" || each.value == "9"; });
        std::string outcome = begun.value == "2" ? "play" : "are refused";
        if (begun.value == "2") {
            use();
            outcome += errorText().empty() ? "" : ", then stop";
        }
        if (const std::string text = errorText(); text.find("signal") != std::string::npos) {
            outcome = "end the reader: " + text.substr(text.find("signal"));
        } else if (!text.empty()) {
            outcome += " (" + text.substr(disc.size() + 2) + ")";
        }
        ++m_outcomes[outcome];
        m_unit.mark();
        m_unit.command(7, 99); // no such mode
        m_unit.next("msgtip", "1", 2s);
        fs::remove_all(disc);
    }

    // As somebody who presses whatever there is.
    void use() {
        constexpr std::array<std::array<int, 3>, 9> commands{{{188, 220, 133},
                                                              {188, 220, 333},
                                                              {184, 1, 0},
                                                              {184, 2, 0},
                                                              {183, 2, 0},
                                                              {185, 5, 0},
                                                              {1, 0, 0},
                                                              {21, 0, 0},
                                                              {145, 0, 0}}};
        for (int i = 0; i < 6; ++i) {
            const auto& command = commands[m_random() % commands.size()];
            m_unit.command(command[0], command[1], command[2]);
            std::this_thread::sleep_for(std::chrono::milliseconds(below(100)));
        }
    }

    std::string errorText() {
        std::string text;
        for (const auto& each : m_unit.recorder().all()) {
            if (each.name == "drivestate" && each.json()["state"] == "error") {
                text = each.json()["text"];
            }
        }
        return text;
    }

    TempFolder m_folder;
    std::mt19937 m_random;
    std::map<std::string, int> m_outcomes;
};

} // namespace

TEST_F(ChangedDvd, TablesWithOtherBytesNeverEndTheServiceNorHoldItUp) {
    playEach(rangeFrom("ZM_CHANGED_DVDS", 25), [this](const fs::path& folder) { changeTables(folder); });
}

TEST_F(ChangedDvd, FilmsWithOtherBytesNeverEndTheServiceNorHoldItUp) {
    playEach(rangeFrom("ZM_CHANGED_FILMS", 10), [this](const fs::path& folder) { changeFilm(folder); });
}
