#include "services/ctl/Monkey.h"

#include "services/ctl/AnswerData.h"
#include "services/ctl/ExitStatus.h"
#include "services/ctl/ScriptCommands.h"
#include "services/ctl/ShellWords.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <random>

namespace zm::ctl {

namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds AnswerTime(1000);
constexpr const char* StillAnswers = "expect screen.main.window >= 0 within 1000";
constexpr const char* Running = "running";

// Steps that may take their time: they wait for something on purpose.
constexpr std::array<std::string_view, 5> Patient = {"wait", "expect", "settle", "clock", "app quit"};

bool isPatient(const std::string& line) {
    return std::any_of(Patient.begin(), Patient.end(),
                       [&](std::string_view name) { return line.starts_with(name); });
}

// A failure of these is one of the programs; all others may be refused.
bool mustSucceed(const std::string& line) {
    return line.starts_with("expect") || line == "settle";
}

std::string state(const Json& process) {
    return process.value("state", "");
}

} // namespace

MonkeyOptions monkeyOptions(Arguments& arguments) {
    MonkeyOptions options;
    const auto seed = arguments.number("--seed", 0);
    options.seed = seed ? static_cast<unsigned>(*seed) : std::random_device()() >> 1;
    if (const auto time = arguments.seconds("--seconds")) {
        options.time = std::chrono::milliseconds(*time);
    }
    options.file = arguments.option("--file").value_or("monkey-" + std::to_string(options.seed) + ".zmctl");
    return options;
}

Monkey::Monkey(const Client& client, MonkeyOptions options, Client::Print out, Client::Print err)
    : m_client(client), m_options(std::move(options)), m_out(std::move(out)), m_err(std::move(err)) {}

int Monkey::run() {
    m_processes = processes();
    if (m_processes.empty()) {
        m_err(m_client.run({"ps"}).err);
        return Failed;
    }
    if (state(m_processes.value("app", Json::object())) != Running) {
        m_err("zmctl: the application does not run: there is nothing to play with\n");
        return Failed;
    }
    // The world is asked of an application that has started, before anybody can know that the run began.
    m_client.run({"settle"});
    m_offer = world();
    m_closeRequests = closeRequests();
    m_out("seed " + std::to_string(m_options.seed) + "\n");
    if (const auto failure = play()) {
        return report(*failure);
    }
    m_out(std::to_string(m_lines.size()) + " steps, " + std::to_string(m_refused) + " refused\n");
    return 0;
}

Monkey::Finding Monkey::play() {
    MonkeySteps steps(m_options.seed, m_offer);
    const auto end = Clock::now() + m_options.time;
    while (Clock::now() < end) {
        for (const auto& line : steps.next()) {
            if (auto failure = step(line)) {
                return failure;
            }
        }
    }
    // What an application has lost is found when it ends.
    for (const char* line :
         {"app quit", "expect ps.app.state == 'not running' within 5000", "app start", "settle"}) {
        if (auto failure = step(line)) {
            return failure;
        }
    }
    return std::nullopt;
}

Monkey::Finding Monkey::step(const std::string& line) {
    m_lines.push_back(line);
    std::string said;
    const auto keep = [&](const std::string& text) { said += text; };
    const auto begin = Clock::now();
    const int status = runScriptCommand(
        m_client, *shellWords(line), [](const std::string&) {}, keep);
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    m_refused += status != 0;
    if (auto failure = lookAt(processes())) {
        return failure;
    }
    if (status == WrongUsage || (status != 0 && mustSucceed(line))) {
        return Failure{said, {}};
    }
    if (took > AnswerTime && !isPatient(line)) {
        return Failure{"the step took " + std::to_string(took.count()) + " ms\n", {StillAnswers}};
    }
    return lookForAnswer();
}

Monkey::Finding Monkey::lookAt(const Json& processes) {
    if (processes.empty()) {
        return Failure{"the bench does not answer\n", {"ps"}};
    }
    const Json before = std::exchange(m_processes, processes);
    for (const auto& [name, process] : processes.items()) {
        const auto& was = before.at(name);
        if (process["deaths"] != was["deaths"]) {
            return Failure{name + " died: it is " + state(process) + " now\n",
                           {"wait 500", "expect ps." + name + ".deaths == 0"}};
        }
        if (was["pid"] != process["pid"] && was["pid"] != 0 && process["pid"] != 0) {
            return Failure{name + " was started anew\n",
                           {"expect ps." + name + ".pid == " + was["pid"].dump()}};
        }
    }
    const bool stopped = state(before["app"]) == Running && state(processes["app"]) != Running;
    return stopped ? ended() : std::nullopt;
}

