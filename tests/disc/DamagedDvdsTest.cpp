// DVDs that are damaged in ways of their own: whatever they are, the service lives, answers, says why and gives them out.
#include "tests/disc/DvdFixture.h"

#include <filesystem>
#include <random>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

constexpr size_t DvdBlockBytes = 2048;

/** The files of a DVD while they are changed. */
class DvdFiles {
public:
    explicit DvdFiles(const fs::path& folder) : m_folder(folder) {}

    std::string path(const std::string& name) const { return (m_folder / name).string(); }
    void remove(const std::string& name) { fs::remove(path(name)); }
    void cut(const std::string& name, size_t size) { fs::resize_file(path(name), size); }
    template <class Change>
    void edit(const std::string& name, Change change) {
        std::string bytes = readFile(path(name));
        change(bytes);
        writeFile(path(name), bytes);
    }
    /** Changes a table and its copy. */
    template <class Change>
    void table(const std::string& name, Change change) {
        edit(name + ".IFO", change);
        edit(name + ".BUP", change);
    }

private:
    fs::path m_folder;
};

size_t number(const std::string& bytes, size_t at, size_t count) {
    size_t value = 0;
    for (size_t i = at; i < at + count; ++i) {
        value = value << 8 | static_cast<uint8_t>(bytes.at(i));
    }
    return value;
}
void put(std::string& bytes, size_t at, const std::string& value) {
    bytes.replace(at, value.size(), value);
}
std::string longNumber(size_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xff);
    }
    return bytes;
}

// Where the program chain of the disc's first menu, and that of a title, stands in its table.
size_t menuChain(const std::string& table) {
    const size_t unit = number(table, 0xc8, 4) * DvdBlockBytes;
    const size_t language = unit + number(table, unit + 12, 4);
    return language + number(table, language + 12, 4);
}
size_t titleChain(const std::string& table, size_t title) {
    const size_t chains = number(table, 0xcc, 4) * DvdBlockBytes;
    return chains + number(table, chains + 8 + (title - 1) * 8 + 4, 4);
}
size_t cell(const std::string& table, size_t chain, size_t index) {
    return chain + number(table, chain + 0xe8, 2) + index * 24;
}
template <class Change>
void eachCell(std::string& table, Change change) {
    for (const size_t title : {1, 2}) {
        const size_t chain = titleChain(table, title);
        for (size_t i = 0; i < number(table, chain + 3, 1); ++i) {
            change(table, cell(table, chain, i));
        }
    }
}
// Puts `command` in the place of all instructions in front of the chain.
void instruct(std::string& table, size_t chain, const std::string& command) {
    const size_t commands = chain + number(table, chain + 0xe4, 2);
    for (size_t i = 0; i < number(table, commands, 2); ++i) {
        put(table, commands + 8 + i * 8, command);
    }
}
// Changes each navigation pack of a film.
template <class Change>
void eachPlace(std::string& film, Change change) {
    for (size_t at = 0; at + DvdBlockBytes <= film.size(); at += DvdBlockBytes) {
        if (film.compare(at + 38, 4, std::string("\0\0\1\xbf", 4)) == 0) {
            change(film, at);
        }
    }
}
void flip(std::string& bytes, size_t first, unsigned one) {
    std::mt19937 random(5);
    for (size_t i = first; i < bytes.size(); ++i) {
        bytes[i] = random() % one == 0 ? static_cast<char>(bytes[i] ^ (1 << random() % 8)) : bytes[i];
    }
}

const std::string ToItself("\x20\x04\0\0\0\0\0\1", 8);
const std::string ToTitle77("\x30\x02\0\0\0\x4d\0\0", 8);
const std::string NoBytes4(4, '\0');

struct Damage {
    const char* name;
    void (*make)(DvdFiles& files);
    const char* words = nullptr; ///< what the drive says of it, where it is refused at once
};
std::ostream& operator<<(std::ostream& out, const Damage& damage) {
    return out << damage.name;
}

