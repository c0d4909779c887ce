#include "services/disc/medium/FolderMedium.h"

#include "services/disc/medium/SliceReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <climits>
#include <filesystem>
#include <string_view>

namespace zm::disc::medium {

FolderMedium::FolderMedium(std::string root) : m_root(std::move(root)) {
    describe({Form, {}, {}});
}

std::string FolderMedium::label() const {
    std::error_code error;
    auto whole = std::filesystem::weakly_canonical(m_root, error);
    return (error ? std::filesystem::path(m_root) : whole).filename().string();
}

std::string FolderMedium::absolute(const std::string& path) const {
    return path.empty() ? m_root : m_root + "/" + path;
}

// The system takes no path of more than PATH_MAX bytes at once; deep discs have longer ones.
Result<UniqueFd> FolderMedium::openAt(const std::string& path, int flags) const {
    const std::string whole = absolute(path);
    std::string_view rest = whole;
    UniqueFd below;
    int base = AT_FDCWD;
    while (rest.size() >= PATH_MAX) {
        const auto cut = rest.rfind('/', PATH_MAX - 1);
        if (cut == 0 || cut == std::string_view::npos) {
            break;
        }
        UniqueFd next(::openat(base, std::string(rest.substr(0, cut)).c_str(), O_PATH | O_CLOEXEC));
        if (!next.valid()) {
            return systemError(whole);
        }
        below = std::move(next);
        base = below.get();
        rest.remove_prefix(cut + 1);
    }
    UniqueFd fd(::openat(base, std::string(rest).c_str(), flags | O_CLOEXEC));
    if (!fd.valid()) {
        return systemError(whole);
    }
    return fd;
}

Result<std::vector<Entry>> FolderMedium::list(const std::string& folder) {
    auto fd = openAt(folder, O_RDONLY | O_DIRECTORY);
    if (!fd) {
        return fd.failure();
    }
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::fdopendir(fd->get()), ::closedir);
    if (!dir) {
        return systemError(absolute(folder));
    }
    fd->release();
    std::vector<Entry> entries;
    while (const dirent* found = ::readdir(dir.get())) {
        const std::string name = found->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        struct stat info {};
        if (::fstatat(::dirfd(dir.get()), name.c_str(), &info, 0) == 0 &&
            (S_ISREG(info.st_mode) || S_ISDIR(info.st_mode))) {
            const auto type = S_ISDIR(info.st_mode) ? Entry::Type::Folder : Entry::Type::File;
            entries.push_back({name, type, {info.st_dev, info.st_ino}, static_cast<uint64_t>(info.st_size)});
        }
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> FolderMedium::open(const std::string& file) {
    auto fd = openAt(file, O_RDONLY);
    if (!fd) {
        return fd.failure();
    }
    struct stat info {};
    if (::fstat(fd->get(), &info) != 0) {
        return systemError(absolute(file));
    }
    const auto size = static_cast<uint64_t>(info.st_size);
    return std::unique_ptr<ByteReader>(
        std::make_unique<SliceReader>(std::move(*fd), 0, size, absolute(file)));
}

} // namespace zm::disc::medium
