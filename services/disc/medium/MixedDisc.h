#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/**
 * A disc with both tracks of sound and files. The tracks are the files of its root; the files stand in one folder
 * beside them, which has the name of their file system.
 */
class MixedDisc : public Medium {
public:
    MixedDisc(std::shared_ptr<Medium> tracks, std::shared_ptr<Medium> files);
    std::string label() const override { return m_tracks->label(); }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;
    std::shared_ptr<const model::Contents> tracks() const override { return m_tracks->tracks(); }
    std::optional<SoundCut> cut(const std::string& file) const override;
    bool hasFilesToo() const override { return true; }

private:
    std::shared_ptr<Medium> m_tracks;
    std::shared_ptr<Medium> m_files;
    std::string m_folder; ///< of the files
};

} // namespace zm::disc::medium
