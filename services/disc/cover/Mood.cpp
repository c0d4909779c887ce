#include "services/disc/cover/Mood.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zm::disc::cover {

std::string moodOf(const Bitmap& picture) {
    std::array<uint64_t, 3> sum{};
    uint64_t weights = 0;
    for (size_t at = 0; at + 3 < picture.pixels.size(); at += 4) {
        const uint8_t* pixel = &picture.pixels[at];
        const auto [least, most] = std::minmax({pixel[0], pixel[1], pixel[2]});
        const uint64_t weight = 1 + uint64_t{most} - least;
        for (size_t channel = 0; channel < sum.size(); ++channel) {
            sum[channel] += weight * pixel[channel];
        }
        weights += weight;
    }
    std::array<char, 8> text{};
    weights = std::max<uint64_t>(weights, 1);
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", static_cast<unsigned>(sum[0] / weights) & 255,
                  static_cast<unsigned>(sum[1] / weights) & 255,
                  static_cast<unsigned>(sum[2] / weights) & 255);
    return text.data();
}

} // namespace zm::disc::cover
