#include "services/bench/Options.h"

#include "base/Paths.h"
#include "services/ctl/ShellWords.h"

#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <vector>

namespace zm::bench {

const char* const Usage =
    "usage: zmbench [--runtime DIR] [--disc PATH | --no-disc-service [--catalogue FILE]] [--port N | "
    "--no-web]\n"
    "               [--manual-clock] [--launcher active|passive] [--insert-stays] [--app-args TEXT]\n"
    "               [--resources DIR] [--resume FILE] [--motion on|off] [--open] [--display "
    "[--full-screen]]\n"
    "               [--audio-device auto|none|pulse[:NAME]|alsa[:NAME]] [--drive auto|DEVICE] [--mpris]\n"
    "               [--screen 800x480|1024x600|1280x720]\n"
    "       zmbench --version | --help\n";

namespace {

struct Parsed {
    Options options;
    std::string launcher;
    std::string why; ///< of a value that is refused, if the value alone does not say it
};

// An empty path stays one: it is refused.
std::string absolute(const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(path).lexically_normal().string();
}

bool takePort(Parsed& parsed, const std::string& value) {
    int& port = parsed.options.port.emplace(0);
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), port);
    return error == std::errc() && end == value.data() + value.size() && port >= 0 && port <= 65535;
}

bool takeAppArgs(Parsed& parsed, const std::string& value) {
    parsed.options.unit.appArgs = value;
    return bool(ctl::shellWords(value));
}

struct OptionRow {
    std::string_view name;
    bool takesValue;
    bool (*take)(Parsed& parsed, const std::string& value);
};

bool takeAudioDevice(Parsed& parsed, const std::string& value) {
    parsed.options.unit.audioDevice = value;
    const bool named = value.starts_with("pulse:") || value.starts_with("alsa:");
    const bool whole = value == "auto" || value == "none" || value == "pulse" || value == "alsa";
    return whole || (named && !value.ends_with(':'));
}

bool takeScreen(Parsed& parsed, const std::string& value) {
    const auto size = parseScreenSize(value);
    parsed.options.unit.screen = size ? *size : ScreenSize();
    parsed.why = size ? "" : size.error();
    return bool(size);
}

constexpr std::array<OptionRow, 20> Rows = {{
    {"--runtime", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.runtimeDir = absolute(v);
         return !v.empty();
     }},
    {"--disc", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.disc = absolute(v);
         return !v.empty();
     }},
    {"--no-disc-service", false,
     [](Parsed& p, const std::string&) {
         p.options.unit.discService = false;
         return true;
     }},
    {"--catalogue", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.catalogue = absolute(v);
         return !v.empty();
     }},
    {"--resume", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.resume = absolute(v);
         return !v.empty();
     }},
    {"--port", true, takePort},
    {"--no-web", false,
     [](Parsed& p, const std::string&) {
         p.options.web = false;
         return true;
     }},
    {"--open", false,
     [](Parsed& p, const std::string&) {
         p.options.open = true;
         return true;
     }},
    {"--display", false,
     [](Parsed& p, const std::string&) {
         p.options.display = true;
         return true;
     }},
    {"--full-screen", false,
     [](Parsed& p, const std::string&) {
         p.options.fullScreen = true;
         return true;
     }},
    {"--mpris", false,
     [](Parsed& p, const std::string&) {
         p.options.mpris = true;
         return true;
     }},
    {"--manual-clock", false,
     [](Parsed& p, const std::string&) {
         p.options.unit.clock = unit::ClockMode::Manual;
         return true;
     }},
    {"--launcher", true,
     [](Parsed& p, const std::string& v) {
         p.launcher = v;
         return v == "active" || v == "passive";
     }},
    {"--insert-stays", false,
     [](Parsed& p, const std::string&) {
         p.options.unit.discToFront = false;
         return true;
     }},
    {"--motion", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.motion = v == "on";
         return v == "on" || v == "off";
     }},
    {"--app-args", true, takeAppArgs},
    {"--audio-device", true, takeAudioDevice},
    {"--screen", true, takeScreen},
    {"--drive", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.drive = v;
         return v == "auto" || v.starts_with("/dev/");
     }},
    {"--resources", true,
     [](Parsed& p, const std::string& v) {
         p.options.unit.resourceDir = absolute(v);
         return !v.empty();
     }},
}};

