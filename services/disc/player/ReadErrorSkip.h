#pragma once

#include "base/EventLoop.h"
#include "services/disc/model/DiscState.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zm::disc::player {

/**
 * The moment between an unreadable item and the next one. The application answers a read error with a
 * "PlayTrack" of its own; both sides moving on would skip two items. So the error is announced while the
 * failed item is still the current one, and the next one begins when that answer has come or has not come in
 * time. The answer itself is swallowed, also when it comes late. On the service's loop.
 */
class ReadErrorSkip {
public:
    /** What the application counts in its answer: the files of a folder or the tracks of a disc. */
    enum class Counting { InFolder, OnDisc };

    ReadErrorSkip(EventLoop& loop, model::DiscState& state) : m_loop(loop), m_state(state) {}

    /** Announces that the item described by `failed` cannot be read; later calls `moveOn`. */
    void begin(const model::TrackInfo& failed, Counting counting, std::function<void()> moveOn);
    /** Whether "PlayTrack(first, second)" is the application's answer to the error; then it is dealt with. */
    bool swallows(int first, int second);
    /** The user has chosen something else: `moveOn` is forgotten. */
    void cancel();

private:
    void finish();
    EventLoop& m_loop;
    model::DiscState& m_state;
    SourceHandle m_timer;
    std::function<void()> m_moveOn;
    std::optional<std::pair<int, int>> m_answer;
    std::chrono::steady_clock::time_point m_answerEnd;
};

} // namespace zm::disc::player
