#pragma once

#include "services/bench/commands/CommandRun.h"
#include "services/bench/unit/HeadUnit.h"
#include "services/ctl/Arguments.h"

#include <memory>
#include <span>
#include <string_view>

namespace zm {

/** What a command gets: the head unit, its caller, its words. */
struct CommandCall {
    HeadUnit& unit;
    std::shared_ptr<CommandRun> run;
    Arguments arguments;
};

/** One command; how it is written stands in services/ctl/CommandTexts.h. */
struct CommandRow {
    std::string_view name;
    /** Gives false, having done nothing, when the words do not fit the usage. */
    bool (*handler)(CommandCall& call);
};

/** The commands that drive the head unit: one table for zmctl, the page and the tests. Loop's thread only. */
class CommandProcessor {
public:
    explicit CommandProcessor(HeadUnit& unit) : m_unit(unit) {}

    /** Starts a command; the sink of `run` gets its output and its exit status, at once or later. */
    void execute(const std::shared_ptr<CommandRun>& run);
    /** Whether there is a command of that name. */
    static bool knows(std::string_view name);

private:
    HeadUnit& m_unit;
};

/** The rows of each subject, in the order of the help text. */
std::span<const CommandRow> ppsCommandRows();
std::span<const CommandRow> launcherCommandRows();
std::span<const CommandRow> vehicleCommandRows();
std::span<const CommandRow> inputCommandRows();
std::span<const CommandRow> discCommandRows();
std::span<const CommandRow> screenCommandRows();
std::span<const CommandRow> systemCommandRows();

/** Sends a message to the application and ends the command with its answer. */
void forward(CommandCall& call, Json message, std::chrono::milliseconds timeout = std::chrono::seconds(10));
/** Ends the command with a reply of the application. */
ShellServer::Reply endWith(const std::shared_ptr<CommandRun>& run);
/** Ends the command as `status` says. */
void endWith(const std::shared_ptr<CommandRun>& run, const Status& status);

} // namespace zm
