#include "services/bench/screen/VideoLock.h"

#include "services/bench/screen/Compositor.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace zm::bench::screen {

namespace {

constexpr int Driving = 0;

bool isShowAnyway(const Json& released) {
    return released == Json{{"view", "main"}, {"window", 10}, {"control", 2103}};
}

} // namespace

void VideoLock::parkingReads(std::optional<int> value) {
    const bool drove = std::exchange(m_driving, value.value_or(Driving) == Driving);
    if (m_driving != drove) {
        ++m_occasion;
    }
    // The drive ends with everything but the plain word that it goes on: where the device cannot be read the
    // car may have stopped and started again.
    if (value != Driving) {
        m_allowed = false;
        ++m_occasion;
    }
    apply();
}

void VideoLock::applicationSeen(bool seen) {
    m_seen = seen;
    ++m_occasion;
}

void VideoLock::fingerLifted(const Json& answer, unsigned occasion) {
    if (m_driving && m_seen && occasion == m_occasion && answer.is_object() &&
        isShowAnyway(answer.value("released", Json()))) {
        m_allowed = true;
        apply();
    }
}

void VideoLock::apply() {
    m_compositor.lockVideo(m_driving && !m_allowed);
}

} // namespace zm::bench::screen
