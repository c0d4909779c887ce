#pragma once

#include "base/Mutex.h"
#include "services/disc/medium/IsoDirectory.h"

#include <functional>
#include <map>

namespace zm::disc::medium {

/**
 * A disc image with an ISO 9660 file system, read without mounting it. Names come from Rock Ridge or Joliet
 * where the disc has them. A file is opened after the folder that holds it has been listed.
 */
class IsoMedium : public Medium {
public:
    /** Opens the bytes of `extent` of the file system, or as many as there are;
     * `name` stands in error texts. */
    using Opener =
        std::function<Result<std::unique_ptr<ByteReader>>(const std::string& name, const IsoExtent& extent)>;

    /** What the error says, behind the image's name, where there is no such file system. */
    static constexpr const char* NoImage = "not a disc image";

    /** The file system that `opener` opens; `image` names it in error texts. */
    static Result<std::shared_ptr<Medium>> openImage(const std::string& image, const Opener& opener);

    std::string label() const override { return m_volume.label; }
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;

private:
    IsoMedium(std::string image, Opener opener, std::unique_ptr<ByteReader> reader, IsoVolume volume);

    struct File {
        IsoExtent extent;
        std::optional<ZisofsHeader> compressed;
    };
    std::optional<IsoRecord> resolve(const std::string& folder, const std::string& link) ZM_REQUIRES(m_mutex);
    std::optional<IsoRecord> find(const std::string& path) ZM_REQUIRES(m_mutex);

    std::string m_image;
    Opener m_opener;
    Mutex m_mutex;
    std::unique_ptr<ByteReader> m_reader ZM_GUARDED_BY(m_mutex);
    IsoVolume m_volume;
    std::map<std::string, IsoExtent>
        m_folders ZM_GUARDED_BY(m_mutex); ///< by path; those that were listed by their parent
    std::map<std::string, File> m_files ZM_GUARDED_BY(m_mutex);
    int m_links ZM_GUARDED_BY(m_mutex) = 0; ///< followed so far
};

} // namespace zm::disc::medium
