#pragma once

#include "services/disc/medium/CueImage.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc {

/**
 * The image of an audio CD or a VCD. Its tracks, counted from 1 in their order, appear as the files of a disc
 * without folders: sound as WAV files, films as MPEG streams.
 */
class TrackDisc : public Medium {
public:
    /** `image`: the tracks to be played, all of one kind; `type`: AudioCd or Vcd. */
    TrackDisc(CueImage image, MediaType type);
    std::string label() const override { return m_image.label; }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;
    std::shared_ptr<const Contents> tracks() const override { return m_contents; }

private:
    MediaKind kind() const;

    CueImage m_image;
    MediaType m_type;
    std::shared_ptr<const Contents> m_contents;
};

} // namespace zm::disc
