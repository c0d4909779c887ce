#include "services/ctl/Replay.h"

#include "services/ctl/AnswerData.h"
#include "services/ctl/CommandForm.h"
#include "services/ctl/ExitStatus.h"
#include "services/ctl/Numbers.h"
#include "services/ctl/ScriptCommands.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <thread>

namespace zm::ctl {

namespace {

using OrderedJson = nlohmann::ordered_json;
using Words = std::vector<std::string>;

// Where the application writes what it wants of the disc service.
constexpr const char* Control = "zelmar/disc/control";

std::string digest(const std::string& text) {
    char* sum =
        g_compute_checksum_for_string(G_CHECKSUM_SHA256, text.c_str(), static_cast<gssize>(text.size()));
    const std::string result = sum;
    g_free(sum);
    return result;
}

bool isPause(const ScriptLine& line) {
    return line.words[0] == "wait";
}

// Pages without the count of the film's pictures, which follows the decoder's time.
std::string pages(OrderedJson screen) {
    if (auto video = screen.find("video"); video != screen.end()) {
        video->erase("frames");
    }
    return screen.dump(-1, ' ', false, OrderedJson::error_handler_t::replace);
}

} // namespace

ReplayOptions replayOptions(Arguments& arguments) {
    ReplayOptions options;
    if (const auto speed = arguments.option("--speed")) {
        options.speed = parseNumber<double>(*speed).value_or(0);
        options.speed > 0 ? void() : arguments.refuse();
    }
    options.clock = arguments.flag("--clock");
    options.trace = arguments.option("--trace").value_or("");
    options.file = arguments.word();
    return options;
}

Replay::Replay(const Client& client, ReplayOptions options, Client::Print out, Client::Print err)
    : m_client(client), m_options(std::move(options)), m_out(std::move(out)), m_err(std::move(err)) {}

int Replay::run() {
    std::vector<ScriptLine> lines;
    if (const int status = readScript(m_options.file, lines, m_err); status != 0) {
        return status;
    }
    for (const auto& line : lines) {
        if (const auto why = whyUnfit(line.words); !why.empty()) {
            m_err(line.place + ": " + line.text + "\nzmctl: " + why + "\n");
            return WrongUsage;
        }
        m_movesClock = m_movesClock || line.words[0] == "clock";
    }
    if (m_options.clock) {
        if (const auto stopped = m_client.run({"clock", "advance", "0"}); stopped.exit != 0) {
            m_err(stopped.err);
            return stopped.exit;
        }
    }
    if (!m_options.trace.empty()) {
        m_trace.open(m_options.trace, std::ios::binary | std::ios::trunc);
        if (!m_trace) {
            m_err("zmctl: " + systemError(m_options.trace).message + "\n");
            return Failed;
        }
        published();
    }
    return play(lines);
}

int Replay::play(const std::vector<ScriptLine>& lines) {
    m_due = std::chrono::steady_clock::now();
    for (const auto& line : lines) {
        if (const int status = step(line); status != 0) {
            return status;
        }
    }
    if (m_trace.is_open() && !m_trace.flush()) {
        m_err("zmctl: " + m_options.trace + ": not everything could be written\n");
        return Failed;
    }
    return 0;
}

int Replay::step(const ScriptLine& line) {
    std::string said;
    int status = 0;
    if (isPause(line)) {
        status = pass(std::chrono::milliseconds(parseNumber<int>(line.words[1]).value_or(0)));
    } else {
        status = command(line.words, said);
        status = line.mayFail && status != WrongUsage ? 0 : status;
    }
    if (status == 0 && m_options.clock) {
        status = command({"settle"}, said);
    }
    if (status != 0) {
        m_err(line.place + ": " + line.text + "\n" + said);
    } else if (m_trace.is_open()) {
        trace(line.text);
    }
    return status;
}

// Time counts from the beginning, so that what the steps take does not add up.
int Replay::pass(std::chrono::milliseconds pause) {
    if (!m_options.clock) {
        m_due += std::chrono::duration_cast<std::chrono::steady_clock::duration>(pause / m_options.speed);
        std::this_thread::sleep_until(m_due);
        return 0;
    }
    std::string said;
    return m_movesClock ? 0 : command({"clock", "advance", std::to_string(pause.count())}, said);
}

int Replay::command(const Words& words, std::string& said) {
    return runScriptCommand(m_client, words, m_out, [&](const std::string& text) { said += text; });
}

// What the application has published since it was asked last.
Words Replay::published() {
    Words result;
    for (const auto& line : outputLines(m_client.run({"pps", "history", Control, "-n", "1000"}).out)) {
        const size_t numberEnd = line.find(' ');
        const size_t momentEnd = line.find(' ', numberEnd + 1);
        const auto number = parseNumber<uint64_t>(line.substr(0, numberEnd)).value_or(0);
        if (number > m_published) {
            m_published = number;
            result.push_back(line.substr(momentEnd + 1));
        }
    }
    return result;
}

void Replay::trace(const std::string& text) {
    const auto screen = OrderedJson::parse(m_client.run({"screen"}).out, nullptr, false);
    const auto window = [&](const char* view) {
        return screen.is_object() && screen.contains(view) ? screen[view].value("window", 0) : 0;
    };
    const OrderedJson entry = {{"step", text},
                               {"main", window("main")},
                               {"osd", window("osd")},
                               {"pages", screen.is_object() ? digest(pages(screen)) : ""},
                               {"picture", m_client.run({"shot", "--digest"}).out.substr(0, 64)},
                               {"commands", published()}};
    m_trace << entry.dump(-1, ' ', false, OrderedJson::error_handler_t::replace) << "\n";
}

} // namespace zm::ctl
