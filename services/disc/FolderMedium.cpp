#include "services/disc/FolderMedium.h"

#include "services/disc/SliceReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

namespace zm::disc {

FolderMedium::FolderMedium(std::string root) : m_root(std::move(root)) {}

std::string FolderMedium::label() const {
    std::error_code error;
    auto whole = std::filesystem::weakly_canonical(m_root, error);
    return (error ? std::filesystem::path(m_root) : whole).filename().string();
}

std::string FolderMedium::absolute(const std::string& path) const {
    return path.empty() ? m_root : m_root + "/" + path;
}

Result<std::vector<Entry>> FolderMedium::list(const std::string& folder) {
    const std::string where = absolute(folder);
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(where.c_str()), ::closedir);
    if (!dir) {
        return systemError(where);
    }
    std::vector<Entry> entries;
    while (const dirent* found = ::readdir(dir.get())) {
        const std::string name = found->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        // Only links and folders need a look at the inode: a stat per file would double the time of a scan.
        struct stat info {};
        if (found->d_type == DT_REG) {
            entries.push_back({name, Entry::Type::File, {}});
        } else if (::fstatat(::dirfd(dir.get()), name.c_str(), &info, 0) == 0 &&
                   (S_ISREG(info.st_mode) || S_ISDIR(info.st_mode))) {
            const auto type = S_ISDIR(info.st_mode) ? Entry::Type::Folder : Entry::Type::File;
            entries.push_back({name, type, {info.st_dev, info.st_ino}});
        }
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> FolderMedium::open(const std::string& file) {
    const std::string where = absolute(file);
    UniqueFd fd(::open(where.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (!fd.valid() || ::fstat(fd.get(), &info) != 0) {
        return systemError(where);
    }
    const auto size = static_cast<uint64_t>(info.st_size);
    return std::unique_ptr<ByteReader>(std::make_unique<SliceReader>(std::move(fd), 0, size, where));
}

} // namespace zm::disc
