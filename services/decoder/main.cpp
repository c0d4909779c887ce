// The decoder's process: plays what the disc service gives it, one item at a time.
#include "base/About.h"
#include "base/Socket.h"
#include "services/decoder/CutFeed.h"
#include "services/decoder/Fonts.h"
#include "services/decoder/FrameSender.h"
#include "services/decoder/Jail.h"
#include "services/decoder/RemoteFeed.h"
#include "services/decoder/Reporter.h"
#include "services/disc/engine/Decoders.h"
#include "services/disc/engine/FilePipeline.h"
#include "services/disc/engine/SoundLevel.h"
#include "services/disc/engine/SoundOut.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace zm::decoder {

namespace {

using namespace zm::disc::engine;
using namespace zm::disc::model;
using wire::Json;
using wire::numberOf;

class Decoder {
public:
    explicit Decoder(EventLoop& loop) : m_loop(loop) {}

    void handle(Message& message) {
        const Json json = wire::objectOf(message.text);
        const std::string what = wire::stringOf(json, "do");
        if (what == "answer") {
            say({{"is", "answer"}, {"number", numberOf(json, "number")}});
        } else if (what == "lock in") {
            lock();
        } else if (what == "start" && message.fds.size() == 1) {
            start(json, std::move(message.fds[0]));
        } else if (what == "stop") {
            end();
        } else if (what == "fade out") {
            fade();
        } else if (what == "loudness") {
            setLoudness({static_cast<int>(numberOf(json, "volume")), json.value("muted", false)});
        } else if (what == "follow" && message.fds.size() == 1 && m_pipeline) {
            follow(json, std::move(message.fds[0]));
        } else if (m_pipeline) {
            change(what, json);
        }
    }

private:
    // A spare process leaves the sound device to the one that plays.
    void lock() {
        openSound();
        if (const auto locked = lockIn(); !locked) {
            say({{"is", "log"},
                 {"severity", 2},
                 {"text", "the decoder is not locked in: " + locked.error()}});
            std::_Exit(1);
        }
        say({{"is", "ready"}});
    }

    void end() {
        m_fade.reset();
        m_pipeline.reset();
        endFade();
    }

    // Ends when what is heard has become silent. What does not sound at the moment ends a moment later, too.
    void fade() {
        if (!m_pipeline || !isHeard()) {
            end();
            return;
        }
        fadeOut();
        m_fade = everyInterval(m_loop, FadeStep, [this, waited = Milliseconds{0}]() mutable {
            waited += FadeStep;
            if (waited >= LongestFade) {
                end();
            } else if (hasFadedOut()) {
                m_fade = afterDelay(m_loop, std::min(soundDelay(), LongestFade - waited), [this] { end(); });
            }
        });
    }

    void start(const Json& json, UniqueFd bytes) {
        end();
        const auto item = static_cast<uint64_t>(numberOf(json, "item"));
        m_frames.begin(item);
        m_reporter.emplace(item);
        const auto kind = static_cast<MediaKind>(numberOf(json, "kind"));
        m_pipeline.emplace(m_loop, *m_reporter, m_frames, playable(json, kind),
                           feedOf(json, std::move(bytes)));
        m_pipeline->start(Milliseconds(numberOf(json, "position")),
                          json.value("paused", false) ? StartMode::Paused : StartMode::Playing);
    }

    static Playable playable(const Json& json, MediaKind kind) {
        return {nullptr, wire::stringOf(json, "path"), kind, Milliseconds(numberOf(json, "length"))};
    }

    static std::shared_ptr<ByteFeed> feedOf(const Json& json, UniqueFd bytes) {
        auto file = std::make_shared<RemoteFeed>(std::move(bytes));
        const auto cut = json.find("cut");
        if (cut == json.end() || !cut->is_object()) {
            return file;
        }
        const bool bounded = cut->contains("count");
        return std::make_shared<CutFeed>(std::move(file), numberOf(*cut, "first"),
                                         bounded ? std::optional(numberOf(*cut, "count")) : std::nullopt,
                                         numberOf(*cut, "silence"));
    }

    void follow(const Json& json, UniqueFd bytes) {
        if (m_pipeline->follow(playable(json, MediaKind::Music), feedOf(json, std::move(bytes)))) {
            m_reporter->expect(numberOf(json, "number"));
        }
    }

    void change(const std::string& what, const Json& json) {
        if (what == "pause") {
            m_pipeline->pause();
        } else if (what == "resume") {
            m_pipeline->resume();
        } else if (what == "seek") {
            m_pipeline->seek(Milliseconds(numberOf(json, "position")));
        } else if (what == "scan") {
            m_pipeline->scan(static_cast<int>(numberOf(json, "speed")));
        } else if (what == "follow nothing") {
            m_pipeline->followNothing();
        } else if (what == "view") {
            PictureView view;
            view.zoomStep = static_cast<size_t>(numberOf(json, "zoom"));
            view.quarterTurns = static_cast<int>(numberOf(json, "turns"));
            m_pipeline->view(view);
        } else if (what == "choose") {
            m_pipeline->choose({static_cast<int>(numberOf(json, "audio")),
                                static_cast<int>(numberOf(json, "subtitle")),
                                static_cast<SoundChannel>(numberOf(json, "channel"))});
        }
    }

    static constexpr Milliseconds FadeStep{5};

    EventLoop& m_loop;
    FrameSender m_frames;
    SourceHandle m_fade;
    std::optional<Reporter> m_reporter;
    std::optional<FilePipeline> m_pipeline;
};

constexpr const char* Usage = "usage: zmdecode [--version|--help]\n"
                              "Decodes for zmdiscd, which starts it; by itself it does nothing.\n";

bool startedByTheService() {
    struct stat info {};
    return ::fstat(disc::engine::wire::ControlFd, &info) == 0 && S_ISSOCK(info.st_mode);
}

[[noreturn]] void run() {
    // Never without the one that watches over it.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    EventLoop loop;
    disc::engine::initDecoders();
    openFonts();
    Connection service(loop, UniqueFd(::fcntl(disc::engine::wire::ControlFd, F_DUPFD_CLOEXEC, 0)));
    service.onClosed = [] { std::_Exit(0); };
    Decoder decoder(loop);
    service.onMessage = [&decoder](Message message) { decoder.handle(message); };
    say({{"is", "warm"}});
    loop.run();
    std::_Exit(0);
}

} // namespace

} // namespace zm::decoder

int main(int argc, char** argv) {
    if (zm::answerAbout({argv + 1, argv + argc}, "zmdecode", zm::decoder::Usage)) {
        return 0;
    }
    if (!zm::decoder::startedByTheService()) {
        std::fputs("zmdecode: started by zmdiscd only\n", stderr);
        return 2;
    }
    zm::decoder::run();
}
