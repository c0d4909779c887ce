#pragma once

#include "services/disc/medium/IsoMedium.h"
#include "services/disc/medium/UdfVolume.h"

#include <mutex>

namespace zm::disc::medium {

/** A disc image with a UDF file system, read without mounting it. */
class UdfMedium : public Medium {
public:
    /** `volume` is what stands in the image that `opener` opens; `image` names it in error texts, which say what is not
     * read. */
    static Result<std::shared_ptr<Medium>>
    openImage(const std::string& image, const IsoMedium::Opener& opener, const UdfVolume& volume);

    std::string label() const override { return m_label; }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;

private:
    struct Volume;
    class Folder;
    class FileReader;
    UdfMedium(std::string image, IsoMedium::Opener opener, std::shared_ptr<Volume> volume);
    Result<Folder> openFolder(const std::string& path) const;

    std::string m_image;
    IsoMedium::Opener m_opener;
    std::shared_ptr<Volume> m_volume;
    std::string m_label;
    std::mutex m_mutex; ///< of the library's view of the folders
};

} // namespace zm::disc::medium
