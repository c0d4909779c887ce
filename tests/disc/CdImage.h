#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** A track of an audio CD that a test makes: a tone. */
struct CdTrack {
    int seconds = 0;
    int frequency = 440; ///< whole waves a second
    std::string title{};
    std::string performer{};
};

inline constexpr int SectorBytes = 2352;

/** `seconds` of a tone as it stands on a CD. */
std::string cdSound(int seconds, int frequency);

/** A time of `sectors` as in a cue sheet. */
std::string cdTime(int sectors);

/** Writes `folder`/disc.bin and `folder`/disc.cue with these tracks, one behind the other; gives the cue
 * sheet's path. */
std::string writeAudioCd(const std::string& folder, const std::vector<CdTrack>& tracks);

/** Bytes of a film in a sector. */
inline constexpr size_t FilmBytes = 2324;

/** `bytes` in sectors, `each` in one, behind a header of that size. */
std::string dataSectors(const std::string& bytes, size_t each, size_t header);

/** The image of a disc with data tracks. */
struct SectorImage {
    std::string bin;
    std::string cue = "FILE \"disc.bin\" BINARY\n";
    int tracks = 0;

    void add(const std::string& mode, const std::string& sectors);
    /** The empty first track of a VCD. */
    void addFileSystem();
    /** A film behind some empty sectors. */
    void addFilm(const std::string& bytes);
    /** Writes `folder`/disc.bin and `folder`/disc.cue; gives the cue sheet's path. */
    std::string write(const std::string& folder) const;
};

} // namespace zm::test
