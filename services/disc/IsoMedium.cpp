#include "services/disc/IsoMedium.h"

#include "services/disc/SliceReader.h"

#include <cdio/iso9660.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace zm::disc {

namespace {

struct FileList {
    CdioList_t* list;
    ~FileList() {
        if (list) {
            _cdio_list_free(list, true,
                            [](void* stat) { iso9660_stat_free(static_cast<iso9660_stat_t*>(stat)); });
        }
    }
};

bool isSelfOrParent(std::string_view name) {
    return name.empty() || name == "." || name == ".." || name[0] == '\0' || name[0] == '\1';
}

std::string join(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

} // namespace

Result<std::shared_ptr<IsoMedium>> IsoMedium::openImage(const std::string& image) {
    const UniqueFd readable(::open(image.c_str(), O_RDONLY | O_CLOEXEC));
    if (!readable.valid()) {
        return systemError(image);
    }
    iso9660_t* iso = iso9660_open_ext(image.c_str(), ISO_EXTENSION_ALL);
    if (!iso) {
        return Error{image + ": not a disc image"};
    }
    std::shared_ptr<IsoMedium> medium(new IsoMedium(image, iso));
    medium->m_folders[""] = "/";
    return medium;
}

IsoMedium::~IsoMedium() {
    iso9660_close(m_iso);
}

std::string IsoMedium::label() const {
    std::lock_guard lock(m_mutex);
    cdio_utf8_t* id = nullptr;
    if (!iso9660_ifs_get_volume_id(m_iso, &id) || !id) {
        return {};
    }
    const std::string text = id;
    std::free(id);
    return text;
}

Result<std::vector<Entry>> IsoMedium::list(const std::string& folder) {
    std::lock_guard lock(m_mutex);
    const auto known = m_folders.find(folder);
    const FileList found{known == m_folders.end() ? nullptr
                                                  : iso9660_ifs_readdir(m_iso, known->second.c_str())};
    if (!found.list) {
        return Error{m_image + ": " + folder + ": cannot be read"};
    }
    const std::string base = known->second == "/" ? "/" : known->second + "/";
    const uint8_t joliet = iso9660_ifs_get_joliet_level(m_iso);
    std::vector<Entry> entries;
    for (auto* node = _cdio_list_begin(found.list); node; node = _cdio_list_node_next(node)) {
        const auto& stat = *static_cast<iso9660_stat_t*>(_cdio_list_node_data(node));
        const std::string spelled = stat.filename;
        if (isSelfOrParent(spelled)) {
            continue;
        }
        std::string name = spelled;
        if (stat.rr.b3_rock != yep) {
            // Names of the bare file system end with a version, which nobody wants to see.
            iso9660_name_translate_ext(spelled.c_str(), name.data(), joliet);
            name.resize(std::char_traits<char>::length(name.c_str()));
        }
        const std::string path = join(folder, name);
        const uint64_t offset = static_cast<uint64_t>(stat.lsn) * ISO_BLOCKSIZE;
        if (stat.type == iso9660_stat_t::_STAT_DIR) {
            m_folders[path] = base + spelled;
            entries.push_back({name, Entry::Type::Folder, {1, offset}});
        } else {
            m_files[path] = {offset, stat.size};
            entries.push_back({name, Entry::Type::File, {}});
        }
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> IsoMedium::open(const std::string& file) {
    Extent extent;
    {
        std::lock_guard lock(m_mutex);
        const auto known = m_files.find(file);
        if (known == m_files.end()) {
            return Error{m_image + ": " + file + ": no such file"};
        }
        extent = known->second;
    }
    UniqueFd fd(::open(m_image.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid()) {
        return systemError(m_image);
    }
    return std::unique_ptr<ByteReader>(
        std::make_unique<SliceReader>(std::move(fd), extent.offset, extent.size, m_image + ": " + file));
}

} // namespace zm::disc
