#pragma once

#include <array>
#include <cstddef>

namespace zm::disc::model {

/** What a file of a data disc is; the value is the catalogue's "ftype". */
enum class MediaKind { Music = 1, Video = 2, Photo = 3 };

inline constexpr size_t KindCount = 3;
constexpr size_t kindIndex(MediaKind kind) {
    return static_cast<size_t>(kind) - 1;
}

/** Media types as the device object's "mediatype" publishes them. */
enum class MediaType { Dvd = 0, AudioCd = 1, Music = 2, Video = 3, Photo = 4, Vcd = 5, Unknown = 255 };

/** The numbers of one kind in the places where the application meets it. */
struct KindNumbers {
    MediaKind kind;
    MediaType mediaType; ///< also the number in "GotoSubList" and "ChangeFormat"
    int mixedBit;        ///< bit in "mixedtype"
    int trackKind;       ///< second parameter of a packed "PlayTrack"
    const char* name;
};

/** In the order of preference for playing after insertion. */
inline constexpr std::array<KindNumbers, KindCount> kinds{{
    {MediaKind::Music, MediaType::Music, 2, 1, "music"},
    {MediaKind::Video, MediaType::Video, 4, 3, "video"},
    {MediaKind::Photo, MediaType::Photo, 8, 2, "photos"},
}};

constexpr const KindNumbers& numbersOf(MediaKind kind) {
    return kinds[kindIndex(kind)];
}

/** The kind whose media type is `number`; null if it is none of a data disc. */
constexpr const KindNumbers* kindOfMediaType(int number) {
    for (const auto& row : kinds) {
        if (static_cast<int>(row.mediaType) == number) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace zm::disc::model
