#pragma once

#include "base/Mutex.h"
#include "services/disc/medium/IsoMedium.h"
#include "services/disc/medium/UdfVolume.h"

#include <map>

namespace zm::disc::medium {

/** A disc image with a UDF file system, read without mounting it. */
class UdfMedium : public Medium {
public:
    /** `volume` is what stands in the image that `opener` opens; `image` names it in error texts, which say what is not
     * read. */
    static Result<std::shared_ptr<Medium>>
    openImage(const std::string& image, const IsoMedium::Opener& opener, const UdfVolume& volume);

    ~UdfMedium() override;
    std::string label() const override { return m_label; }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;

private:
    struct Volume;
    class Folder;
    class File;
    class FileReader;
    UdfMedium(std::string image, IsoMedium::Opener opener, std::shared_ptr<Volume> volume);
    Result<Folder> openFolder(const std::string& path) const ZM_REQUIRES(m_mutex);
    File find(const std::string& path) ZM_REQUIRES(m_mutex);

    std::string m_image;
    IsoMedium::Opener m_opener;
    std::shared_ptr<Volume> m_volume;
    std::string m_label;
    Mutex m_mutex;                                               ///< of the library's view of the folders
    std::map<std::string, File> m_listed ZM_GUARDED_BY(m_mutex); ///< by path: of the folder listed last
};

} // namespace zm::disc::medium
