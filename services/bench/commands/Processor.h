#pragma once

#include "services/bench/commands/Recording.h"
#include "services/bench/commands/Run.h"
#include "services/bench/film/Film.h"
#include "services/bench/unit/HeadUnit.h"
#include "services/ctl/Arguments.h"

#include <memory>
#include <span>
#include <string_view>

namespace zm::bench::commands {

class Processor;

/** What a command gets: the head unit, its caller, its words. */
struct Call {
    unit::HeadUnit& unit;
    std::shared_ptr<Run> run;
    ctl::Arguments arguments;
    Processor& processor;
};

/** One command; how it is written stands in services/ctl/CommandTexts.h. */
struct Row {
    std::string_view name;
    /** Gives false, having done nothing, when the words do not fit the usage. */
    bool (*handler)(Call& call);
};

/** The commands that drive the head unit: one table for zmctl, the page and the tests. Loop's thread only. */
class Processor {
public:
    /** `start`: how a bench like this one is started; a record says so. */
    explicit Processor(unit::HeadUnit& unit, std::string start = "zmbench")
        : m_unit(unit), m_recording(std::move(start)),
          m_film(unit.loop(), unit.compositor(), unit.options().programDir + "/zmfilm",
                 unit.options().runtimeDir) {}

    /** Starts a command; the sink of `run` gets its output and its exit status, at once or later. */
    void execute(const std::shared_ptr<Run>& run);
    /** The same for a command that is part of another one: it is not recorded. */
    void carryOut(const std::shared_ptr<Run>& run);
    /** Whether there is a command of that name. */
    static bool knows(std::string_view name);
    Recording& recording() { return m_recording; }
    const Recording& recording() const { return m_recording; }
    film::Film& film() { return m_film; }

private:
    unit::HeadUnit& m_unit;
    Recording m_recording;
    film::Film m_film;
};

/** The rows of each subject, in the order of the help text. */
std::span<const Row> ppsRows();
std::span<const Row> launcherRows();
std::span<const Row> vehicleRows();
std::span<const Row> inputRows();
std::span<const Row> discRows();
std::span<const Row> screenRows();
std::span<const Row> systemRows();
std::span<const Row> recordRows();
std::span<const Row> filmRows();
std::span<const Row> snapshotRows();
std::span<const Row> stepRows();

/** Sends a message to the application and ends the command with its answer. */
void forward(Call& call, Json message, std::chrono::milliseconds timeout = std::chrono::seconds(10));
/** Ends the command with a reply of the application. */
unit::ShellServer::Reply endWith(const std::shared_ptr<Run>& run);
/** Ends the command as `status` says. */
void endWith(const std::shared_ptr<Run>& run, const Status& status);

} // namespace zm::bench::commands
