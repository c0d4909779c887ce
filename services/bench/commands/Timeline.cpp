#include "services/bench/commands/Timeline.h"

#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "services/bench/unit/PpsText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <map>

namespace zm::bench::commands {

namespace {

using Steady = std::chrono::steady_clock;
using System = std::chrono::system_clock;

enum class Group { Bench = 1, Objects = 2, Logs = 3 };
constexpr const char* GroupNames[] = {"bench", "objects", "log"};

constexpr size_t MostLogLines = 5000;
constexpr int MillisecondsAt = 20; // of "2015-09-09T10:08:13.042"

// When a line of the log was written; the epoch for a time that is none.
System::time_point logMoment(const std::string& time) {
    std::tm parts{};
    if (!::strptime(time.c_str(), "%Y-%m-%dT%H:%M:%S", &parts)) {
        return {};
    }
    parts.tm_isdst = -1;
    const int milliseconds = time.size() > MillisecondsAt ? std::atoi(time.c_str() + MillisecondsAt) : 0;
    return System::from_time_t(std::mktime(&parts)) + std::chrono::milliseconds(milliseconds);
}

/** Collects events by lane. */
class Trace {
public:
    Trace(Steady::time_point began, Steady::time_point from) : m_began(began), m_from(from) {}

    void add(Group group, const std::string& lane, const std::string& name, Steady::time_point begin,
             Steady::time_point end, Json details = Json::object()) {
        if (end < m_from) {
            return;
        }
        const auto microseconds = [](auto duration) {
            return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
        };
        Json event = {{"name", name},
                      {"pid", static_cast<int>(group)},
                      {"tid", laneNumber(group, lane)},
                      {"ts", microseconds(begin - m_began)},
                      {"args", std::move(details)}};
        if (begin == end) {
            event["ph"] = "i";
            event["s"] = "t";
        } else {
            event["ph"] = "X";
            event["dur"] = microseconds(end - begin);
        }
        m_events.push_back(std::move(event));
    }

    std::string text() const {
        return jsonText({{"traceEvents", m_events}, {"displayTimeUnit", "ms"}}) + "\n";
    }

private:
    int laneNumber(Group group, const std::string& lane) {
        const auto [found, isNew] = m_lanes.try_emplace({group, lane}, static_cast<int>(m_lanes.size()) + 1);
        if (isNew) {
            name("process_name", group, found->second, GroupNames[static_cast<int>(group) - 1]);
            name("thread_name", group, found->second, lane);
        }
        return found->second;
    }

    void name(const char* what, Group group, int lane, const std::string& name) {
        m_events.push_back({{"name", what},
                            {"ph", "M"},
                            {"pid", static_cast<int>(group)},
                            {"tid", lane},
                            {"args", {{"name", name}}}});
    }

    const Steady::time_point m_began;
    const Steady::time_point m_from;
    std::map<std::pair<Group, std::string>, int> m_lanes;
    Json m_events = Json::array();
};

void addObjects(Trace& trace, const unit::PpsHistory& history) {
    for (const auto& change : history.changes()) {
        for (const auto& delta : unit::ppsDeltas(change.text)) {
            const std::string name = delta[0].substr(0, delta[0].find(':'));
            trace.add(Group::Objects, change.object, name, change.moment, change.moment, {{"lines", delta}});
        }
    }
}

void addLog(Trace& trace, const std::string& file) {
    const auto difference = System::now().time_since_epoch() -
                            std::chrono::duration_cast<System::duration>(Steady::now().time_since_epoch());
    for (const auto& entry : LogReader(file).last(MostLogLines)) {
        const Steady::time_point moment(std::chrono::duration_cast<Steady::duration>(
            logMoment(entry.time).time_since_epoch() - difference));
        trace.add(Group::Logs, "log of " + entry.process, entry.text, moment, moment,
                  {{"severity", entry.severity}});
    }
}

} // namespace

std::string timelineText(unit::HeadUnit& unit, const Recording& recording, std::chrono::milliseconds time) {
    const auto now = Steady::now();
    const auto began = unit.began();
    Trace trace(began, now - std::min<Steady::duration>(time, now - began));
    for (const auto& input : recording.inputs()) {
        trace.add(Group::Bench, "commands", input->line, input->moment, input->ended.value_or(now));
    }
    for (const auto& moment : unit.compositor().frameMoments()) {
        trace.add(Group::Bench, "frames", "frame", moment, moment);
    }
    addObjects(trace, unit.history());
    addLog(trace, logFile(unit.options().runtimeDir));
    return trace.text();
}

} // namespace zm::bench::commands
