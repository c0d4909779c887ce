#include "services/disc/player/LateTexts.h"

#include <array>

namespace zm::disc::player {

namespace {

using std::chrono::milliseconds;

// From one publication to the next. The first is well above what the application needs for a number, the last
// one finds it ready on any machine.
constexpr std::array Pauses = {milliseconds(60), milliseconds(60), milliseconds(80), milliseconds(200),
                               milliseconds(600)};

} // namespace

LateTexts::LateTexts(EventLoop& loop, model::DiscState& state) : m_loop(loop), m_state(state) {}

void LateTexts::publish(const model::TrackTexts& texts) {
    m_texts = texts;
    m_state.texts(texts);
    m_step = 0;
    wait();
}

void LateTexts::publishNow(const model::TrackTexts& texts) {
    m_timer.reset();
    m_state.texts(texts);
}

void LateTexts::wait() {
    m_timer = afterDelay(m_loop, Pauses[m_step], [this] {
        m_state.texts(m_texts);
        if (++m_step < Pauses.size()) {
            wait();
        } else {
            m_timer.reset();
        }
    });
}

} // namespace zm::disc::player
