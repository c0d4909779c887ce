#include "services/disc/medium/UdfNames.h"

#include <cstdint>
#include <optional>

namespace zm::disc::medium {

namespace {

constexpr uint32_t FirstHigh = 0xD800;
constexpr uint32_t FirstLow = 0xDC00;
constexpr uint32_t AfterLow = 0xE000;
constexpr uint32_t FirstRare = 0x10000;
constexpr size_t HalfBytes = 3;
constexpr size_t RareBytes = 4;

uint32_t bits(const std::string& text, size_t at) {
    return static_cast<unsigned char>(text[at]) & 0x3F;
}

// A half at that place: its three bytes as a number.
std::optional<uint32_t> halfAt(const std::string& text, size_t at) {
    if (at + HalfBytes > text.size() || text[at] != '\xED') {
        return std::nullopt;
    }
    return 0xD000 | bits(text, at + 1) << 6 | bits(text, at + 2);
}

void addHalf(std::string& text, uint32_t half) {
    text += static_cast<char>(0xE0 | half >> 12);
    text += static_cast<char>(0x80 | (half >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (half & 0x3F));
}

} // namespace

std::string plainUtf8(const std::string& rare) {
    std::string result;
    for (size_t at = 0; at < rare.size(); ++at) {
        const auto high = halfAt(rare, at);
        const auto low = high ? halfAt(rare, at + HalfBytes) : std::nullopt;
        if (!low || *high < FirstHigh || *high >= FirstLow || *low < FirstLow || *low >= AfterLow) {
            result += rare[at];
            continue;
        }
        const uint32_t code = FirstRare + ((*high - FirstHigh) << 10) + (*low - FirstLow);
        result += static_cast<char>(0xF0 | code >> 18);
        result += static_cast<char>(0x80 | (code >> 12 & 0x3F));
        result += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        result += static_cast<char>(0x80 | (code & 0x3F));
        at += 2 * HalfBytes - 1;
    }
    return result;
}

std::string rareUtf8(const std::string& plain) {
    std::string result;
    for (size_t at = 0; at < plain.size(); ++at) {
        const bool rare = (plain[at] & '\xF8') == '\xF0' && at + RareBytes <= plain.size();
        if (!rare) {
            result += plain[at];
            continue;
        }
        const uint32_t code = (static_cast<unsigned char>(plain[at]) & 0x07u) << 18 |
                              bits(plain, at + 1) << 12 | bits(plain, at + 2) << 6 | bits(plain, at + 3);
        const uint32_t rest = code - FirstRare;
        addHalf(result, FirstHigh + (rest >> 10 & 0x3FF));
        addHalf(result, FirstLow + (rest & 0x3FF));
        at += RareBytes - 1;
    }
    return result;
}

} // namespace zm::disc::medium