const OptionRow* find(std::string_view name) {
    for (const auto& row : Rows) {
        if (row.name == name) {
            return &row;
        }
    }
    return nullptr;
}

// What only makes sense together or apart.
Status check(const Parsed& parsed) {
    const auto& unit = parsed.options.unit;
    const struct {
        bool wrong;
        const char* why;
    } rules[] = {
        {!unit.disc.empty() && !unit.discService, "--disc and --no-disc-service exclude each other"},
        {!unit.catalogue.empty() && unit.discService, "--catalogue needs --no-disc-service"},
        {!unit.resume.empty() && !unit.discService, "--resume and --no-disc-service exclude each other"},
        {!unit.drive.empty() && !unit.discService, "--drive and --no-disc-service exclude each other"},
        {!unit.audioDevice.empty() && !unit.discService,
         "--audio-device and --no-disc-service exclude each other"},
        {parsed.options.port && !parsed.options.web, "--port and --no-web exclude each other"},
        {parsed.options.open && !parsed.options.web, "--open and --no-web exclude each other"},
        {parsed.options.fullScreen && !parsed.options.display, "--full-screen needs --display"},
        {unit.clock == unit::ClockMode::Manual && parsed.launcher == "active",
         "--manual-clock implies a passive launcher"},
    };
    for (const auto& rule : rules) {
        if (rule.wrong) {
            return Error{rule.why};
        }
    }
    return ok();
}

} // namespace

Result<Options> parseOptions(const std::vector<std::string>& arguments) {
    Parsed parsed;
    parsed.options.unit.runtimeDir = runtimeDir();
    for (size_t i = 0; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        const OptionRow* row = find(name);
        if (!row) {
            return Error{"unknown argument \"" + name + "\""};
        }
        if (row->takesValue && ++i == arguments.size()) {
            return Error{name + " needs a value"};
        }
        const std::string& value = row->takesValue ? arguments[i] : name;
        if (!row->take(parsed, value)) {
            return Error{name + ": " + (parsed.why.empty() ? "wrong value \"" + value + "\"" : parsed.why)};
        }
    }
    if (auto good = check(parsed); !good) {
        return good.failure();
    }
    auto& unit = parsed.options.unit;
    const bool passive = parsed.launcher == "passive" || unit.clock == unit::ClockMode::Manual;
    unit.launcher = passive ? unit::LauncherMode::Passive : unit::LauncherMode::Active;
    if (unit.catalogue.empty()) {
        unit.catalogue = unit.runtimeDir + "/discdb.sqlite";
    }
    return parsed.options;
}

std::string startLine(const Options& options) {
    const auto& unit = options.unit;
    std::vector<std::string> words{"zmbench"};
    const auto add = [&](bool given, std::vector<std::string> more) {
        if (given) {
            words.insert(words.end(), more.begin(), more.end());
        }
    };
    const bool manual = unit.clock == unit::ClockMode::Manual;
    add(unit.screen != ScreenSize(), {"--screen", unit.screen.text()});
    add(!unit.disc.empty(), {"--disc", unit.disc});
    add(!unit.discService, {"--no-disc-service"});
    add(unit.catalogue != unit.runtimeDir + "/discdb.sqlite", {"--catalogue", unit.catalogue});
    add(!unit.resume.empty(), {"--resume", unit.resume});
    add(!unit.drive.empty(), {"--drive", unit.drive});
    add(!unit.audioDevice.empty(), {"--audio-device", unit.audioDevice});
    add(manual, {"--manual-clock"});
    add(!manual && unit.launcher == unit::LauncherMode::Passive, {"--launcher", "passive"});
    add(!unit.discToFront, {"--insert-stays"});
    add(!unit.motion, {"--motion", "off"});
    add(!unit.appArgs.empty(), {"--app-args", unit.appArgs});
    add(!unit.resourceDir.empty(), {"--resources", unit.resourceDir});
    return ctl::shellLine(words);
}

} // namespace zm::bench
