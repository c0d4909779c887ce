#include "base/JsonMessage.h"
#include "base/Nearest.h"
#include "services/bench/commands/Processor.h"
#include "services/bench/unit/PpsText.h"
#include "services/bench/unit/PpsWatch.h"

#include <nlohmann/json.hpp>

#include <array>
#include <iomanip>
#include <sstream>

namespace zm::bench::commands {

namespace {

constexpr int ReadOnly = 0;

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) {
        text += line + "\n";
    }
    return text;
}

// Objects go by their name with and without the folder that all of them lie in.
std::string objectName(Call& call) {
    const std::string word = call.arguments.word();
    return word.starts_with("/pps/") ? word.substr(std::string_view("/pps/").size()) : word;
}

// Why an object could not be opened, and which one may be meant.
std::string whyNot(Call& call, const std::string& object, const std::string& error) {
    const auto names = ppsList(call.unit.ppsSocket());
    const std::string meant = names ? nearestWord(object, *names) : "";
    return error + (meant.empty() || meant == object ? "" : "; did you mean \"" + meant + "\"?");
}

bool list(Call& call) {
    if (!call.arguments.complete()) {
        return false;
    }
    auto names = ppsList(call.unit.ppsSocket());
    if (!names) {
        call.run->fail(names.error());
        return true;
    }
    call.run->out(joined(*names));
    call.run->finish();
    return true;
}

bool get(Call& call) {
    const std::string object = objectName(call);
    if (!call.arguments.complete()) {
        return false;
    }
    auto file = PpsFile::open(call.unit.ppsSocket(), "/pps/" + object, ReadOnly, 0);
    auto text = file ? file->read() : Result<std::string>(Error{file.error()});
    if (!text) {
        call.run->fail(whyNot(call, object, text.error()));
        return true;
    }
    for (const auto& delta : unit::ppsDeltas(*text)) {
        call.run->out(joined(delta));
    }
    call.run->finish();
    return true;
}

bool put(Call& call) {
    const std::string object = objectName(call);
    const auto lines = call.arguments.rest();
    if (!call.arguments.complete()) {
        return false;
    }
    for (const auto& line : lines) {
        if (line.find('\n') != line.npos) {
            call.run->fail("a line feed ends a line; encode it in the value: " + jsonText(line));
            return true;
        }
    }
    auto file = PpsFile::open(call.unit.ppsSocket(), "/pps/" + object, PpsWriteOnlyCreate, 0666);
    endWith(call.run, file ? file->write(joined(lines)) : Status(Error{file.error()}));
    return true;
}

// Prints the changes of one object until so many have come, time is up or the caller goes away.
class Watching {
public:
    static void start(Call& call, const std::string& object, std::optional<int> count,
                      std::optional<int> milliseconds) {
        auto self = std::make_shared<Watching>(call.run, count);
        auto watch = unit::PpsWatch::open(call.unit.loop(), call.unit.ppsSocket(), object,
                                          [raw = self.get()](const std::string& text) { raw->print(text); });
        if (!watch) {
            call.run->fail(watch.error());
            return;
        }
        self->m_watch = std::move(*watch);
        // The present state is `get`'s business: changes are what comes from now on.
        self->m_watch->drain();
        self->m_printing = true;
        call.unit.follow(self.get(), [raw = self.get()] { raw->m_watch->drain(); });
        if (milliseconds) {
            self->m_limit = afterDelay(call.unit.loop(), std::chrono::milliseconds(*milliseconds),
                                       [run = call.run] { run->finish(); });
        }
        call.run->onEnd = [self, &unit = call.unit] {
            unit.unfollow(self.get());
            // The command may end from inside its own watch: that goes in a turn of its own.
            unit.loop().post([self] { self->stop(); });
        };
    }

    Watching(std::shared_ptr<Run> run, std::optional<int> count) : m_run(std::move(run)), m_left(count) {}

private:
    void stop() {
        m_watch.reset();
        m_limit.reset();
        m_run.reset();
    }

    void print(const std::string& text) {
        if (!m_printing) {
            return;
        }
        for (const auto& delta : unit::ppsDeltas(text)) {
            m_run->out(joined(delta));
            if (m_left && --*m_left <= 0) {
                m_run->finish();
                return;
            }
        }
    }

    std::shared_ptr<Run> m_run;
    std::optional<int> m_left;
    std::unique_ptr<unit::PpsWatch> m_watch;
    SourceHandle m_limit;
    bool m_printing = false;
};

bool watch(Call& call) {
    const auto count = call.arguments.number("-n", 1);
    const auto milliseconds = call.arguments.seconds("-t");
    const std::string object = objectName(call);
    if (!call.arguments.complete()) {
        return false;
    }
    Watching::start(call, object, count, milliseconds);
    return true;
}

bool history(Call& call) {
    const auto count = call.arguments.number("-n", 0);
    const std::string object = call.arguments.more() ? objectName(call) : "";
    if (!call.arguments.complete()) {
        return false;
    }
    std::vector<std::string> lines;
    for (const auto& change : call.unit.history().changes()) {
        if (!object.empty() && change.object != object) {
            continue;
        }
        const std::chrono::duration<double> moment = change.moment - call.unit.began();
        for (const auto& delta : unit::ppsDeltas(change.text)) {
            std::ostringstream line;
            line << change.number << " " << std::fixed << std::setprecision(3) << moment.count() << " "
                 << change.object;
            for (const auto& each : delta) {
                line << "  " << each;
            }
            lines.push_back(line.str());
        }
    }
    if (count && lines.size() > static_cast<size_t>(*count)) {
        lines.erase(lines.begin(), lines.end() - *count);
    }
    call.run->out(joined(lines));
    call.run->finish();
    return true;
}

struct Verb {
    std::string_view name;
    bool (*handler)(Call& call);
};

constexpr std::array<Verb, 5> Verbs = {
    {{"ls", list}, {"get", get}, {"put", put}, {"watch", watch}, {"history", history}}};

bool pps(Call& call) {
    const std::string name = call.arguments.word();
    for (const auto& verb : Verbs) {
        if (verb.name == name) {
            return verb.handler(call);
        }
    }
    return false;
}

constexpr std::array PpsCommands = {
    Row{"pps", pps},
};

} // namespace

std::span<const Row> ppsRows() {
    return PpsCommands;
}

} // namespace zm::bench::commands
