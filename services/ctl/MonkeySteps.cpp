#include "services/ctl/MonkeySteps.h"

#include <array>
#include <string_view>

namespace zm::ctl {

namespace {

using Lines = std::vector<std::string>;

constexpr int LongPress = 800;
constexpr int LongestWait = 300;
constexpr int LongestAdvance = 4000;

enum class Needs { Nothing, DiscService, NoDiscService, ManualClock };

/** One kind of input and how often it comes, of all the weights that a world has. */
struct StepKind {
    int weight;
    Needs needs;
    Lines (*make)(MonkeySteps& random);
};

template <class Rows>
std::string pick(MonkeySteps& random, const Rows& rows) {
    return std::string(rows[static_cast<size_t>(random.below(static_cast<int>(rows.size())))]);
}

std::string number(int value) {
    return std::string(1, ' ').append(std::to_string(value));
}

std::string point(MonkeySteps& random) {
    const int x = random.below(random.screen().width);
    return number(x) + number(random.below(random.screen().height));
}

Lines touch(MonkeySteps& random) {
    return {"touch" + point(random)};
}

Lines hold(MonkeySteps& random) {
    return {"touch" + point(random) + " --hold" + number(LongPress)};
}

Lines drag(MonkeySteps& random) {
    const std::string from = point(random);
    return {"drag" + from + point(random)};
}

Lines finger(MonkeySteps& random) {
    Lines lines{"press" + point(random)};
    for (int moves = random.below(4); moves > 0; --moves) {
        lines.push_back("move" + point(random));
    }
    if (random.below(8) == 0) {
        lines.push_back("wait" + number(LongPress));
    }
    lines.push_back("release" + point(random));
    return lines;
}

// The hard keys, two that the application does not know, and numbers that are not keys.
constexpr std::array<std::string_view, 24> PressedKeys = {"17", "18", "20", "21",  "22",  "23",  "44",  "45",
                                                          "46", "47", "48", "49",  "50",  "64",  "65",  "87",
                                                          "88", "1",  "2",  "160", "161", "162", "163", "-1"};

Lines key(MonkeySteps& random) {
    return {"key " + pick(random, PressedKeys)};
}

constexpr std::array<std::string_view, 5> Statuses = {"resume", "resume", "pause", "showonly", "hideonly"};

Lines launcher(MonkeySteps& random) {
    return {"app " + pick(random, Statuses)};
}

// An application that has ended by itself comes back.
Lines start(MonkeySteps&) {
    return {"app start", "settle"};
}

Lines restart(MonkeySteps&) {
    return {"app quit", "expect ps.app.state == 'not running' within 5000", "app start", "settle"};
}

constexpr std::array<std::string_view, 7> Requests = {
    "'--song=\"a\"'",         "'--singer=The'",       "'--song=Demonstration'", "--song=",
    "'--song=it'\\''s 100%'", "'--nonsense without'", "'--song=中文歌'"};

Lines voice(MonkeySteps& random) {
    return {"appdata " + pick(random, Requests)};
}

constexpr std::array<std::string_view, 16> SetDevices = {
    "2 0",    "2 1",    "2 1",  "2 fail", "6 0",  "6 255", "7 200", "7 -401",
    "7 9999", "7 fail", "86 0", "86 1",   "86 2", "86 3",  "86 -1", "6 fail"};

Lines device(MonkeySteps& random) {
    const std::string option = random.below(6) == 0 ? "--silent " : "";
    return {"device " + option + pick(random, SetDevices)};
}

Lines time(MonkeySteps& random) {
    const std::string hour = std::to_string(random.below(25));
    const std::string minute = std::to_string(100 + random.below(60)).substr(1);
    return {"time " + hour + ":" + minute + (random.below(2) ? " 12" : " 24")};
}

constexpr std::array<std::string_view, 5> Languages = {"en", "de", "zh", "ar", "xx"};

Lines language(MonkeySteps& random) {
    return {"language " + pick(random, Languages)};
}

Lines theme(MonkeySteps& random) {
    return {random.below(2) ? "theme night" : "theme day"};
}

Lines insert(MonkeySteps&) {
    return {"insert --demo"};
}

// Most of the time a disc is wanted: what is ejected comes back in half of the cases.
Lines eject(MonkeySteps& random) {
    Lines lines{"eject"};
    if (random.below(2)) {
        lines.push_back("wait" + number(random.below(LongestWait)));
        lines.push_back("insert --demo");
    }
    return lines;
}

constexpr std::array<std::string_view, 6> Faults = {"read",   "surface",  "temperature",
                                                    "region", "noanswer", "gone"};

// A fault that stays would leave nothing to play with.
Lines fault(MonkeySteps& random) {
    return {"disc fault " + pick(random, Faults), "wait" + number(random.below(LongestWait)),
            "disc fault none"};
}

constexpr std::array<std::string_view, 29> Writes = {
    "device disc::1 mixedtype::2 mediatype::2",
    "device disc::1 mixedtype::14 mediatype::3 videomode::1",
    "device disc::1 mixedtype::8 mediatype::4",
    "device disc::1 mixedtype::0 mediatype::0 videomode::1",
    "device mediatype::1",
    "device mediatype::5",
    "device disc::0",
    "device disc::2",
    "device videomode::1",
    "device videomode::2",
    "device videomode::3",
    "device errorstatus::32",
    "device errorstatus::144",
    "device mixedswitching::1",
    "status updatedb::65538",
    "status discstate::1",
    "status discstate::2",
    "status discstate::2",
    "status discstate::6",
    "status discstate::9",
    "status discstate::10",
    "status discstate::20",
    "status rootmenu::true",
    "status rootmenu::false",
    "status 'playstate:json:{\"repeat\":8,\"shuffle\":1,\"scan\":0}'",
    "status msgtip::18",
    "playing "
    "'trackinfo:json:{\"curmediaid\":3,\"curmediaids\":9,\"mediaid\":3,\"mediaids\":9,\"parentFolder\":1}'",
    "playing 'playtime:json:{\"time\":61,\"tracktime\":3600,\"times\":0}'",
    "playing 'ID3:json:{\"title\":\"中文歌\",\"artist\":\"\",\"album\":\"100%%\"}'"};

// The monkey plays the disc service where there is none.
Lines write(MonkeySteps& random) {
    return {"pps put zelmar/disc/" + pick(random, Writes)};
}

Lines wait(MonkeySteps& random) {
    return {"wait" + number(random.below(LongestWait))};
}

Lines advance(MonkeySteps& random) {
    return {"clock advance" + number(random.below(LongestAdvance))};
}

constexpr std::array<StepKind, 19> StepKinds = {{
    {30, Needs::Nothing, touch},      {6, Needs::Nothing, hold},      {10, Needs::Nothing, drag},
    {5, Needs::Nothing, finger},      {25, Needs::Nothing, key},      {6, Needs::Nothing, launcher},
    {2, Needs::Nothing, start},       {1, Needs::Nothing, restart},   {4, Needs::Nothing, voice},
    {8, Needs::Nothing, device},      {3, Needs::Nothing, time},      {3, Needs::Nothing, language},
    {1, Needs::Nothing, theme},       {8, Needs::Nothing, wait},      {2, Needs::DiscService, insert},
    {2, Needs::DiscService, eject},   {1, Needs::DiscService, fault}, {12, Needs::NoDiscService, write},
    {8, Needs::ManualClock, advance},
}};

bool offered(Needs needs, const MonkeyWorld& world) {
    switch (needs) {
    case Needs::DiscService:
        return world.discService;
    case Needs::NoDiscService:
        return !world.discService;
    case Needs::ManualClock:
        return world.manualClock;
    case Needs::Nothing:
        break;
    }
    return true;
}

} // namespace

Lines MonkeySteps::next() {
    int all = 0;
    for (const auto& kind : StepKinds) {
        all += offered(kind.needs, m_world) ? kind.weight : 0;
    }
    int left = below(all);
    const StepKind* chosen = StepKinds.data();
    while (!offered(chosen->needs, m_world) || left >= chosen->weight) {
        left -= offered(chosen->needs, m_world) ? chosen->weight : 0;
        ++chosen;
    }
    return chosen->make(*this);
}

} // namespace zm::ctl
