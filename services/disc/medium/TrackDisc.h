#pragma once

#include "services/disc/medium/DiscImage.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/**
 * The image of an audio CD or a VCD. Its tracks, counted from 1 in their order, appear as the files of a disc
 * without folders: sound as WAV files, films as MPEG streams, encoded sound as it is.
 */
class TrackDisc : public Medium {
public:
    /** `image`: the tracks to be played, all of one kind; `type`: AudioCd or Vcd; `form`: how it was recognised. A hidden
     * track comes last, so that the others keep their numbers. */
    TrackDisc(DiscImage image, model::MediaType type, const std::string& form);
    std::string label() const override { return m_image.label; }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;
    std::optional<SoundCut> cut(const std::string& file) const override;
    std::shared_ptr<const model::Contents> tracks() const override { return m_contents; }

private:
    model::MediaKind kind() const;
    /** The track that is listed as `file`; null without one. */
    const ImageTrack* find(const std::string& file) const;

    DiscImage m_image;
    model::MediaType m_type;
    std::shared_ptr<const model::Contents> m_contents;
};

} // namespace zm::disc::medium
