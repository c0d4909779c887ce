#include "services/disc/engine/SpareDecoder.h"

#include "services/disc/log/Log.h"

#include <chrono>
#include <utility>

namespace zm::disc::engine {

namespace {

constexpr const char* Program = "zmdecode";

// The first item of a disc, or what goes on after a decoder's death, has the processor to itself that long.
constexpr std::chrono::milliseconds CalmTime{500};

} // namespace

void SpareDecoder::prepare() {
    if (!m_process) {
        m_timer = afterDelay(m_loop, CalmTime, [this] { launch(); });
    }
}

void SpareDecoder::launch() {
    auto process = DecoderProcess::launch(m_loop, Program);
    if (!process) {
        logWarning("spare decoder: %s\n", process.error().c_str());
        return;
    }
    m_process = std::move(*process);
    m_process->onMessage = [this](const wire::Json& message) {
        if (wire::stringOf(message, "is") == "warm") {
            m_warm = true;
            logInfo("a spare decoder is ready\n");
        }
    };
    // One that does not even become warm is not tried again before it is needed.
    m_process->onEnd = [this] {
        m_process.reset();
        if (std::exchange(m_warm, false)) {
            prepare();
        }
    };
}

Result<std::unique_ptr<DecoderProcess>> SpareDecoder::take() {
    m_timer.reset();
    m_warm = false;
    return m_process ? std::move(m_process) : DecoderProcess::launch(m_loop, Program);
}

} // namespace zm::disc::engine
