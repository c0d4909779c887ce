#include "services/ctl/CommandTexts.h"

#include <algorithm>
#include <array>

namespace zm::ctl {

namespace {

constexpr std::array Texts = {
    CommandText{
        "pps",
        "pps ls\npps get OBJ\npps put OBJ LINE...\npps watch OBJ [-n COUNT] [-t SECONDS]\n"
        "pps history [OBJ] [-n N]",
        "the PPS objects; OBJ without /pps/, LINE is name:encoding:value or -name\n"
        "put writes all lines as one change. watch prints the lines of each change from now on, until\n"
        "COUNT changes have come or the time is up. history prints the latest changes of OBJ, or of all: "
        "number,\n"
        "seconds since the bench began, object, lines.\n"
        "Example: zmctl pps put zelmar/disc/device disc::1 mediatype::2"},
    CommandText{"app", "app start|resume|pause|showonly|hideonly|quit",
                "launcher message to the application, or starting it again\nExample: zmctl app pause"},
    CommandText{"appdata", "appdata TEXT", "application data\nExample: zmctl appdata '--song=\"Blue\"'"},
    CommandText{"language", "language LANGUAGE",
                "language of all texts: en, de, zh, ar\nExample: zmctl language de"},
    CommandText{"theme", "theme night|day|contrast", "colours of the screen\nExample: zmctl theme day"},
    CommandText{"motion", "motion on|off",
                "whether the pages move: softly from one to the next, lists that run on, the busy ring\n"
                "While the car drives, and on a clock that stands, they move less anyway.\nExample: zmctl "
                "motion off"},
    CommandText{"requests", "requests [--clear]",
                "what the application asked of the launcher, one JSON object a line, oldest first\n"
                "--clear empties the list after printing it.\nExample: zmctl requests --clear"},
    CommandText{"device", "device [--silent] ID|NAME NUMBER|fail",
                "a vehicle value: 2 parking, 6 mute (255), 7 temperature in tenths, 86 bluetooth\n"
                "Sends the message about it unless --silent is given. \"fail\" makes reading it fail.\n"
                "Example: zmctl device parking 0"},
    CommandText{
        "volume", "volume [LEVEL|up|down|mute]",
        "how loud the head unit is, 0 to 100, or a step up or down; \"mute\" mutes it, or ends that\n"
        "Without a word it prints the volume, which is kept over restarts.\nExample: zmctl volume 70"},
    CommandText{
        "vehicle",
        "vehicle\nvehicle speed KMH\nvehicle gear park|reverse|neutral|drive\n"
        "vehicle ignition off|accessory|on\nvehicle light LUX\nvehicle daynight day|night\n"
        "vehicle drive FILE [--speed FACTOR]\nvehicle drive --stop",
        "the car's signals; alone: as they are, and what follows from them\n"
        "Parking (device 2) follows gear, speed and ignition, day and night the light. drive plays a signal\n"
        "file beside everything else: columns time (seconds), speed, gear, ... separated by commas.\n"
        "Example: zmctl vehicle speed 50"},
    CommandText{"time", "time HH:MM [12|24]", "the clock and its display\nExample: zmctl time 23:05 12"},
    CommandText{"key", "key CODE|NAME",
                "a hard key by its code or name: 20 is next\n"
                "The application gets every code, also one that no key has: then this says so.\n"
                "Example: zmctl key next"},
    CommandText{"touch", "touch X Y [--hold MS]",
                "a touch of the screen; held from 800 ms on, without waiting in real time\nExample: zmctl "
                "touch 400 240"},
    CommandText{
        "tap", "tap TEXT|ID [--hold MS]",
        "touches what has that text, or that id, on the page that is shown\n"
        "A part of the text will do if nothing else has it. \"zmctl screen --text\" lists what is there.\n"
        "Example: zmctl tap Songs"},
    CommandText{"drag", "drag X1 Y1 X2 Y2",
                "a finger that moves over the screen\nExample: zmctl drag 400 300 400 100"},
    CommandText{"press", "press X Y", "a finger comes down, in real time\nExample: zmctl press 400 240"},
    CommandText{"move", "move X Y", "the finger moves\nExample: zmctl move 400 200"},
    CommandText{"release", "release X Y", "the finger goes up\nExample: zmctl release 400 200"},
    CommandText{"click", "click main|osd WINDOW CONTROL STATE",
                "calls a view's OnClick straight (state 0 press, 1 release, 4 held)\nExample: zmctl click "
                "main 6 6523 1"},
    CommandText{
        "insert", "insert DISC [--wait]\ninsert --demo [--wait]",
        "puts a folder, image or file into the disc drive\n"
        "--demo: the demonstration disc that \"./dev run\" or (installed) \"platen-demo-disc\" makes.\n"
        "--wait: returns when the disc is ready to play, and fails with the drive's reason if it cannot be.\n"
        "Example: zmctl insert ~/Music"},
    CommandText{"eject", "eject", "takes the disc out\nExample: zmctl eject"},
    CommandText{"disc", "disc [--json]\ndisc fault read|surface|temperature|region|noanswer|gone|none",
                "what the disc drive says, as JSON, or makes it fail\nExample: zmctl disc"},
    CommandText{"catalogue", "catalogue hold ROWS\ncatalogue release",
                "stops the application's next list query before that row, or lets it go on\n"
                "Example: zmctl catalogue hold 3"},
    CommandText{"screen", "screen [main|osd] [WINDOW]\nscreen --text",
                "the pages' contents as JSON, or what can be read on the screen, with the items' "
                "ids\nExample: zmctl screen main 6"},
    CommandText{"drawn", "drawn",
                "succeeds if the views show what their pages say, as if everything was drawn anew; else it\n"
                "names where not, and the items that were set and not drawn\nExample: zmctl drawn"},
    CommandText{"shot", "shot [--now] FILE.png|FILE.jpg\nshot [--now] --digest",
                "writes what the driver sees as a picture\n"
                "What fades has faded, unless --now is given. --digest prints its SHA-256 instead.\nExample: "
                "zmctl shot page.png"},
    CommandText{"log", "log [-n N] [--time] [--follow]",
                "the system log, oldest first: severity, blank, text; --time puts the moment before "
                "it\nExample: zmctl log -n 20 --follow"},
    CommandText{"clock", "clock advance MS",
                "fires every timer that falls due (with --manual-clock)\nExample: zmctl clock advance 8000"},
    CommandText{"settle", "settle [-t SECONDS]",
                "returns when nothing moves any more\nExample: zmctl settle -t 5"},
    CommandText{"ps", "ps", "the child processes: name, process id, state\nExample: zmctl ps"},
    CommandText{"kill", "kill app|disc", "kills a child process as a crash would\nExample: zmctl kill app"},
    CommandText{
        "record", "record FILE\nrecord --all FILE\nrecord --stop",
        "writes every input from now on, whoever gives it, to a script with its times\n"
        "Until --stop. --all writes those since the bench began, at once. FILE \"-\" prints: --all at once,\n"
        "else --stop.\nExample: zmctl record drive.zmctl"},
    CommandText{"film", "film FILE.webm [--seconds SECONDS] [--overwrite]\nfilm --stop",
                "films the screen, with the fingers on it, and the sound from now on (WebM)\n"
                "Until --stop, which says what became of it. With --seconds it returns when the film is "
                "over, or ends\n"
                "it when it is interrupted. A file that is there is kept unless --overwrite is given.\n"
                "Example: zmctl film drive.webm"},
    CommandText{
        "timeline", "timeline FILE [--seconds SECONDS]",
        "writes what happened in the last five minutes, or SECONDS, as a trace for Chrome or Perfetto\n"
        "Lanes for commands, composed frames, each PPS object, each program's log. FILE \"-\" prints it.\n"
        "Example: zmctl timeline trace.json"},
    CommandText{
        "step", "step [--pixels RRGGBB] [--changes] [COMMAND...]",
        "carries out a command, waits until nothing moves any more and prints what it led to, as JSON\n"
        "Members: exit, out, err of the command; changes of PPS objects, requests to the launcher and lines\n"
        "of the log since it began; screen as \"screen\" prints it; stale as \"drawn\" finds it. --pixels "
        "adds\n"
        "how many pixels on the screen have that colour, --changes leaves out the items that are as the "
        "last\n"
        "step with --changes found them. Without a command it only waits and looks.\n"
        "Example: zmctl step key next"},
    CommandText{
        "snapshot", "snapshot save|restore FILE",
        "keeps the state around the application in a file, or brings it about\n"
        "Vehicle, clock, language, colours, launcher, disc; objects and catalogue of the disc service are\n"
        "restored where none runs.\nExample: zmctl snapshot save before.snapshot"},
    CommandText{
        "run", "run FILE",
        "carries out a script, \"-\" is standard input\n"
        "A command a line as behind zmctl, words quoted as in a shell, # begins a comment; \"try\" before\n"
        "a command lets it fail. Ends at the first line that fails with status 1, and without having\n"
        "begun with status 2 if a line is wrong.\nExample: zmctl run page.zmctl",
        CommandPlace::Terminal},
    CommandText{
        "replay", "replay FILE [--speed FACTOR] [--clock] [--trace FILE]",
        "repeats what \"zmctl record\" wrote, or another script, with its pauses\n"
        "--speed 2 takes half the time. --clock lets the pauses pass on a stopped clock instead, and "
        "settles\n"
        "after each step; pauses of a script that advances the clock itself are then left out. --trace\n"
        "writes what followed each step, a JSON object a line: equal replays leave equal files.\n"
        "Example: zmctl replay drive.zmctl --speed 2",
        CommandPlace::Terminal},
    CommandText{
        "shrink", "shrink FILE --until EXPECTATION [--to FILE] [--bench WORDS]",
        "leaves of a script only the steps that it needs until EXPECTATION (\"PATH OP VALUE\") holds\n"
        "Each try has a fresh bench of its own, started as the script's head says or with WORDS; pauses "
        "pass\n"
        "on a stopped clock. The smaller script is NAME-small.zmctl unless --to names another one.\n"
        "Example: zmctl shrink monkey-7.zmctl --until 'ps.app.deaths > 0'",
        CommandPlace::Terminal},
    CommandText{"wait", "wait MS", "lets real time pass\nExample: zmctl wait 500", CommandPlace::Script},
    CommandText{"expect", "expect PATH OP VALUE [within MS]",
                "asks until something holds, 2000 ms unless said otherwise, and fails if it does not\n"
                "PATH begins with screen, pps.OBJ.ATTRIBUTE, requests or ps; a list has numbers (-1 is the "
                "last) and\n"
                "\"size\". OP is ==, !=, <, <=, >, >=, contains or matches (a regular expression).\n"
                "Example: zmctl expect screen.main.windows.6.items.2065.text contains Song",
                CommandPlace::Script},
    CommandText{"monkey", "monkey [--seed N] [--seconds S] [--file FILE]",
                "random input for 60 seconds or as said, the same for the same number N\n"
                "Ends with status 1 when a program dies or does not answer within a second, and leaves FILE\n"
                "(monkey-N.zmctl), which \"zmctl run\" repeats.\nExample: zmctl monkey --seed 7 --seconds 30",
                CommandPlace::Terminal},
    CommandText{"completion", "completion SHELL",
                "prints what makes a shell complete these commands: bash, zsh or fish\n"
                "For good: source <(zmctl completion bash) in ~/.bashrc, the same with zsh in ~/.zshrc,\n"
                "zmctl completion fish | source in ~/.config/fish/config.fish.\n"
                "Example: zmctl completion bash",
                CommandPlace::Terminal},
    CommandText{"complete", "complete [WORD...]",
                "what may be written for the last WORD behind the others, one a line; shells ask it\n"
                "Example: zmctl complete app p",
                CommandPlace::Terminal},
    CommandText{"help", "help [COMMAND]", "this list, or how a command is used\nExample: zmctl help touch",
                CommandPlace::Terminal},
};

constexpr size_t NameColumn = 12;

} // namespace

std::span<const CommandText> commandTexts() {
    return Texts;
}

const CommandText* findCommandText(std::string_view name) {
    const auto found =
        std::find_if(Texts.begin(), Texts.end(), [&](const auto& text) { return text.name == name; });
    return found == Texts.end() ? nullptr : found;
}

std::string usageText(const CommandText& text) {
    std::string result;
    std::string_view rest = text.usage;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        result +=
            (result.empty() ? "usage: zmctl " : "       zmctl ") + std::string(rest.substr(0, end)) + "\n";
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return result;
}

std::string overviewText() {
    std::string result = "usage: zmctl [--runtime DIR] COMMAND\n       zmctl --version | --help\n\n";
    for (const auto& text : Texts) {
        std::string name(text.name);
        name.resize(NameColumn, ' ');
        result += "  " + name + std::string(text.help.substr(0, text.help.find('\n'))) + "\n";
    }
    return result;
}

} // namespace zm::ctl
