#include "services/bench/commands/Processor.h"

#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"

#include <nlohmann/json.hpp>

#include <array>

namespace zm::bench::commands {

namespace {

constexpr std::array Subjects = {ppsRows,    launcherRows, vehicleRows, inputRows,    discRows, screenRows,
                                 systemRows, recordRows,   filmRows,    snapshotRows, stepRows};

const Row* find(std::string_view name) {
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

void Processor::execute(const std::shared_ptr<Run>& run) {
    if (!run->words().empty()) {
        m_recording.note(*run);
    }
    carryOut(run);
}

void Processor::carryOut(const std::shared_ptr<Run>& run) {
    const auto& words = run->words();
    const Row* row = words.empty() ? nullptr : find(words[0]);
    if (!row) {
        run->err(words.empty() ? ctl::overviewText() : ctl::unknownCommandText(words[0]) + "\n");
        run->finish(Exit::WrongUsage);
        return;
    }
    if (!ctl::whyUnfit(words).empty()) {
        run->err(ctl::wrongUsageText(words, {}));
        run->finish(Exit::WrongUsage);
        return;
    }
    Call call{m_unit, run, ctl::Arguments({words.begin() + 1, words.end()}), *this};
    if (!row->handler(call)) {
        run->err(ctl::wrongUsageText(words, call.arguments.why()));
        run->finish(Exit::WrongUsage);
    }
}

bool Processor::knows(std::string_view name) {
    return find(name) != nullptr;
}

unit::ShellServer::Reply endWith(const std::shared_ptr<Run>& run) {
    return [run](const Result<Json>& reply) {
        if (reply) {
            run->finish();
        } else {
            run->fail(reply.error());
        }
    };
}

void endWith(const std::shared_ptr<Run>& run, const Status& status) {
    if (status) {
        run->finish();
    } else {
        run->fail(status.error());
    }
}

void forward(Call& call, Json message, std::chrono::milliseconds timeout) {
    call.unit.shell().ask(std::move(message), endWith(call.run), timeout);
}

} // namespace zm::bench::commands
