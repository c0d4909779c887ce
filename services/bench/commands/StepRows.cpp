#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "services/bench/commands/Processor.h"
#include "services/bench/commands/Settle.h"
#include "services/bench/unit/PpsText.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cstring>
#include <deque>

namespace zm::bench::commands {

namespace {

constexpr std::chrono::seconds StepSettleTime(20);
constexpr uint32_t NoAlpha = 0xffffff;

size_t pixelsOf(const Image& frame, uint32_t colour) {
    size_t count = 0;
    for (int y = 0; y < frame.height; ++y) {
        const uint8_t* row = frame.pixels.data() + static_cast<size_t>(y) * frame.stride;
        for (int x = 0; x < frame.width; ++x) {
            uint32_t pixel = 0;
            std::memcpy(&pixel, row + static_cast<size_t>(x) * sizeof pixel, sizeof pixel);
            count += (pixel & NoAlpha) == colour;
        }
    }
    return count;
}

/** A command, and what it led to: everything is looked at once nothing moves any more. */
class Step : public std::enable_shared_from_this<Step> {
public:
    struct Wishes {
        std::optional<uint32_t> colour;
        bool changes = false; ///< of the items only those that changed
    };

    Step(Call& call, std::vector<std::string> words, Wishes wishes)
        : m_unit(call.unit), m_run(call.run), m_words(std::move(words)), m_wishes(wishes),
          m_log(logFile(call.unit.options().runtimeDir)),
          m_change(m_unit.history().changes().empty() ? 0 : m_unit.history().changes().back().number),
          m_requested(m_unit.launcher().requested()) {}

    void begin(Processor& processor) {
        if (m_words.empty()) {
            settle();
            return;
        }
        const auto self = shared_from_this();
        m_inner = std::make_shared<Run>(m_words, m_run->absolute("."),
                                        Run::Sink{[self](const std::string& text) { self->m_out += text; },
                                                  [self](const std::string& text) { self->m_err += text; },
                                                  [self](int status) { self->ended(status); }});
        m_run->onEnd = [inner = m_inner] { inner->cancel(); };
        processor.execute(m_inner);
    }

private:
    void ended(int status) {
        m_exit = status;
        // Not inside the command's own end.
        m_unit.loop().post([self = shared_from_this()] { self->settle(); });
    }

    void settle() {
        commands::settle(m_unit, StepSettleTime, [self = shared_from_this()](const Status& settled) {
            settled ? self->look() : self->m_run->fail(settled.error());
        });
    }

    void look() {
        m_unit.shell().ask({{"t", "screen"}, {"changes", m_wishes.changes}},
                           [self = shared_from_this()](Result<Json> reply) {
                               // Nothing is on the pages of an application that does not run.
                               self->m_screen = reply ? std::move(*reply) : Json();
                               self->m_unit.shell().ask({{"t", "drawn"}}, [self](Result<Json> stale) {
                                   self->finish(stale ? std::move(*stale) : Json::object());
                               });
                           });
    }

    Json changes() const {
        Json result = Json::array();
        const auto& all = m_unit.history().changes();
        auto from = all.end();
        while (from != all.begin() && std::prev(from)->number > m_change) {
            --from;
        }
        for (; from != all.end(); ++from) {
            for (auto& delta : unit::ppsDeltas(from->text)) {
                result.push_back({{"object", from->object}, {"lines", std::move(delta)}});
            }
        }
        return result;
    }

    Json requests() const {
        Json result = Json::array();
        const auto& all = m_unit.launcher().requests();
        const auto since = std::min<uint64_t>(m_unit.launcher().requested() - m_requested, all.size());
        for (auto each = all.end() - static_cast<long>(since); each != all.end(); ++each) {
            result.push_back(jsonObject(*each));
        }
        return result;
    }

    void finish(Json stale) {
        Json log = Json::array();
        for (const auto& entry : m_log.readNew()) {
            log.push_back(std::to_string(entry.severity) + " " + entry.text);
        }
        if (!m_screen.is_null()) {
            m_screen["video"] = m_unit.compositor().videoState();
        }
        Json result = {{"exit", m_exit},
                       {"out", std::move(m_out)},
                       {"err", std::move(m_err)},
                       {"changes", changes()},
                       {"requests", requests()},
                       {"log", std::move(log)},
                       {"stale", std::move(stale)},
                       {"screen", std::move(m_screen)}};
        if (m_wishes.colour) {
            result["pixels"] = pixelsOf(m_unit.compositor().compose(), *m_wishes.colour);
        }
        m_run->out(jsonText(result) + "\n");
        m_run->finish();
    }

    unit::HeadUnit& m_unit;
    std::shared_ptr<Run> m_run;
    std::vector<std::string> m_words;
    Wishes m_wishes;
    LogReader m_log;
    uint64_t m_change;
    uint64_t m_requested;
    std::shared_ptr<Run> m_inner;
    int m_exit = 0;
    std::string m_out;
    std::string m_err;
    Json m_screen;
};

std::optional<uint32_t> parseColour(const std::string& word) {
    constexpr size_t Digits = 6;
    constexpr int Base = 16;
    uint32_t colour = 0;
    const auto end = word.data() + word.size();
    const auto [last, error] = std::from_chars(word.data(), end, colour, Base);
    return word.size() == Digits && error == std::errc() && last == end ? std::optional(colour)
                                                                        : std::nullopt;
}

bool stepOf(Call& call) {
    // The options of the command inside are its own: only what stands before it is looked at.
    std::deque<std::string> words(call.run->words().begin() + 1, call.run->words().end());
    Step::Wishes wishes;
    while (!words.empty() && words[0].starts_with("--")) {
        wishes.changes = wishes.changes || words[0] == "--changes";
        if (words[0] == "--pixels") {
            words.pop_front();
            wishes.colour = words.empty() ? std::nullopt : parseColour(words[0]);
            if (!wishes.colour) {
                call.arguments.refuse("a colour has six hexadecimal digits, such as ff00ff");
                return false;
            }
        } else if (words[0] != "--changes") {
            call.arguments.refuse("there is no option " + words[0]);
            return false;
        }
        words.pop_front();
    }
    if (!words.empty() && words[0] == "step") {
        call.arguments.refuse("a step has one command");
        return false;
    }
    std::make_shared<Step>(call, std::vector<std::string>(words.begin(), words.end()), wishes)
        ->begin(call.processor);
    return true;
}

constexpr std::array StepCommands = {
    Row{"step", stepOf},
};

} // namespace

std::span<const Row> stepRows() {
    return StepCommands;
}

} // namespace zm::bench::commands
