#pragma once

#include "base/UniqueFd.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** A disc that is a folder: a mounted drive or any folder of files. Links are followed. */
class FolderMedium : public Medium {
public:
    /** What its description says of it. */
    static constexpr const char* Form = "folder";

    explicit FolderMedium(std::string root);
    std::string label() const override;
    Result<std::vector<Entry>> list(const std::string& folder) override;
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override;

private:
    std::string absolute(const std::string& path) const;
    Result<UniqueFd> openAt(const std::string& path, int flags) const;
    std::string m_root;
};

} // namespace zm::disc::medium
