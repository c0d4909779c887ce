#include "services/disc/image/CdText.h"

#include <algorithm>
#include <map>

namespace zm::disc::image {

namespace {

constexpr unsigned char TitleType = 0x80;
constexpr unsigned char PerformerType = 0x81;
constexpr unsigned char FirstType = 0x80;
constexpr unsigned char LastType = 0x8F;
constexpr unsigned char SizesType = 0x8F;
constexpr unsigned char Latin1 = 0x00;

constexpr size_t TextPlace = 4;
constexpr size_t TextBytes = 12;
constexpr size_t DriveHeaderBytes = 4;
constexpr uint16_t SumPolynomial = 0x1021;

unsigned char byteAt(std::string_view bytes, size_t place) {
    return static_cast<unsigned char>(bytes[place]);
}

/** The texts of one type, of the disc (0) and its tracks. */
using Texts = std::map<int, std::string>;

/** What one type's packs hold, one behind the other. */
struct Run {
    int firstTrack = 0;
    bool twoBytes = false; ///< characters
    std::string bytes;
};

// Each text ends with a zero; a tab stands for the text before.
Texts split(const Run& run) {
    Texts texts;
    const size_t step = run.twoBytes ? 2 : 1;
    std::string text;
    int track = run.firstTrack;
    for (size_t at = 0; at + step <= run.bytes.size() && track <= MaxTrackNumber; at += step) {
        const auto character = std::string_view(run.bytes).substr(at, step);
        if (character.find_first_not_of('\0') != std::string_view::npos) {
            text += character;
            continue;
        }
        const bool same = !text.empty() && text.find_first_not_of('\t') == std::string::npos;
        texts[track] = same ? texts[track - 1] : text;
        text.clear();
        ++track;
    }
    return texts;
}

std::string fromLatin1(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | code >> 6);
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}

// Without what a drive and some programs put around the packs.
std::string_view packsOf(std::string_view bytes) {
    if (bytes.size() % CdTextPackBytes == DriveHeaderBytes) {
        bytes.remove_prefix(DriveHeaderBytes);
    } else if (bytes.size() % CdTextPackBytes == 1) {
        bytes.remove_suffix(1);
    }
    return bytes;
}

} // namespace

uint16_t cdTextSum(std::string_view pack) {
    uint16_t sum = 0;
    for (const char c : pack.substr(0, CdTextBareBytes)) {
        sum = static_cast<uint16_t>(sum ^ static_cast<unsigned char>(c) << 8);
        for (int bit = 0; bit < 8; ++bit) {
            sum = static_cast<uint16_t>(sum & 0x8000 ? sum << 1 ^ SumPolynomial : sum << 1);
        }
    }
    return static_cast<uint16_t>(~sum);
}

Status addCdText(DiscSheet& sheet, std::string_view bytes) {
    bytes = packsOf(bytes);
    if (bytes.empty() || bytes.size() % CdTextPackBytes != 0 || bytes.size() > MaxSheetBytes) {
        return Error{"no packs of 18 bytes"};
    }
    std::map<unsigned char, Run> runs;
    unsigned char charset = Latin1;
    for (size_t place = 0; place < bytes.size(); place += CdTextPackBytes) {
        const auto pack = bytes.substr(place, CdTextPackBytes);
        const auto type = byteAt(pack, 0);
        const std::string name = "pack " + std::to_string(place / CdTextPackBytes + 1);
        if (type < FirstType || type > LastType) {
            return Error{name + ": no kind of text"};
        }
        if (cdTextSum(pack) != (byteAt(pack, 16) << 8 | byteAt(pack, 17))) {
            return Error{name + ": its check sum is wrong"};
        }
        const int language = byteAt(pack, 3) >> 4 & 0x7;
        if (language != 0) {
            continue;
        }
        if (type == SizesType && byteAt(pack, 1) == 0) {
            charset = byteAt(pack, TextPlace);
        }
        const bool twoBytes = (byteAt(pack, 3) & 0x80) != 0;
        auto& run = runs.try_emplace(type, Run{byteAt(pack, 1), twoBytes, {}}).first->second;
        run.bytes += pack.substr(TextPlace, TextBytes);
    }
    const auto take = [&](unsigned char type, int track, std::string& text) {
        const auto run = runs.find(type);
        if (run == runs.end() || !text.empty()) {
            return;
        }
        const auto found = split(run->second)[track];
        text = charset == Latin1 ? fromLatin1(found) : found;
    };
    take(TitleType, 0, sheet.title);
    take(PerformerType, 0, sheet.performer);
    for (auto& track : sheet.tracks) {
        take(TitleType, track.number, track.title);
        take(PerformerType, track.number, track.performer);
    }
    repairTexts(sheet);
    return ok();
}

} // namespace zm::disc::image
