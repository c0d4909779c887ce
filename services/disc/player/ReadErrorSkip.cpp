#include "services/disc/player/ReadErrorSkip.h"

#include <utility>

namespace zm::disc::player {

namespace {

constexpr std::chrono::milliseconds AnswerTime{300};
constexpr std::chrono::seconds LateAnswerTime{3};

using Counting = ReadErrorSkip::Counting;
using Answer = std::optional<std::pair<int, int>>;

// The application goes to the next item. At a folder's end it sends item 1 with the item's number plus one in
// the place of the folder, at a disc's end track 1.
Answer expectedAnswer(const model::TrackInfo& failed, Counting counting) {
    const bool onDisc = counting == Counting::OnDisc;
    const int number = onDisc ? failed.onDisc : failed.inFolder;
    const int count = onDisc ? failed.filesOnDisc : failed.filesInFolder;
    const int following = number + 1;
    if (number > count) {
        return std::nullopt;
    }
    if (onDisc) {
        return std::pair{number < count ? following : 1, 0};
    }
    return number < count ? std::pair{following, failed.folder} : std::pair{1, following};
}

} // namespace

void ReadErrorSkip::begin(const model::TrackInfo& failed, Counting counting, std::function<void()> moveOn) {
    m_answer = expectedAnswer(failed, counting);
    m_answerEnd = std::chrono::steady_clock::now() + LateAnswerTime;
    m_moveOn = std::move(moveOn);
    m_state.error(model::DeviceError::Read);
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
    m_state.error(model::DeviceError::None);
    std::exchange(m_moveOn, nullptr)();
}

void ReadErrorSkip::cancel() {
    m_timer.reset();
    if (std::exchange(m_moveOn, nullptr)) {
        m_state.error(model::DeviceError::None);
    }
}

} // namespace zm::disc::player
