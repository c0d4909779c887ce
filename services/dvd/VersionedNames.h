#pragma once

#include <map>
#include <string>

namespace zm::dvd {

/** Names of files that carry a version, "VIDEO_TS.IFO;1", as some programs copy them off a disc. */
class VersionedNames {
public:
    /** Takes the version off `name`, if there is one, in place. */
    void strip(char* name);
    /** `path` with the name as it was; empty where no version was taken off. */
    std::string original(const std::string& path) const;

private:
    std::map<std::string, std::string> m_versions; ///< by the name without it
};

} // namespace zm::dvd
