#include "services/bench/unit/Journey.h"

#include "services/ctl/Numbers.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace zm::bench::unit {

namespace {

constexpr double JourneyMilliseconds = 1000;
constexpr double LongestJourney = 1e6; // seconds

std::vector<std::string> journeyFields(std::string line) {
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    std::vector<std::string> result;
    std::istringstream stream(line + ",");
    for (std::string field; std::getline(stream, field, ',');) {
        const auto begin = std::min(field.find_first_not_of(" \t"), field.size());
        result.push_back(field.substr(begin, field.find_last_not_of(" \t") + 1 - begin));
    }
    return result;
}

/** A signal file line by line. */
struct JourneyReader {
    const SignalCheck& check;
    std::vector<std::string> columns;
    std::vector<JourneyStep> steps;

    Status head(const std::vector<std::string>& names) {
        if (names[0] != "time") {
            return Error{"the first column is \"" + names[0] + "\" and not \"time\", in seconds"};
        }
        columns = names;
        for (auto name = names.begin() + 1; name != names.end(); ++name) {
            if (auto good = check(*name, std::nullopt); !good) {
                return good;
            }
        }
        return ok();
    }

    Status take(const std::vector<std::string>& values) {
        if (values.size() != columns.size()) {
            return Error{std::to_string(values.size()) + " fields where the first line names " +
                         std::to_string(columns.size())};
        }
        const auto time = ctl::parseNumber<double>(values[0]);
        if (!time || *time < 0 || *time > LongestJourney) {
            return Error{"the time \"" + values[0] + "\" is not seconds, 0 or more"};
        }
        const auto moment = std::chrono::milliseconds(static_cast<long>(*time * JourneyMilliseconds));
        if (!steps.empty() && moment < steps.back().time) {
            return Error{"the time " + values[0] + " lies before that of the line above"};
        }
        for (size_t i = 1; i < values.size(); ++i) {
            if (values[i].empty()) {
                continue;
            }
            if (auto good = check(columns[i], values[i]); !good) {
                return good;
            }
            steps.push_back({moment, columns[i], values[i]});
        }
        return ok();
    }
};

} // namespace

Result<std::vector<JourneyStep>> readJourney(const std::string& file, const SignalCheck& check) {
    std::ifstream stream(file);
    if (!stream) {
        return systemError(file);
    }
    JourneyReader reader{check, {}, {}};
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        if (line.empty() || line == "\r" || line.starts_with('#')) {
            continue;
        }
        const auto good =
            reader.columns.empty() ? reader.head(journeyFields(line)) : reader.take(journeyFields(line));
        if (!good) {
            return Error{file + ":" + std::to_string(number) + ": " + good.error()};
        }
    }
    if (stream.bad()) {
        return systemError(file);
    }
    if (reader.steps.empty()) {
        return Error{file + ": there are no signals in it"};
    }
    return std::move(reader.steps);
}

void Journey::begin(std::vector<JourneyStep> steps, double speed) {
    end();
    for (auto& step : steps) {
        step.time = std::chrono::duration_cast<std::chrono::milliseconds>(step.time / speed);
    }
    m_steps = std::move(steps);
    m_next = 0;
    m_now = {};
    m_began = std::chrono::steady_clock::now();
    onRuns(true);
    doWhatIsDue();
}

void Journey::end() {
    m_timer.reset();
    if (!m_steps.empty()) {
        m_steps.clear();
        onRuns(false);
    }
}

std::optional<std::chrono::milliseconds> Journey::untilNext() const {
    return runs() ? std::optional(m_steps[m_next].time - m_now) : std::nullopt;
}

void Journey::pass(std::chrono::milliseconds time) {
    m_now += time;
    doWhatIsDue();
}

void Journey::doWhatIsDue() {
    if (m_pace == Pace::Real) {
        m_now =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_began);
    }
    while (runs() && m_steps[m_next].time <= m_now) {
        const JourneyStep step = m_steps[m_next++];
        onStep(step);
        if (m_next == m_steps.size()) {
            end();
        }
    }
    if (runs() && m_pace == Pace::Real) {
        arm();
    }
}

void Journey::arm() {
    // Set anew from a turn of its own: a timer cannot be replaced inside its own call.
    m_timer = afterDelay(m_loop, std::max(*untilNext(), std::chrono::milliseconds(1)),
                         [this] { m_loop.post([this] { doWhatIsDue(); }); });
}

} // namespace zm::bench::unit
