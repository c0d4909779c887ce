#include "services/ctl/Shrink.h"

#include "services/ctl/ExitStatus.h"
#include "services/ctl/FreshBench.h"
#include "services/ctl/ScriptCommands.h"
#include "services/ctl/ShellWords.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;

constexpr std::string_view Head = "#   zmbench";
constexpr std::chrono::milliseconds LookInterval(50);

// "fog.zmctl" becomes "fog-small.zmctl".
std::string smallName(const std::string& file) {
    const std::filesystem::path path(file);
    return (path.parent_path() / (path.stem().string() + "-small" + path.extension().string())).string();
}

// What the head of a record says of its bench; nothing without one.
std::optional<std::string> benchOf(const std::string& file) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line) && line.starts_with('#');) {
        if (line.starts_with(Head)) {
            return line.substr(Head.size());
        }
    }
    return std::nullopt;
}

Words behind(const std::string& words) {
    const auto parsed = shellWords(words);
    return parsed ? *parsed : Words();
}

} // namespace

ShrinkOptions shrinkOptions(Arguments& arguments) {
    ShrinkOptions options;
    options.until = arguments.option("--until").value_or("");
    options.bench = arguments.option("--bench").value_or("");
    options.to = arguments.option("--to").value_or("");
    options.file = arguments.word();
    if (options.to.empty()) {
        options.to = smallName(options.file);
    }
    const auto expectation = Expectation::parse(behind(options.until));
    if (!expectation) {
        arguments.refuse(options.until.empty() ? "--until is missing" : expectation.error());
    }
    return options;
}

Shrink::Shrink(ShrinkOptions options, Client::Print out, Client::Print err)
    : m_options(std::move(options)), m_out(std::move(out)), m_err(std::move(err)) {}

int Shrink::run() {
    if (const int status = readScript(m_options.file, m_lines, m_err); status != 0) {
        return status;
    }
    m_expectation = *Expectation::parse(behind(m_options.until));
    m_bench = behind(m_options.bench.empty() ? benchOf(m_options.file).value_or("") : m_options.bench);
    m_stopped = std::find(m_bench.begin(), m_bench.end(), "--manual-clock") != m_bench.end();
    m_alone = std::find(m_bench.begin(), m_bench.end(), "--no-disc-service") != m_bench.end();
    // What a script expects at its end is no step: the expectation takes its place. Before, it waits for what follows.
    while (!m_lines.empty() && m_lines.back().words[0] == "expect") {
        m_lines.pop_back();
    }

    std::vector<size_t> all;
    for (size_t i = 0; i < m_lines.size(); ++i) {
        all.push_back(i);
    }
    const auto needed = tryOut(all);
    if (!m_failure.empty()) {
        m_err("zmctl: " + m_failure + "\n");
        return Failed;
    }
    if (!needed) {
        m_err("zmctl: " + m_options.file + ": \"" + m_expectation->text() + "\" held after none of its " +
              std::to_string(all.size()) + " steps\n");
        return Failed;
    }
    if (*needed == 0) {
        m_err("zmctl: \"" + m_expectation->text() + "\" holds on a fresh bench already, without any step\n");
        return Failed;
    }
    const auto left = smallest(*needed, [this](const std::vector<size_t>& steps) { return tryOut(steps); });
    return m_failure.empty() ? write(left) : (m_err("zmctl: " + m_failure + "\n"), Failed);
}

std::optional<size_t> Shrink::tryOut(const std::vector<size_t>& steps) {
    ++m_tries;
    auto bench = FreshBench::start(m_bench);
    if (!bench) {
        m_failure = bench.error();
        return std::nullopt;
    }
    const auto ignore = [](const std::string&) {};
    if (holds(bench->client())) {
        return 0;
    }
    for (size_t done = 0; done < steps.size();) {
        Words words = m_lines[steps[done]].words;
        if (m_stopped && words[0] == "wait") {
            words = {"clock", "advance", words[1]};
        }
        // Without the steps before it one may fail that did not: it is only tried.
        runScriptCommand(bench->client(), words, ignore, ignore);
        runScriptCommand(bench->client(), {"settle"}, ignore, ignore);
        ++done;
        if (holds(bench->client())) {
            return done;
        }
    }
    // A disc service takes its time, also when all is quiet.
    const auto deadline = std::chrono::steady_clock::now() + m_expectation->limit();
    while (!m_alone && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(LookInterval);
        if (holds(bench->client())) {
            return steps.size();
        }
    }
    return std::nullopt;
}

bool Shrink::holds(const Client& client) const {
    const Answer answer = client.run(m_expectation->command());
    return answer.exit == 0 && m_expectation->holds(m_expectation->find(answer.out));
}

int Shrink::write(const std::vector<size_t>& steps) const {
    std::ofstream file(m_options.to, std::ios::binary | std::ios::trunc);
    file << "# " << steps.size() << " of the " << m_lines.size() << " steps of " << m_options.file
         << ", until the last line holds. On a fresh bench:\n#   " << shellLine([&] {
                Words words{"zmbench"};
                words.insert(words.end(), m_bench.begin(), m_bench.end());
                return words;
            }())
         << "\n";
    for (const size_t step : steps) {
        const ScriptLine& line = m_lines[step];
        const bool pause = m_stopped && line.words[0] == "wait";
        file << (pause ? "clock advance " + line.words[1] : "try " + shellLine(line.words)) << "\nsettle\n";
    }
    file << "expect " << m_options.until << "\n";
    file.close();
    if (!file) {
        m_err("zmctl: " + systemError(m_options.to).message + "\n");
        return Failed;
    }
    m_out(m_options.to + ": " + std::to_string(steps.size()) + " of " + std::to_string(m_lines.size()) +
          " steps, found in " + std::to_string(m_tries) + " tries\n");
    return 0;
}

} // namespace zm::ctl
