#include "services/disc/cover/CoverFinder.h"

#include "services/disc/cover/Initials.h"
#include "services/disc/cover/Mood.h"
#include "services/disc/cover/PngText.h"
#include "services/disc/library/EmbeddedPictures.h"
#include "services/disc/library/FileKinds.h"
#include "services/disc/log/Log.h"
#include "services/disc/text/Charset.h"

#include <glib.h>

#include <algorithm>

namespace zm::disc::cover {

namespace {

// 50 megapixels in a PNG that can hardly be compressed are larger, but nobody's cover.
constexpr uint64_t MostBytes = 64'000'000;
// Of each place: a file with a thousand damaged pictures must not keep the processor busy.
constexpr size_t MostPictures = 4;

constexpr const char* EmbeddedKind = "embedded";
constexpr const char* FileKind = "file";
constexpr const char* DrawnKind = "drawn";

std::string digestOf(const std::string& bytes) {
    char* text = g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(bytes.data()),
                                             bytes.size());
    std::string digest(text, 32);
    g_free(text);
    return digest;
}

Result<std::string> wholeFile(medium::Medium& medium, const std::string& path) {
    auto reader = medium.open(path);
    if (!reader) {
        return reader.failure();
    }
    if ((*reader)->size() > MostBytes) {
        return Error{"too large a file"};
    }
    std::string bytes((*reader)->size(), '\0');
    const auto count = (*reader)->readAt(0, bytes);
    if (!count) {
        return count.failure();
    }
    bytes.resize(*count);
    return bytes;
}

} // namespace

std::optional<model::Cover> CoverFinder::find(const model::Item& song, const Stop& stop) {
    const std::string path = m_contents->pathOf(song);
    Found found;
    if (const auto key = m_keys.find(path); key != m_keys.end()) {
        found = known(key->second);
    }
    found = found ? found : search(song, path, stop);
    if (!found || stop()) {
        return std::nullopt;
    }
    found->folder = song.folderId;
    found->file = song.fileId;
    return found;
}

CoverFinder::Found CoverFinder::search(const model::Item& song, const std::string& path, const Stop& stop) {
    Found found;
    if (m_contents->hasFolders()) {
        found = embedded(path, song.rawName, stop);
        found = found || stop() ? found : beside(m_contents->folder(song.folderId), stop);
    }
    found = found || stop() ? found : drawn(song, stop);
    if (found) {
        m_keys[path] = found->key;
    }
    return found;
}

CoverFinder::Found CoverFinder::embedded(const std::string& path, const std::string& name, const Stop& stop) {
    auto reader = m_medium->open(path);
    if (!reader) {
        return std::nullopt; // the player says so
    }
    auto pictures = library::embeddedPictures(**reader, name);
    pictures.resize(std::min(pictures.size(), MostPictures));
    for (const std::string& bytes : pictures) {
        if (auto cover = ofPicture(bytes, EmbeddedKind, path, stop); cover || stop()) {
            return cover;
        }
    }
    return std::nullopt;
}

CoverFinder::Found CoverFinder::beside(const model::Folder& folder, const Stop& stop) {
    for (const std::string& path : pathsBeside(folder)) {
        if (auto cover = besideAt(path, stop); cover || stop()) {
            return cover;
        }
    }
    return std::nullopt;
}

CoverFinder::Found CoverFinder::besideAt(const std::string& path, const Stop& stop) {
    if (const auto key = m_keys.find(path); key != m_keys.end()) {
        if (auto cover = known(key->second)) {
            return cover;
        }
    }
    const auto bytes = wholeFile(*m_medium, path);
    if (!bytes) {
        logInfo("%s: no cover: %s\n", text::cleanText(path).c_str(), bytes.error().c_str());
        return std::nullopt;
    }
    auto cover = ofPicture(*bytes, FileKind, path, stop);
    if (cover) {
        m_keys[path] = cover->key;
    }
    return cover;
}

const std::vector<std::string>& CoverFinder::pathsBeside(const model::Folder& folder) {
    const auto seen = m_pathsBeside.find(folder.id);
    if (seen != m_pathsBeside.end()) {
        return seen->second;
    }
    std::vector<std::string> names;
    if (const auto entries = m_medium->list(folder.path)) {
        for (const auto& entry : *entries) {
            if (entry.type == medium::Entry::Type::File && library::isCover(entry.rawName)) {
                names.push_back(entry.rawName);
            }
        }
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::pair(library::coverRank(a), a) < std::pair(library::coverRank(b), b);
    });
    names.resize(std::min(names.size(), MostPictures));
    for (std::string& name : names) {
        name = folder.path.empty() ? name : folder.path + "/" + name;
    }
    return m_pathsBeside[folder.id] = std::move(names);
}

CoverFinder::Found CoverFinder::drawn(const model::Item& song, const Stop& stop) {
    const std::string letters = initialsOf(song.name);
    const std::string color = tileColor(song.tags.album.empty() ? song.name : song.tags.album);
    const std::string key = digestOf(color + letters);
    if (auto cover = known(key)) {
        return cover;
    }
    const auto picture = drawLetters(letters, color, stop);
    if (!picture) {
        if (!stop()) {
            logWarning("a cover cannot be drawn: %s\n", picture.error().c_str());
        }
        return std::nullopt;
    }
    return keep(key, DrawnKind, *picture);
}

CoverFinder::Found CoverFinder::ofPicture(const std::string& bytes, const char* kind,
                                          const std::string& where, const Stop& stop) {
    if (bytes.empty() || bytes.size() > MostBytes) {
        return std::nullopt;
    }
    const std::string key = digestOf(bytes);
    if (auto cover = known(key)) {
        cover->kind = kind; // the same picture may lie beside the songs that it is in
        return cover;
    }
    const auto picture = decodePicture(bytes, stop);
    if (!picture) {
        if (!stop()) {
            logInfo("%s: no cover: %s\n", text::cleanText(where).c_str(), picture.error().c_str());
        }
        return std::nullopt;
    }
    return keep(key, kind, *picture);
}

CoverFinder::Found CoverFinder::keep(const std::string& key, const char* kind, const Bitmap& picture) {
    const auto png = pngOf(picture);
    const auto path = png ? m_cache->keep(key, *png) : Result<std::string>(png.failure());
    if (!path) {
        logWarning("%s\n", path.error().c_str());
        return std::nullopt;
    }
    model::Cover cover;
    cover.path = *path;
    cover.kind = kind;
    cover.color = moodOf(picture);
    cover.key = key;
    m_covers[key] = cover;
    return cover;
}

CoverFinder::Found CoverFinder::known(const std::string& key) {
    const auto cover = m_covers.find(key);
    return cover != m_covers.end() && m_cache->find(key) ? Found(cover->second) : std::nullopt;
}

} // namespace zm::disc::cover