const Damage damages[] = {
    {"TheDiscsTableMissing", [](DvdFiles& f) { f.remove("VIDEO_TS.IFO"); }},
    {"TheDiscsTablesMissing",
     [](DvdFiles& f) {
         f.remove("VIDEO_TS.IFO");
         f.remove("VIDEO_TS.BUP");
     }},
    {"TheTitlesTableMissing", [](DvdFiles& f) { f.remove("VTS_01_0.IFO"); }},
    {"TheTitlesTablesMissing",
     [](DvdFiles& f) {
         f.remove("VTS_01_0.IFO");
         f.remove("VTS_01_0.BUP");
     }},
    {"TheDiscsTablesCut",
     [](DvdFiles& f) {
         f.cut("VIDEO_TS.IFO", DvdBlockBytes);
         f.cut("VIDEO_TS.BUP", DvdBlockBytes);
     }},
    {"TheTitlesTablesCut",
     [](DvdFiles& f) {
         f.cut("VTS_01_0.IFO", DvdBlockBytes + 100);
         f.cut("VTS_01_0.BUP", DvdBlockBytes + 100);
     }},
    {"TheDiscsTablesEmpty",
     [](DvdFiles& f) {
         f.table("VIDEO_TS", [](std::string& b) { b.replace(0x40, b.size() - 0x40, b.size() - 0x40, '\0'); });
     }},
    {"BitsFlippedInAllTables",
     [](DvdFiles& f) {
         f.table("VIDEO_TS", [](std::string& b) { flip(b, 0x40, 50); });
         f.table("VTS_01_0", [](std::string& b) { flip(b, 0x40, 50); });
     }},
    {"CellsWithoutLength",
     [](DvdFiles& f) {
         f.table("VTS_01_0", [](std::string& b) {
             eachCell(b, [](std::string& t, size_t at) {
                 put(t, at + 4, NoBytes4);
                 put(t, at + 16, t.substr(at + 8, 4));
                 put(t, at + 20, t.substr(at + 8, 4));
             });
         });
     }},
    {"CellsThatEndBeforeTheyBegin",
     [](DvdFiles& f) {
         f.table("VTS_01_0", [](std::string& b) {
             eachCell(b, [](std::string& t, size_t at) {
                 put(t, at + 8, longNumber(900));
                 put(t, at + 20, NoBytes4);
             });
         });
     }},
    {"CellsOutsideTheFilm",
     [](DvdFiles& f) {
         f.table("VTS_01_0", [](std::string& b) {
             eachCell(b, [](std::string& t, size_t at) {
                 put(t, at + 8, longNumber(5000000));
                 put(t, at + 16, longNumber(5000100));
                 put(t, at + 20, longNumber(5000200));
             });
         });
     }},
    {"AMenuThatLeadsToItself",
     [](DvdFiles& f) { f.table("VIDEO_TS", [](std::string& b) { instruct(b, menuChain(b), ToItself); }); },
     "circle"},
    {"ATitleThatLeadsToItself",
     [](DvdFiles& f) {
         f.table("VTS_01_0", [](std::string& b) {
             for (const size_t title : {1, 2}) {
                 const size_t chain = titleChain(b, title);
                 b[chain + 3] = 0; // no cells
                 b[chain + 2] = 0;
                 put(b, chain + 0x9c, std::string{'\0', static_cast<char>(title)});
             }
         });
     }},
    {"AMenuThatLeadsNowhere",
     [](DvdFiles& f) { f.table("VIDEO_TS", [](std::string& b) { instruct(b, menuChain(b), ToTitle77); }); }},
    {"ButtonsThatLeadNowhere",
     [](DvdFiles& f) {
         f.edit("VIDEO_TS.VOB", [](std::string& b) {
             eachPlace(b, [](std::string& film, size_t at) {
                 for (size_t button = 0; button < 36; ++button) {
                     put(film, at + 0x2d + 96 + 46 + button * 18 + 10, ToTitle77);
                 }
             });
         });
     }},
    {"TheFilmCut", [](DvdFiles& f) { f.cut("VTS_01_1.VOB", 300 * DvdBlockBytes + 1000); }},
    {"TheFilmMissing", [](DvdFiles& f) { f.remove("VTS_01_1.VOB"); }},
    {"TheFilmEmpty", [](DvdFiles& f) { f.cut("VTS_01_1.VOB", 0); }},
    {"TheFilmZeros",
     [](DvdFiles& f) { f.edit("VTS_01_1.VOB", [](std::string& b) { b.assign(b.size(), '\0'); }); }},
    {"BitsFlippedInTheFilm",
     [](DvdFiles& f) { f.edit("VTS_01_1.VOB", [](std::string& b) { flip(b, 0, 500); }); }},
    {"OnlyThePlacesOfTheFilm",
     [](DvdFiles& f) {
         f.edit("VTS_01_1.VOB", [](std::string& b) {
             std::string film(b.size(), '\0');
             eachPlace(b,
                       [&](std::string& from, size_t at) { put(film, at, from.substr(at, DvdBlockBytes)); });
             b = film;
         });
     }},
    {"NoPlacesInTheFilm",
     [](DvdFiles& f) {
         f.edit("VTS_01_1.VOB", [](std::string& b) {
             eachPlace(b, [](std::string& film, size_t at) { put(film, at + 38, NoBytes4); });
         });
     }},
    {"WrongSectorsInThePlaces",
     [](DvdFiles& f) {
         f.edit("VTS_01_1.VOB", [](std::string& b) {
             eachPlace(b, [](std::string& film, size_t at) {
                 put(film, at + 0x407 + 4, longNumber(0x7fffffff)); // its own
                 put(film, at + 0x407 + 8, longNumber(0x7fff));     // the end of its unit
                 film.replace(at + 0x407 + 0xea, 0xa8, 0xa8, '\x3f');
             });
         });
     }},
    {"TimesThatStand",
     [](DvdFiles& f) {
         f.edit("VTS_01_1.VOB", [](std::string& b) {
             eachPlace(b,
                       [](std::string& film, size_t at) { put(film, at + 0x2d + 12, NoBytes4 + NoBytes4); });
         });
     }},
    {"TimesOfOtherDays",
     [](DvdFiles& f) {
         f.edit("VTS_01_1.VOB", [](std::string& b) {
             size_t day = 0;
             eachPlace(b, [&](std::string& film, size_t at) {
                 day = (day + 0x5eadbeef) & 0xffffffff;
                 put(film, at + 0x2d + 12, longNumber(day) + longNumber(day - 1));
             });
         });
     }},
    {"AMenuWithoutAPlace",
     [](DvdFiles& f) {
         f.edit("VIDEO_TS.VOB", [](std::string& b) {
             eachPlace(b, [](std::string& film, size_t at) { put(film, at + 44, "\x7f"); });
         });
     }},
    {"AMenuWithoutAPicture",
     [](DvdFiles& f) {
         f.edit("VIDEO_TS.VOB", [](std::string& b) {
             for (size_t at = DvdBlockBytes; at + DvdBlockBytes <= b.size(); at += DvdBlockBytes) {
                 if (number(b, at + 14, 4) == 0x1e0) {
                     b.replace(at + 30, DvdBlockBytes - 30, DvdBlockBytes - 30, '\xff');
                 }
             }
         });
     }},
    {"TheMenuMissing", [](DvdFiles& f) { f.remove("VIDEO_TS.VOB"); }},
};

