#include "services/bench/CommandProcessor.h"

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

std::string usageLines(const CommandRow& row) {
    std::string result;
    std::string_view rest = row.usage;
    while (!rest.empty()) {
        const auto end = rest.find('\n');
        result +=
            (result.empty() ? "usage: zmctl " : "       zmctl ") + std::string(rest.substr(0, end)) + "\n";
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return result;
}

std::string overview() {
    std::string result = "usage: zmctl [--runtime DIR] COMMAND\n\n";
    for (const auto subject : Subjects) {
        for (const auto& row : subject()) {
            const auto summary = row.help.substr(0, row.help.find('\n'));
            result += "  " + std::string(row.name) +
                      std::string(12 - std::min<size_t>(row.name.size(), 11), ' ') + std::string(summary) +
                      "\n";
        }
    }
    return result + "  help        this list, or with a command how it is used\n";
}

void help(CommandRun& run) {
    const auto& words = run.words();
    const CommandRow* row = words.size() > 1 ? find(words[1]) : nullptr;
    if (words.size() == 1) {
        run.out(overview());
        run.finish();
    } else if (words.size() == 2 && row) {
        run.out(usageLines(*row) + "\n" + std::string(row->help) + "\n");
        run.finish();
    } else {
        run.err(words.size() == 2 ? "zmctl: there is no command \"" + words[1] + "\"\n"
                                  : "usage: zmctl help [COMMAND]\n");
        run.finish(Exit::WrongUsage);
    }
}

} // namespace

void CommandProcessor::execute(const std::shared_ptr<CommandRun>& run) {
    const auto& words = run->words();
    if (words.empty()) {
        run->err(overview());
        run->finish(Exit::WrongUsage);
        return;
    }
    if (words[0] == "help") {
        help(*run);
        return;
    }
    const CommandRow* row = find(words[0]);
    if (!row) {
        run->err("zmctl: there is no command \"" + words[0] + "\"; \"zmctl help\" lists them\n");
        run->finish(Exit::WrongUsage);
        return;
    }
    CommandCall call{m_unit, run, Arguments({words.begin() + 1, words.end()})};
    if (!row->handler(call)) {
        run->err(usageLines(*row));
        run->finish(Exit::WrongUsage);
    }
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
