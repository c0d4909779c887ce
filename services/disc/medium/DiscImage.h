#pragma once

#include "services/disc/image/DiscSheet.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** A run of a track's bytes in an image. */
struct TrackPiece {
    enum class Form {
        Silence,
        Plain,
        Swapped,
        Encoded,
        Drive ///< sound that a drive is asked for by sectors; `file` is the drive
    } form = Form::Plain;
    std::string file; ///< path; empty for silence
    uint64_t offset = 0;
    uint64_t size = 0;
};

/** A track of a disc image. */
struct ImageTrack {
    image::TrackFormat format{};
    std::string title; ///< UTF-8, empty when unknown
    std::string performer;
    std::string isrc;
    std::vector<TrackPiece> pieces; ///< at least one
    std::string extension;          ///< of a track in an encoded file, with the dot; else empty
    int seconds = 0;                ///< of such a track, 0 when unknown
    std::optional<SoundCut> cut;    ///< the part of that file that it is; nothing: all of it

    /** Bytes of all of it; 0 if the files end before the track. */
    uint64_t size() const;
    bool isSound() const { return format.content == image::TrackFormat::Content::Audio; }
};

/** The image of a disc that some description names the tracks of. */
struct DiscImage {
    std::string path;  ///< of the description
    std::string title; ///< of the disc; UTF-8, empty when unknown
    std::string performer;
    std::string label; ///< the title, else the description's name
    std::string catalogNumber;
    std::vector<ImageTrack> tracks;
    std::optional<ImageTrack> hidden; ///< sound before the first track
};

/**
 * Reads a cue sheet, a TOC file, the description of an image in three files, or an image with its description at its
 * end, and looks up the files: they lie beside it or in folders below. The error names the file, the place in it and
 * what is wrong.
 */
Result<DiscImage> readCueImage(const std::string& path);
Result<DiscImage> readTocImage(const std::string& path);
Result<DiscImage> readCcdImage(const std::string& path);
Result<DiscImage> readNrgImage(const std::string& path);

/** Whether the file at `path` ends as an image with its description at its end does. */
bool isNrgImage(const std::string& path);

/** Opens the bytes of a track, all pieces one behind the other; `name` stands in error texts. */
Result<std::unique_ptr<ByteReader>> openTrack(const ImageTrack& track, const std::string& name);

} // namespace zm::disc::medium
