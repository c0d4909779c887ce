#pragma once

#include "services/disc/CueImage.h"
#include "services/disc/Medium.h"

namespace zm::disc {

/**
 * The image of an audio CD. Its audio tracks, counted from 1 in their order, appear as the WAV files of a
 * disc without folders; data tracks are left out.
 */
class AudioCd : public Medium {
public:
    explicit AudioCd(CueImage image);
    std::string label() const override { return m_image.label; }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;
    std::shared_ptr<const Contents> tracks() const override { return m_contents; }

private:
    CueImage m_image; ///< its audio tracks
    std::shared_ptr<const Contents> m_contents;
};

} // namespace zm::disc