// The application may end when it was told to: by the monkey, or by a launcher that it has asked itself.
Monkey::Finding Monkey::ended() {
    const std::string& line = m_lines.back();
    const size_t asked = closeRequests();
    if (std::exchange(m_closeRequests, asked) != asked || line.starts_with("app quit") ||
        line.starts_with("expect ps.app.state")) {
        return std::nullopt;
    }
    return Failure{"the application ended without being told to\n",
                   {std::string("expect ps.app.state == ") + Running}};
}

Monkey::Finding Monkey::lookForAnswer() {
    if (state(m_processes["app"]) != Running) {
        return std::nullopt;
    }
    const auto begin = Clock::now();
    const auto answer = m_client.run({"screen", "main", "1"});
    if (auto failure = tooLong(begin)) {
        return failure;
    }
    if (answer.exit != 0) {
        // It may have ended since, or it may only just have been started.
        if (auto failure = lookAt(processes()); failure || state(m_processes["app"]) != Running) {
            return failure;
        }
        if (const auto settled = m_client.run({"settle"}); settled.exit != 0) {
            return Failure{settled.err, {StillAnswers}};
        }
    }
    return lookAtPicture();
}

Monkey::Finding Monkey::tooLong(Clock::time_point begin) {
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    return took <= AnswerTime ? std::nullopt
                              : Finding(Failure{"the application did not answer for " +
                                                    std::to_string(took.count()) + " ms\n",
                                                {StillAnswers}});
}

Monkey::Finding Monkey::lookAtPicture() {
    constexpr const char* Settle = "settle";
    constexpr const char* Drawn = "drawn";
    const auto begin = Clock::now();
    if (m_client.run({Drawn}).exit == 0) {
        return std::nullopt;
    }
    if (auto failure = tooLong(begin)) {
        return failure;
    }
    // What is still on its way comes to rest, also the application's end.
    m_client.run({Settle});
    const auto drawn = m_client.run({Drawn});
    if (drawn.exit == 0) {
        return std::nullopt;
    }
    if (auto failure = lookAt(processes()); failure || state(m_processes["app"]) != Running) {
        return failure;
    }
    return Failure{drawn.err, {Settle, Drawn}};
}

Json Monkey::processes() const {
    const auto answer = m_client.run({"ps"});
    return answer.exit == 0 ? processesData(answer.out) : Json::object();
}

size_t Monkey::closeRequests() const {
    const Json requests = requestsData(m_client.run({"requests"}).out);
    return static_cast<size_t>(std::count_if(requests.begin(), requests.end(), [](const Json& request) {
        return request.value("op", "") == "QueryCloseApp";
    }));
}

MonkeyWorld Monkey::world() const {
    const auto pages = Json::parse(m_client.run({"screen"}).out, nullptr, false);
    const auto size = pages.is_object() ? pages.value("size", std::vector<int>()) : std::vector<int>();
    return {.discService = m_processes.contains("disc"),
            .manualClock = m_client.run({"clock", "advance", "0"}).exit == 0,
            .screen = size.size() == 2 ? ScreenSize{size[0], size[1]} : ScreenSize()};
}

int Monkey::report(const Failure& failure) const {
    const std::string head = "seed " + std::to_string(m_options.seed) + ", step " +
                             std::to_string(m_lines.size()) + ", \"" + m_lines.back() + "\"";
    m_err("zmctl: " + head + ": " + failure.why);
    std::ofstream file(m_options.file, std::ios::trunc);
    file << "# " << head << "\n#   zmbench" << (m_offer.discService ? "" : " --no-disc-service")
         << (m_offer.manualClock ? " --manual-clock" : "")
         << (m_offer.screen == ScreenSize() ? "" : " --screen " + m_offer.screen.text()) << "\n";
    for (const auto& line : m_lines) {
        file << (mustSucceed(line) ? "" : "try ") << line << "\n";
    }
    for (const auto& line : failure.proof) {
        file << line << "\n";
    }
    file.close();
    m_err(file ? "zmctl: \"zmctl run " + m_options.file + "\" repeats it\n"
               : "zmctl: " + systemError(m_options.file).message + "\n");
    return Failed;
}

} // namespace zm::ctl
