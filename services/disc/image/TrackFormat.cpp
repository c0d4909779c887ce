#include "services/disc/image/TrackFormat.h"

#include <algorithm>
#include <iterator>

namespace zm::disc::image {

namespace {

using Content = TrackFormat::Content;

constexpr TrackFormat formats[] = {
    {"AUDIO", Content::Audio, 2352, 0},       {"MODE1/2048", Content::Mode1, 2048, 0},
    {"MODE1/2352", Content::Mode1, 2352, 16}, {"MODE2/2048", Content::Mode2, 2048, 0},
    {"MODE2/2324", Content::Mode2, 2324, 0},  {"MODE2/2336", Content::Mode2, 2336, 8},
    {"MODE2/2352", Content::Mode2, 2352, 24}, {"CDI/2336", Content::Mode2, 2336, 8},
    {"CDI/2352", Content::Mode2, 2352, 24},   {"CDG", Content::Audio, 2448, 0},
    {"MODE1/2448", Content::Mode1, 2448, 16}, {"MODE2/2448", Content::Mode2, 2448, 24},
};

} // namespace

const TrackFormat* trackFormat(std::string_view name) {
    const auto* found = std::find_if(std::begin(formats), std::end(formats),
                                     [name](const TrackFormat& each) { return each.name == name; });
    return found == std::end(formats) ? nullptr : found;
}

} // namespace zm::disc::image
