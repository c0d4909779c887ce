#include "services/disc/medium/SheetFiles.h"

#include "services/disc/medium/SliceReader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace zm::disc::medium {

namespace {

namespace fs = std::filesystem;

// A name from another system may be a whole path there: only its last part means anything here.
std::string localName(const std::string& name) {
    const bool elsewhere = name.front() == '/' || name.find('\\') != std::string::npos;
    return elsewhere ? name.substr(name.find_last_of("/\\") + 1) : name;
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// The files of the folder that are called so but for the case of the letters.
std::vector<std::string> otherCases(const fs::path& folder, const std::string& name) {
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (lowerCase(entry->path().filename().string()) == lowerCase(name)) {
            found.push_back(entry->path().string());
        }
    }
    return found;
}

bool exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

Result<std::string> findPath(const fs::path& folder, const image::SheetFile& file) {
    for (const auto& each : {file.rawName, file.name}) {
        const fs::path name = localName(each);
        if (name.empty() || std::find(name.begin(), name.end(), "..") != name.end()) {
            return Error{file.name + ": lies outside the cue sheet's folder"};
        }
        if (const std::string path = (folder / name).string(); exists(path)) {
            return path;
        }
    }
    // Sheets from systems that do not tell the cases apart.
    for (const auto& each : {file.rawName, file.name}) {
        const fs::path path = folder / localName(each);
        const auto found = otherCases(path.parent_path(), path.filename().string());
        if (found.size() == 1) {
            return found.front();
        }
        if (found.size() > 1) {
            return Error{file.name + ": several files are called so but for the case of the letters"};
        }
    }
    return Error{file.name + ": no such file"};
}

Result<image::SoundHeader> soundHeaderOf(const std::string& path, uint64_t size) {
    auto reader = openSlice(path, 0, size, path);
    if (!reader) {
        return reader.failure();
    }
    std::string failure;
    const auto read = [&](uint64_t offset, size_t bytes) {
        std::string buffer(bytes, '\0');
        const auto count = (*reader)->readAt(offset, buffer);
        failure = count ? failure : count.error();
        buffer.resize(count ? *count : 0);
        return buffer;
    };
    auto header = image::readSoundHeader(read, size);
    return failure.empty() ? header : Result<image::SoundHeader>(Error{failure});
}

} // namespace

Result<FoundSheetFile> findSheetFile(const std::string& folder, const image::SheetFile& file) {
    const auto path = findPath(folder, file);
    if (!path) {
        return path.failure();
    }
    struct stat info {};
    if (::stat(path->c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return Error{file.name + ": no plain file"};
    }
    if (auto readable = openSlice(*path, 0, 0, *path); !readable) {
        return readable.failure();
    }
    FoundSheetFile found{*path, static_cast<uint64_t>(info.st_size), file.type, {}};
    if (file.type == image::SheetFileType::SoundFile) {
        auto header = soundHeaderOf(*path, found.size);
        if (!header) {
            return Error{file.name + ": " + header.error()};
        }
        found.sound = *header;
    }
    return found;
}

Result<std::string> readSmallFile(const std::string& path, size_t most) {
    auto reader = openSlice(path, 0, most, path);
    if (!reader) {
        return reader.failure();
    }
    std::string text(most, '\0');
    const auto count = (*reader)->readAt(0, text);
    if (!count) {
        return count.failure();
    }
    text.resize(*count);
    return text;
}

} // namespace zm::disc::medium
