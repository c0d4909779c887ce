#include "services/bench/commands/CatalogueFile.h"
#include "services/bench/commands/Processor.h"
#include "services/bench/commands/Snapshot.h"

#include <array>
#include <fstream>
#include <memory>
#include <sstream>

namespace zm::bench::commands {

namespace {

void saveSnapshot(Call& call, const std::string& path) {
    auto snapshot = Snapshot::of(call.unit);
    if (!snapshot) {
        call.run->fail(snapshot.error());
        return;
    }
    snapshot->bench = call.processor.recording().start();
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << snapshot->text();
    stream.close();
    endWith(call.run, stream ? ok() : Status(systemError(path)));
}

/** Carries out commands one after the other; the first that fails ends it. */
class Sequence : public std::enable_shared_from_this<Sequence> {
public:
    Sequence(Call call, std::vector<Snapshot::Command> commands)
        : m_call(std::move(call)), m_commands(std::move(commands)) {}

    void next() {
        if (m_next == m_commands.size()) {
            m_call.run->finish();
            return;
        }
        auto said = std::make_shared<std::string>();
        m_call.processor.carryOut(std::make_shared<Run>(
            m_commands[m_next++], "/",
            Run::Sink{[](const std::string&) {}, [said](const std::string& text) { *said += text; },
                      [self = shared_from_this(), said](int status) { self->ended(status, *said); }}));
    }

private:
    void ended(int status, const std::string& said) {
        if (status != 0) {
            const auto& words = m_commands[m_next - 1];
            std::string line;
            for (const auto& word : words) {
                line += (line.empty() ? "" : " ") + word;
            }
            m_call.run->err("zmctl: the snapshot's command \"" + line + "\" failed:\n" + said);
            m_call.run->finish(Exit::Failed);
            return;
        }
        // A turn of its own: commands that end at once would go ever deeper.
        m_call.unit.loop().post([self = shared_from_this()] { self->next(); });
    }

    Call m_call;
    const std::vector<Snapshot::Command> m_commands;
    size_t m_next = 0;
};

void restoreSnapshot(Call& call, const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    if (stream) {
        text << stream.rdbuf();
    }
    if (!stream || stream.bad()) {
        call.run->fail(systemError(path).message);
        return;
    }
    const auto snapshot = Snapshot::parse(text.str());
    if (!snapshot) {
        call.run->fail(path + ": " + snapshot.error());
        return;
    }
    const bool discService = call.unit.child("disc") != nullptr;
    if (!discService && !snapshot->catalogue.empty()) {
        if (auto put = replaceCatalogue(call.unit.options().catalogue, snapshot->catalogue); !put) {
            call.run->fail(put.error());
            return;
        }
    }
    std::make_shared<Sequence>(call, snapshot->commands(discService))->next();
}

bool snapshotCommand(Call& call) {
    const std::string verb = call.arguments.word();
    const std::string file = call.arguments.word();
    if (!call.arguments.complete() || (verb != "save" && verb != "restore")) {
        return false;
    }
    const std::string path = call.run->absolute(file);
    verb == "save" ? saveSnapshot(call, path) : restoreSnapshot(call, path);
    return true;
}

constexpr std::array SnapshotCommands = {
    Row{"snapshot", snapshotCommand},
};

} // namespace

std::span<const Row> snapshotRows() {
    return SnapshotCommands;
}

} // namespace zm::bench::commands