class DamagedDvds : public Dvd, public testing::WithParamInterface<Damage> {
protected:
    // Loaded machines take their time for what is a second elsewhere.
    static constexpr auto Patience = 6s;

    bool isError() {
        const auto states = m_unit.recorder().all();
        const auto last = std::find_if(states.rbegin(), states.rend(),
                                       [](const Published& each) { return each.name == "discstate"; });
        return last != states.rend() && last->value == "9";
    }
    std::string words() {
        std::string text;
        for (const auto& each : m_unit.recorder().all()) {
            if (each.name == "drivestate" && each.json()["state"] == "error") {
                text = each.json()["text"];
            }
        }
        return text;
    }
    /** Something new is seen or said behind a command. */
    void movesOn(int command, int first, int second) {
        SCOPED_TRACE(command);
        const int frames = m_unit.pictures().frames();
        m_unit.mark();
        m_unit.command(command, first, second);
        EXPECT_TRUE(eventually([&] {
            return isError() || m_unit.pictures().frames() > frames || !m_unit.since("msgtip").empty() ||
                   !m_unit.since("trackinfo").empty() || !m_unit.since("discstate").empty();
        }));
    }

    TempFolder m_folder;
};

} // namespace

TEST_P(DamagedDvds, PlayOrSayWhyAnswerAndComeOut) {
    const fs::path disc = m_folder.path() / "dvd";
    fs::copy(dvdFolder(DvdKind::Menus), disc, fs::copy_options::recursive);
    DvdFiles files(disc / "VIDEO_TS");
    GetParam().make(files);
    m_unit.startService();
    m_unit.command(187, 1);
    m_unit.request({{"op", "insert"}, {"path", disc.string()}});
    m_unit.next("disc", "1");
    m_unit.next(
        "discstate", [](const Published& each) { return each.value == "2" || each.value == "9"; }, Patience);
    m_unit.command(188, 220, 133); // on a button, if there is one
    constexpr std::array<std::array<int, 3>, 5> commands{
        {{184, 1, 0}, {183, 2, 0}, {185, 9, 0}, {184, 2, 0}, {21, 0, 0}}};
    for (const auto& each : commands) {
        movesOn(each[0], each[1], each[2]);
        std::this_thread::sleep_for(300ms);
    }
    if (isError()) {
        EXPECT_NE(words(), "");
    }
    if (GetParam().words) {
        EXPECT_NE(words().find(GetParam().words), std::string::npos) << words();
    }
    std::printf("%s: %s\n", GetParam().name, words().empty() ? "plays" : words().c_str());
    m_unit.mark();
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting, 2s);
    m_unit.next("disc", "0", 4s);
    EXPECT_TRUE(eventually([&] { return dvdReaderOf(::getpid()) == 0; }));
    // A good one plays after that: from its menu on, or, as both may count as the same, from where the damaged one was left.
    const int frames = m_unit.pictures().frames();
    m_unit.request({{"op", "insert"}, {"path", dvdImage(DvdKind::Menus)}});
    m_unit.nextState(PlayState::Playing, Patience);
    EXPECT_TRUE(eventually([&] { return m_unit.pictures().frames() > frames; }));
}

INSTANTIATE_TEST_SUITE_P(All, DamagedDvds, testing::ValuesIn(damages),
                         [](const auto& damage) { return std::string(damage.param.name); });
