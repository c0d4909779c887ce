#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace zm::disc::player {

/** Values of "repeat" in "playstate". */
enum class Repeat { Off = 1, All = 2, Folder = 4, One = 8 };

/** Values of "shuffle" in "playstate". */
enum class Shuffle { Off = 0, All = 1, Folder = 2 };

bool isRepeat(int number);
bool isShuffle(int number);

/** The mode after `mode` when the user steps: all, one, folder, off. Without folders "folder" is left out. */
Repeat nextRepeat(Repeat mode, bool hasFolders);
/** The mode after `mode` when the user steps: off, all, folder. Without folders "folder" is left out. */
Shuffle nextShuffle(Shuffle mode, bool hasFolders);

/**
 * Which item follows which. Items are numbered from 0 in the order of the disc; each lies in a folder. With
 * "repeat folder" or "shuffle folder" the round goes through the current item's folder, else through all
 * items. A shuffled round plays each item once, beginning with the one that was current when it began.
 */
class PlayOrder {
public:
    /** `folders[i]` is the folder of item i; items of a folder stand together. At least one item. */
    PlayOrder(std::vector<int> folders, uint32_t seed);

    void setModes(Repeat repeat, Shuffle shuffle);
    size_t current() const { return m_current; }
    /** Makes `item` the current one, chosen by the user: a shuffled round begins anew with it. */
    void jumpTo(size_t item);

    /** The user's next and previous key: goes round at both ends, whatever the repeat mode. */
    size_t next();
    size_t previous();
    /** The current item has ended: the item to play, or nothing when the round is over ("repeat off"); then
     * the round's first item has become current. */
    std::optional<size_t> advance();
    /** Items in the present round. */
    size_t roundSize() const { return m_round.size(); }

private:
    void beginRound();
    size_t take(size_t place);

    std::vector<int> m_folders;
    Repeat m_repeat = Repeat::All;
    Shuffle m_shuffle = Shuffle::Off;
    std::mt19937 m_random;
    size_t m_current = 0;
    std::vector<size_t> m_round; ///< the items of a round in the order in which they play
    size_t m_place = 0;          ///< of the current item in the round
};

} // namespace zm::disc::player
