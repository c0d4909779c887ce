#include "services/dvd/VersionedNames.h"

#include <string_view>

namespace zm::dvd {

void VersionedNames::strip(char* name) {
    const std::string_view whole(name);
    const size_t mark = whole.rfind(';');
    if (mark == std::string_view::npos || mark == 0 || mark + 1 == whole.size() ||
        whole.find_first_not_of("0123456789", mark + 1) != std::string_view::npos) {
        return;
    }
    m_versions[std::string(whole.substr(0, mark))] = whole.substr(mark);
    name[mark] = '\0';
}

std::string VersionedNames::original(const std::string& path) const {
    const auto found = m_versions.find(path.substr(path.rfind('/') + 1));
    return found == m_versions.end() ? std::string() : path + found->second;
}

} // namespace zm::dvd
