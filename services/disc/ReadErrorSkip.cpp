#include "services/disc/ReadErrorSkip.h"

#include <utility>

namespace zm::disc {

namespace {

constexpr std::chrono::milliseconds AnswerTime{300};
constexpr std::chrono::seconds LateAnswerTime{3};

// The application goes to the next item of the folder. At its end it sends item 1 with the item's number plus
// one in the place of the folder.
std::optional<std::pair<int, int>> expectedAnswer(const TrackInfo& failed) {
    if (failed.inFolder > failed.filesInFolder) {
        return std::nullopt;
    }
    const int following = failed.inFolder + 1;
    return failed.inFolder < failed.filesInFolder ? std::pair{following, failed.folder}
                                                  : std::pair{1, following};
}

} // namespace

void ReadErrorSkip::begin(const TrackInfo& failed, std::function<void()> moveOn) {
    m_answer = expectedAnswer(failed);
    m_answerEnd = std::chrono::steady_clock::now() + LateAnswerTime;
    m_moveOn = std::move(moveOn);
    m_state.error(DeviceError::Read);
    m_timer = afterDelay(m_loop, AnswerTime, [this] { finish(); });
}

bool ReadErrorSkip::swallows(int first, int second) {
    const bool late = std::chrono::steady_clock::now() >= m_answerEnd;
    if (late || m_answer != std::pair{first, second}) {
        return false;
    }
    m_answer.reset();
    if (m_moveOn) {
        finish();
    }
    return true;
}

void ReadErrorSkip::finish() {
    m_timer.reset();
    m_state.error(DeviceError::None);
    std::exchange(m_moveOn, nullptr)();
}

void ReadErrorSkip::cancel() {
    m_timer.reset();
    if (std::exchange(m_moveOn, nullptr)) {
        m_state.error(DeviceError::None);
    }
}

} // namespace zm::disc
