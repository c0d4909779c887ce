#include "services/bench/commands/Recording.h"

#include "base/JsonMessage.h"
#include "services/ctl/CommandForm.h"
#include "services/ctl/Questions.h"
#include "services/ctl/ShellWords.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zm::bench::commands {

namespace {

// Of a bench that runs for weeks the oldest go.
constexpr size_t MostInputs = 100000;

constexpr const char* OnlyAnswered = "-";

// The words with paths that do not depend on where the caller stood.
std::vector<std::string> repeatable(const Run& run) {
    std::vector<std::string> words = run.words();
    for (size_t i = 1; i < words.size(); ++i) {
        const auto place = ctl::placeBehind({words.begin(), words.begin() + static_cast<long>(i)});
        const bool path = std::ranges::any_of(
            place.kinds, [](const std::string& kind) { return kind == "DISC" || kind == "FILE"; });
        if (path && !words[i].starts_with("--")) {
            words[i] = run.absolute(words[i]);
        }
    }
    return words;
}

std::string lineOf(const Run& run) {
    const auto words = repeatable(run);
    const bool oneLine = std::ranges::all_of(
        words, [](const std::string& word) { return word.find('\n') == std::string::npos; });
    return oneLine ? ctl::shellLine(words)
                   : "# left out, as no script can hold a line feed: " + jsonText(Json(words));
}

} // namespace

Recording::Recording(std::string start) : m_start(std::move(start)) {}

Recording::~Recording() {
    writeEnded(true);
    *m_alive = false;
}

void Recording::note(Run& run) {
    if (ctl::isQuestion(run.words())) {
        return;
    }
    auto input = std::make_shared<Input>(Input{Clock::now(), lineOf(run), std::nullopt, std::nullopt});
    m_inputs.push_back(input);
    if (m_inputs.size() > MostInputs) {
        m_inputs.pop_front();
        m_dropped = true;
    }
    if (!m_target.empty()) {
        m_waiting.push_back(input);
    }
    run.onExit = [this, input, alive = m_alive](Exit exit) {
        input->exit = exit;
        input->ended = Clock::now();
        if (*alive) {
            writeEnded();
        }
    };
}

std::string Recording::head() const {
    return "# Inputs of a bench with their times. \"zmctl replay\" repeats them on a fresh one:\n#   " +
           m_start + "\n";
}

std::string Recording::text(const Input& input, Clock::time_point& before) {
    const auto pause = std::chrono::round<std::chrono::milliseconds>(input.moment - before);
    before += pause;
    std::string text = pause.count() > 0 ? "wait " + std::to_string(pause.count()) + "\n" : "";
    if (input.exit == Exit::WrongUsage) {
        text += "# refused: ";
    } else if (input.exit == Exit::Failed && !input.line.starts_with('#')) {
        text += "try ";
    }
    return text + input.line + "\n";
}

Status Recording::begin(const std::string& file) {
    if (!m_target.empty()) {
        return Error{"inputs are being recorded already" +
                     (m_target == OnlyAnswered ? "" : " to " + m_target) +
                     "; \"zmctl record --stop\" ends that"};
    }
    if (file != OnlyAnswered) {
        m_file = std::ofstream(file, std::ios::binary | std::ios::trunc);
        if (!(m_file << head() << std::flush)) {
            m_file = {};
            return systemError(file);
        }
    }
    m_target = file;
    m_script = head();
    m_before = Clock::now();
    m_written = 0;
    return ok();
}

// Lines are written in the order in which the commands began, so a long one holds back those behind it.
void Recording::writeEnded(bool also) {
    while (!m_waiting.empty() && (also || m_waiting.front()->exit)) {
        const std::string lines = text(*m_waiting.front(), m_before);
        m_waiting.pop_front();
        ++m_written;
        if (m_target == OnlyAnswered) {
            m_script += lines;
        } else {
            m_file << lines << std::flush;
        }
    }
}

Result<std::string> Recording::end() {
    if (m_target.empty()) {
        return Error{"nothing is being recorded; \"zmctl record FILE\" begins it"};
    }
    writeEnded(true);
    const std::string file = std::exchange(m_target, {});
    if (file == OnlyAnswered) {
        return std::exchange(m_script, {});
    }
    m_file.close();
    if (!std::exchange(m_file, {})) {
        return Error{file + ": not everything could be written"};
    }
    return file + ": " + std::to_string(m_written) + (m_written == 1 ? " input\n" : " inputs\n");
}

std::string Recording::all() const {
    std::string script = head() + (m_dropped ? "# older inputs are not kept\n" : "");
    Clock::time_point before = m_dropped ? m_inputs.front()->moment : m_began;
    for (const auto& input : m_inputs) {
        script += text(*input, before);
    }
    return script;
}

} // namespace zm::bench::commands
