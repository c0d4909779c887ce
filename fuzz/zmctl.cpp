// Commands to the bench: each line of the input is one, as zmctl sends it ({"argv":[...]}) or as it stands in
// a script. No application runs.
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Scratch.h"
#include "platform/linux/pps/PpsFile.h"
#include "services/bench/commands/Processor.h"
#include "services/bench/commands/Request.h"
#include "services/ctl/ShellWords.h"

#include <algorithm>
#include <set>

using namespace zm;
using namespace zm::fuzz;

namespace {

constexpr int MostCommands = 8;
constexpr int MostTurns = 50;

class Bench {
public:
    Bench() : m_unit(m_loop, options()), m_processor(m_unit) {
        const auto started = m_unit.start();
        check(static_cast<bool>(started), started ? "" : started.error().c_str());
        m_objects = objects();
    }

    void execute(std::vector<std::string> words) {
        struct Answer {
            std::string err;
            int exits = 0;
            int status = 0;
            bool cancelled = false;
        };
        const auto answer = std::make_shared<Answer>();
        const auto alive = [answer] {
            check(answer->exits == 0 && !answer->cancelled, "a command that has ended says no more");
        };
        const auto run = std::make_shared<bench::commands::Run>(
            std::move(words), scratchFolder(),
            bench::commands::Run::Sink{[alive](const std::string&) { alive(); },
                                       [alive, answer](const std::string& text) {
                                           alive();
                                           answer->err += text;
                                       },
                                       [alive, answer](int status) {
                                           alive();
                                           ++answer->exits;
                                           answer->status = status;
                                       }});
        m_processor.execute(run);
        turn([&] { return answer->exits > 0; });
        if (answer->exits > 0) {
            check(answer->status >= 0 && answer->status <= 2, "there are three exit statuses");
            check((answer->status == 0) == answer->err.empty(), "a failure says why, and nothing else does");
        } else {
            // It watches, waits or follows; its caller goes away.
            answer->cancelled = true;
            run->cancel();
        }
        turn([] { return false; });
    }

    // What an input has made must not be there for the next.
    void forgetObjects() {
        for (const auto& object : objects()) {
            if (!m_objects.contains(object)) {
                static_cast<void>(ppsUnlink(m_unit.ppsSocket(), "/pps/" + object));
            }
        }
    }

private:
    static bench::unit::HeadUnitOptions options() {
        bench::unit::HeadUnitOptions options;
        options.runtimeDir = scratchFolder();
        options.shareDir = scratchFolder();
        options.catalogue = scratchFolder() + "/discdb.sqlite";
        options.discService = false;
        return options;
    }
    template <class Condition>
    void turn(Condition done) {
        for (int i = 0; i < MostTurns && !done() && m_loop.iterate(false); ++i) {
        }
    }
    std::set<std::string> objects() const {
        const auto names = ppsList(m_unit.ppsSocket());
        return names ? std::set<std::string>(names->begin(), names->end()) : std::set<std::string>();
    }

    EventLoop m_loop;
    bench::unit::HeadUnit m_unit;
    bench::commands::Processor m_processor;
    std::set<std::string> m_objects;
};

std::optional<std::vector<std::string>> parse(std::string_view line) {
    if (line.starts_with('{')) {
        const auto request = bench::commands::parseRequest(line);
        return request ? std::optional(request->words) : std::nullopt;
    }
    auto words = ctl::shellWords(std::string(line));
    if (words) {
        check(*ctl::shellWords(ctl::shellLine(*words)) == *words, "words can be written and read again");
    }
    return words ? std::optional(std::move(*words)) : std::nullopt;
}

// Pictures go where the caller says: of these only the ones into the folder of this process.
bool staysInside(const std::vector<std::string>& words) {
    return words.empty() || words[0] != "shot" || std::ranges::none_of(words, [](const std::string& word) {
               return word.find('/') != std::string::npos;
           });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Bench bench;
    auto rest = asText(data, size);
    for (int count = 0; !rest.empty() && count < MostCommands; ++count) {
        if (auto words = parse(takePart(rest, '\n')); words && staysInside(*words)) {
            bench.execute(std::move(*words));
        }
    }
    bench.forgetObjects();
    return 0;
}
