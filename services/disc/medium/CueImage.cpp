#include "services/disc/medium/CueImage.h"

#include "services/disc/medium/SliceReader.h"
#include "services/disc/text/Charset.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace zm::disc {

namespace {

namespace fs = std::filesystem;

// No disc has more; so much sound also fits into one file.
constexpr uint64_t MaxTrackSectors = 100 * 60 * SectorsPerSecond;

Result<std::string> readText(const std::string& path) {
    auto reader = openSlice(path, 0, MaxCueBytes + 1, path);
    if (!reader) {
        return reader.failure();
    }
    std::string text(MaxCueBytes + 1, '\0');
    const auto count = (*reader)->readAt(0, text);
    if (!count) {
        return count.failure();
    }
    text.resize(*count);
    return text;
}

// A name from another system may be a whole path there: only its last part means anything here.
std::string localName(const std::string& name) {
    const bool elsewhere = name.front() == '/' || name.find('\\') != std::string::npos;
    return elsewhere ? name.substr(name.find_last_of("/\\") + 1) : name;
}

struct FoundFile {
    std::string path;
    uint64_t size = 0;
};

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

Result<std::string> findPath(const fs::path& folder, const CueFile& file) {
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

Result<FoundFile> findFile(const fs::path& folder, const CueFile& file) {
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
    return FoundFile{*path, static_cast<uint64_t>(info.st_size)};
}

ImageTrack place(const CueTrack& track, const FoundFile& file) {
    const uint64_t end = std::min(track.end.value_or(file.size), file.size);
    const uint64_t sectors = end > track.begin ? (end - track.begin) / track.format.sectorSize : 0;
    return {track.format, track.title, track.performer,
            file.path,    track.begin, std::min(sectors, MaxTrackSectors) * track.format.sectorSize};
}

} // namespace

Result<CueImage> readCueImage(const std::string& path) {
    const auto text = readText(path);
    if (!text) {
        return text.failure();
    }
    auto sheet = parseCueSheet(*text);
    if (!sheet) {
        return Error{path + ": " + sheet.error()};
    }
    const fs::path cue(path);
    std::vector<FoundFile> files;
    for (const auto& file : sheet->files) {
        auto found = findFile(cue.parent_path(), file);
        if (!found) {
            return Error{path + ": " + found.error()};
        }
        files.push_back(std::move(*found));
    }
    const std::string label = sheet->title.empty() ? cleanText(cue.stem().string()) : sheet->title;
    CueImage image{path, sheet->title, sheet->performer, label, {}};
    for (const auto& track : sheet->tracks) {
        image.tracks.push_back(place(track, files[track.file]));
    }
    return image;
}

} // namespace zm::disc
