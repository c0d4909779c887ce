#include "services/bench/commands/CommandProcessor.h"

#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"

#include <array>

namespace zm {

namespace {

constexpr std::array Subjects = {ppsCommandRows,  launcherCommandRows, vehicleCommandRows, inputCommandRows,
                                 discCommandRows, screenCommandRows,   systemCommandRows};

const CommandRow* find(std::string_view name) {
    for (const auto subject : Subjects) {
        for (const auto& row : subject()) {
            if (row.name == name) {
                return &row;
            }
        }
    }
    return nullptr;
}

} // namespace

void CommandProcessor::execute(const std::shared_ptr<CommandRun>& run) {
    const auto& words = run->words();
    const CommandRow* row = words.empty() ? nullptr : find(words[0]);
    if (!row) {
        run->err(words.empty() ? overviewText() : unknownCommandText(words[0]) + "\n");
        run->finish(Exit::WrongUsage);
        return;
    }
    if (!whyUnfit(words).empty()) {
        run->err(wrongUsageText(words, {}));
        run->finish(Exit::WrongUsage);
        return;
    }
    CommandCall call{m_unit, run, Arguments({words.begin() + 1, words.end()})};
    if (!row->handler(call)) {
        run->err(wrongUsageText(words, call.arguments.why()));
        run->finish(Exit::WrongUsage);
    }
}

bool CommandProcessor::knows(std::string_view name) {
    return find(name) != nullptr;
}

ShellServer::Reply endWith(const std::shared_ptr<CommandRun>& run) {
    return [run](const Result<Json>& reply) {
        if (reply) {
            run->finish();
        } else {
            run->fail(reply.error());
        }
    };
}

void endWith(const std::shared_ptr<CommandRun>& run, const Status& status) {
    if (status) {
        run->finish();
    } else {
        run->fail(status.error());
    }
}

void forward(CommandCall& call, Json message, std::chrono::milliseconds timeout) {
    call.unit.shell().ask(std::move(message), endWith(call.run), timeout);
}

} // namespace zm
