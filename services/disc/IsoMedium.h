#pragma once

#include "services/disc/Medium.h"

#include <map>
#include <mutex>

struct _iso9660_s;

namespace zm::disc {

/**
 * A disc image with an ISO 9660 file system, read without mounting it. Names come from Rock Ridge or Joliet
 * where the disc has them. A file is opened after the folder that holds it has been listed.
 */
class IsoMedium : public Medium {
public:
    /** Fails if `image` cannot be read or holds no such file system. */
    static Result<std::shared_ptr<IsoMedium>> openImage(const std::string& image);
    ~IsoMedium() override;

    std::string label() const override;
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;

private:
    struct Extent {
        uint64_t offset = 0; ///< in the image, bytes
        uint64_t size = 0;
    };
    explicit IsoMedium(std::string image, _iso9660_s* iso) : m_image(std::move(image)), m_iso(iso) {}

    std::string m_image;
    mutable std::mutex m_mutex; ///< the library takes one caller at a time
    _iso9660_s* m_iso;
    std::map<std::string, std::string> m_folders; ///< by path as listed: the path as the disc spells it
    std::map<std::string, Extent> m_files;
};

} // namespace zm::disc
