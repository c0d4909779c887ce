#pragma once

#include "services/disc/image/CdText.h"
#include "services/disc/library/Scanner.h"
#include "services/disc/medium/OpenMedium.h"
#include "tests/disc/CdImage.h"
#include "tests/disc/RecordedSound.h"
#include "tests/disc/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace zm::test {

using namespace zm::disc::image;
using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;

inline constexpr size_t WavHeaderBytes = 44;
using Names = std::vector<std::string>;

inline std::string swapped(std::string bytes) {
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::swap(bytes[i], bytes[i + 1]);
    }
    return bytes;
}

inline std::string big(uint64_t number, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text += static_cast<char>(number >> (8 * i));
    }
    return text;
}

// A pack of CD-TEXT: a text of at most 12 bytes, with its ends, from `track` on.
inline std::string pack(unsigned char type, int track, int sequence, std::string text) {
    text.resize(12, '\0');
    std::string bytes{static_cast<char>(type), static_cast<char>(track), static_cast<char>(sequence), '\0'};
    bytes += text;
    return bytes + big(cdTextSum(bytes), 2);
}

class DiscImages : public testing::Test {
protected:
    std::shared_ptr<Medium> open(const std::string& name) {
        auto medium = openMedium(m_folder / name);
        EXPECT_TRUE(medium) << (medium ? "" : medium.error());
        return medium ? *medium : nullptr;
    }
    std::string errorOf(const std::string& name) {
        const auto medium = openMedium(m_folder / name);
        return medium ? "" : medium.error().substr((m_folder / name).size() + 2);
    }
    static Contents contentsOf(Medium& medium) {
        ScanProgress progress;
        auto contents = scan(medium, progress);
        EXPECT_TRUE(contents);
        return contents ? *contents : Contents{};
    }
    static Names names(const Contents& contents, MediaKind kind = MediaKind::Music) {
        Names found;
        for (const auto& item : contents.of(kind)) {
            found.push_back(item.name);
        }
        return found;
    }
    // The sound of a track, read in pieces of an odd size.
    static std::string soundOf(Medium& medium, const std::string& track) {
        auto reader = medium.open(track);
        EXPECT_TRUE(reader) << (reader ? "" : reader.error());
        std::string bytes;
        std::string piece(10007, '\0');
        while (reader) {
            const auto count = (*reader)->readAt(bytes.size(), piece);
            EXPECT_TRUE(count);
            if (!count || *count == 0) {
                break;
            }
            bytes.append(piece, 0, *count);
        }
        return bytes.substr(std::min(WavHeaderBytes, bytes.size()));
    }
    void write(const std::string& name, const std::string& bytes) { writeFile(m_folder / name, bytes); }

    TempFolder m_folder;
    const std::string m_one = cdSound(1, 440);
    const std::string m_two = cdSound(1, 550);
    const std::string m_three = cdSound(1, 660);
};

inline constexpr const char* twoTracks =
    "TRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 01 00:01:00\n";

// The sectors with 96 bytes behind each.
inline std::string withSubChannels(const std::string& sectors) {
    std::string all;
    for (size_t at = 0; at < sectors.size(); at += SectorBytes) {
        all += sectors.substr(at, SectorBytes) + std::string(96, 'x');
    }
    return all;
}

} // namespace zm::test
