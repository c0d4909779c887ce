#include "services/disc/player/PlayOrder.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace zm::disc::player {

namespace {

constexpr std::array repeatCycle{Repeat::All, Repeat::One, Repeat::Folder, Repeat::Off};
constexpr std::array shuffleCycle{Shuffle::Off, Shuffle::All, Shuffle::Folder};

template <class Mode, size_t Count>
bool isOneOf(const std::array<Mode, Count>& modes, int number) {
    return std::find(modes.begin(), modes.end(), static_cast<Mode>(number)) != modes.end();
}

template <class Mode, size_t Count>
Mode stepped(const std::array<Mode, Count>& cycle, Mode mode, bool hasFolders) {
    auto at = static_cast<size_t>(std::find(cycle.begin(), cycle.end(), mode) - cycle.begin());
    do {
        at = (at + 1) % Count;
    } while (cycle[at] == Mode::Folder && !hasFolders);
    return cycle[at];
}

} // namespace

bool isRepeat(int number) {
    return isOneOf(repeatCycle, number);
}

bool isShuffle(int number) {
    return isOneOf(shuffleCycle, number);
}

Repeat nextRepeat(Repeat mode, bool hasFolders) {
    return stepped(repeatCycle, mode, hasFolders);
}

Shuffle nextShuffle(Shuffle mode, bool hasFolders) {
    return stepped(shuffleCycle, mode, hasFolders);
}

PlayOrder::PlayOrder(std::vector<int> folders, uint32_t seed)
    : m_folders(std::move(folders)), m_random(seed) {
    beginRound();
}

void PlayOrder::setModes(Repeat repeat, Shuffle shuffle) {
    m_repeat = repeat;
    m_shuffle = shuffle;
    beginRound();
}

void PlayOrder::beginRound() {
    size_t first = 0;
    size_t last = m_folders.size();
    if (m_repeat == Repeat::Folder || m_shuffle == Shuffle::Folder) {
        const int folder = m_folders[m_current];
        first =
            static_cast<size_t>(std::find(m_folders.begin(), m_folders.end(), folder) - m_folders.begin());
        last = first;
        while (last < m_folders.size() && m_folders[last] == folder) {
            ++last;
        }
    }
    m_round.resize(last - first);
    std::iota(m_round.begin(), m_round.end(), first);
    m_place = m_current - first;
    if (m_shuffle != Shuffle::Off) {
        std::swap(m_round.front(), m_round[m_place]);
        std::shuffle(m_round.begin() + 1, m_round.end(), m_random);
        m_place = 0;
    }
}

void PlayOrder::jumpTo(size_t item) {
    m_current = item;
    beginRound();
}

size_t PlayOrder::take(size_t place) {
    m_place = place;
    m_current = m_round[place];
    return m_current;
}

size_t PlayOrder::next() {
    if (m_place + 1 < m_round.size()) {
        return take(m_place + 1);
    }
    if (m_shuffle == Shuffle::Off) {
        return take(0);
    }
    // A new shuffled round must not begin with the item that has just been played.
    beginRound();
    return take(m_round.size() > 1 ? 1 : 0);
}

size_t PlayOrder::previous() {
    return take(m_place > 0 ? m_place - 1 : m_round.size() - 1);
}

std::optional<size_t> PlayOrder::advance() {
    if (m_repeat == Repeat::One) {
        return m_current;
    }
    if (m_repeat == Repeat::Off && m_place + 1 == m_round.size()) {
        take(0);
        return std::nullopt;
    }
    return next();
}

} // namespace zm::disc::player
