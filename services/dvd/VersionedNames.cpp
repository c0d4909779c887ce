#include "services/dvd/VersionedNames.h"

#include "base/FileVersion.h"

namespace zm::dvd {

void VersionedNames::strip(char* name) {
    const std::string_view whole(name);
    const std::string_view bare = withoutVersion(whole);
    if (bare.size() == whole.size()) {
        return;
    }
    m_versions[std::string(bare)] = whole.substr(bare.size());
    name[bare.size()] = '\0';
}

std::string VersionedNames::original(const std::string& path) const {
    const auto found = m_versions.find(path.substr(path.rfind('/') + 1));
    return found == m_versions.end() ? std::string() : path + found->second;
}

} // namespace zm::dvd
