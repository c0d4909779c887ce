#include "services/disc/dvd/RepeatModes.h"

#include <algorithm>
#include <iterator>

namespace zm::disc::dvd {

namespace {

constexpr RepeatMode repeatModes[] = {
    {1, 2, model::Tip::RepeatOff, Repeat::Nothing},
    {RepeatAllMode, 8, model::Tip::RepeatAll, Repeat::Nothing},
    {8, 4, model::Tip::RepeatOne, Repeat::Chapter},
    {4, 1, model::Tip::RepeatFolder, Repeat::Title},
};

} // namespace

const RepeatMode& repeatMode(int mode) {
    const auto* row = std::find_if(std::begin(repeatModes), std::end(repeatModes),
                                   [=](const RepeatMode& each) { return each.mode == mode; });
    return row == std::end(repeatModes) ? repeatModes[0] : *row;
}

} // namespace zm::disc::dvd
