#include "services/disc/medium/MixedDisc.h"

#include <algorithm>
#include <optional>

namespace zm::disc::medium {

namespace {

constexpr const char* NamelessFolder = "Data";

// What of `path` lies inside `folder`; nothing if it lies elsewhere.
std::optional<std::string> inside(const std::string& path, const std::string& folder) {
    if (path == folder) {
        return "";
    }
    return path.rfind(folder + "/", 0) == 0 ? std::optional(path.substr(folder.size() + 1)) : std::nullopt;
}

} // namespace

MixedDisc::MixedDisc(std::shared_ptr<Medium> tracks, std::shared_ptr<Medium> files)
    : m_tracks(std::move(tracks)), m_files(std::move(files)), m_folder(m_files->label()) {
    // One name of a folder, and none that is left out.
    std::replace(m_folder.begin(), m_folder.end(), '/', '_');
    if (m_folder.empty() || m_folder.front() == '.') {
        m_folder = NamelessFolder;
    }
    auto description = m_tracks->description();
    description.form += ", files: " + m_files->description().form;
    describe(description);
}

Result<std::vector<Entry>> MixedDisc::list(const std::string& folder) {
    if (const auto path = inside(folder, m_folder)) {
        return m_files->list(*path);
    }
    auto entries = m_tracks->list(folder);
    if (entries) {
        entries->push_back({m_folder, Entry::Type::Folder, {}});
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> MixedDisc::open(const std::string& file) {
    const auto path = inside(file, m_folder);
    return path ? m_files->open(*path) : m_tracks->open(file);
}

std::optional<SoundCut> MixedDisc::cut(const std::string& file) const {
    return inside(file, m_folder) ? std::nullopt : m_tracks->cut(file);
}

} // namespace zm::disc::medium
