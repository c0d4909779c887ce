#pragma once

#include "services/disc/medium/TrackDisc.h"
#include "services/disc/medium/VcdTables.h"

namespace zm::disc::medium {

/** A VCD or SVCD: its films, and, where the disc has them, its segments and its own playback control. */
class VcdDisc : public TrackDisc {
public:
    /** The VCD that is the image; null if no track behind the first holds a film. Reads its tables. */
    static std::shared_ptr<Medium> open(const DiscImage& image, const std::string& form);

    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;
    std::shared_ptr<const model::Contents> tracks() const override { return m_contents; }

private:
    class Items;
    VcdDisc(DiscImage films, const ImageTrack& fileSystem, const std::string& form);

    ImageTrack m_fileSystem; ///< the first track
    std::map<std::string, VcdSegment> m_segments;
    std::shared_ptr<const model::Contents> m_contents;
};

} // namespace zm::disc::medium
