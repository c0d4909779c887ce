#include "services/disc/library/Scanner.h"

#include "services/disc/library/DisplayNames.h"
#include "services/disc/library/FileKinds.h"
#include "services/disc/library/Tags.h"
#include "services/disc/log/Log.h"
#include "services/disc/medium/DvdDetection.h"
#include "services/disc/model/DiscIdentity.h"
#include "services/disc/text/Charset.h"
#include "services/disc/text/NaturalOrder.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <span>
#include <tuple>

namespace zm::disc::library {

namespace {

struct FoundFile {
    std::string rawName;
    model::MediaKind kind = model::MediaKind::Music;
    RawTags tags;
};

struct FoundFolder {
    std::string rawName;
    std::string path;
    std::vector<FoundFile> files;
    std::vector<FoundFolder> folders;

    bool empty() const { return files.empty() && folders.empty(); }
};

std::string join(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

/** First walk: what there is. Collects the bytes of all names and tags for the character-set repair. */
class Walk {
public:
    /** `tracks`: what the disc's tracks are, if it has such beside its files; else null. */
    Walk(medium::Medium& medium, ScanProgress& progress, const model::Contents* tracks)
        : m_medium(medium), m_progress(progress), m_tracks(tracks) {}

    Status read(FoundFolder& folder, int depth) {
        ++m_progress.steps;
        auto entries = m_medium.list(folder.path);
        if (!entries) {
            return entries.failure();
        }
        for (auto& entry : *entries) {
            if (m_progress.cancelled) {
                return Error{"cancelled"};
            }
            if (entry.rawName.front() == '.') {
                continue;
            }
            if (entry.type == medium::Entry::Type::Folder) {
                readFolder(folder, entry, depth);
            } else {
                readFile(folder, entry);
            }
        }
        leaveOutCovers(folder.files);
        return ok();
    }

    const text::CharsetRepair& repair() const { return m_repair; }
    std::string identity() const { return m_identity.text(); }

private:
    void readFolder(FoundFolder& parent, const medium::Entry& entry, int depth) {
        FoundFolder folder{entry.rawName, join(parent.path, entry.rawName), {}, {}};
        if (depth == MaxDepth || m_folders == MaxFolders) {
            logWarning("%s: left out, too deep or too many folders\n", folder.path.c_str());
            return;
        }
        if (entry.identity != decltype(entry.identity){} && !m_visited.insert(entry.identity).second) {
            return; // a link to a folder that is already there, maybe to one around this
        }
        ++m_folders;
        if (auto status = read(folder, depth + 1); !status && !m_progress.cancelled) {
            logWarning("%s: folder left out\n", status.error().c_str());
            return;
        }
        if (!folder.empty()) {
            m_repair.learn(entry.rawName);
            parent.folders.push_back(std::move(folder));
        }
    }

    void readFile(FoundFolder& parent, const medium::Entry& entry) {
        const auto kind = fileKind(entry.rawName);
        if (!kind || parent.files.size() >= static_cast<size_t>(MaxFilesInFolder)) {
            return;
        }
        ++m_progress.steps;
        m_repair.learn(entry.rawName);
        FoundFile file{entry.rawName, kind->kind, {}};
        const std::string path = join(parent.path, entry.rawName);
        if (const model::Item* track = parent.path.empty() ? trackCalled(entry.rawName) : nullptr) {
            file.tags = tagsOf(*track);
        } else if (kind->tags != TagFormat::None) {
            if (auto reader = m_medium.open(path)) {
                file.tags = readTags(**reader, entry.rawName);
                learnTags(m_repair, file.tags);
            }
        }
        m_identity.addFile(path, entry.size, file.tags.title.bytes, file.tags.album.bytes);
        parent.files.push_back(std::move(file));
    }

    const model::Item* trackCalled(const std::string& name) const {
        const auto items =
            m_tracks ? std::span(m_tracks->of(model::MediaKind::Music)) : std::span<const model::Item>();
        const auto track = std::find_if(items.begin(), items.end(),
                                        [&](const model::Item& each) { return each.rawName == name; });
        return track == items.end() ? nullptr : &*track;
    }

    // A track has no tags of its own; the description of the disc knows its texts.
    static RawTags tagsOf(const model::Item& track) {
        RawTags tags;
        tags.title = {track.name, false};
        tags.artist = {track.tags.artist, false};
        tags.album = {track.tags.album, false};
        tags.track = track.fileId;
        tags.seconds = track.tags.seconds;
        return tags;
    }

    // A picture of that name beside music belongs to the music.
    static void leaveOutCovers(std::vector<FoundFile>& files) {
        const bool music = std::any_of(files.begin(), files.end(), [](const FoundFile& file) {
            return file.kind == model::MediaKind::Music;
        });
        std::erase_if(files, [&](const FoundFile& file) { return music && isCover(file.rawName); });
    }

    medium::Medium& m_medium;
    ScanProgress& m_progress;
    const model::Contents* m_tracks;
    text::CharsetRepair m_repair;
    model::DiscIdentity m_identity;
    std::set<std::pair<uint64_t, uint64_t>> m_visited;
    int m_folders = 1;
};

/** Second walk: order, numbers and names. */
class Numbering {
public:
    explicit Numbering(const text::CharsetRepair& repair) : m_repair(repair) {}

    /** Adds the folder and all below it; gives the number of files of each kind in the whole branch. */
    std::array<int, model::KindCount> add(FoundFolder& found, int parentId, const std::string& name) {
        const auto index = m_contents.folders.size();
        const int id = static_cast<int>(index) + 1;
        m_contents.folders.push_back({id, parentId, found.path, name, {}});
        std::array<int, model::KindCount> total{};
        for (const auto& row : model::kinds) {
            const int count = addFiles(found, row.kind, id);
            m_contents.folders[index].counts[model::kindIndex(row.kind)].files = count;
            total[model::kindIndex(row.kind)] = count;
        }
        auto named = namesOf(found.folders);
        for (auto& [folderName, folder] : named) {
            const auto below = add(*folder, id, folderName);
            for (size_t kind = 0; kind < model::KindCount; ++kind) {
                total[kind] += below[kind];
                m_contents.folders[index].counts[kind].folders += below[kind] > 0;
            }
        }
        return total;
    }

    model::Contents take() { return std::move(m_contents); }

private:
    std::vector<std::pair<std::string, FoundFolder*>> namesOf(std::vector<FoundFolder>& folders) const {
        std::vector<std::pair<std::string, FoundFolder*>> named;
        for (auto& folder : folders) {
            named.emplace_back(m_repair.toUtf8(folder.rawName), &folder);
        }
        std::sort(named.begin(), named.end(),
                  [](const auto& a, const auto& b) { return text::compareNatural(a.first, b.first) < 0; });
        return named;
    }

    int addFiles(const FoundFolder& found, model::MediaKind kind, int folderId) {
        // Until the files are in order an item's name is that of its file.
        std::vector<model::Item> items;
        for (const auto& file : found.files) {
            if (file.kind == kind) {
                items.push_back({folderId, 0, file.rawName, m_repair.toUtf8(file.rawName),
                                 repairTags(m_repair, file.tags)});
            }
        }
        std::sort(items.begin(), items.end(), before);
        nameForDisplay(items, kind);
        auto& all = m_contents.items[model::kindIndex(kind)];
        int fileId = 0;
        for (auto& item : items) {
            item.fileId = ++fileId;
            all.push_back(std::move(item));
        }
        return fileId;
    }

    static void nameForDisplay(std::vector<model::Item>& items, model::MediaKind kind) {
        std::vector<NamedFile> files;
        for (auto& item : items) {
            files.push_back({std::move(item.name), item.tags.title, item.tags.track});
        }
        auto names = displayNames(files, kind);
        for (size_t i = 0; i < items.size(); ++i) {
            items[i].name = std::move(names[i]);
        }
    }

    static bool before(const model::Item& a, const model::Item& b) {
        // Files without a track number come after those that have one.
        const auto key = [](const model::Item& item) {
            return std::make_tuple(item.tags.track == 0, item.tags.disc, item.tags.track);
        };
        return key(a) != key(b) ? key(a) < key(b) : text::compareNatural(a.name, b.name) < 0;
    }

    const text::CharsetRepair& m_repair;
    model::Contents m_contents;
};

} // namespace

Result<model::Contents> scan(medium::Medium& medium, ScanProgress& progress) {
    const auto tracks = medium.tracks();
    if (tracks && !medium.hasFilesToo()) {
        return *tracks;
    }
    if (const auto dvd = tracks ? std::nullopt : medium::findDvd(medium)) {
        model::Contents contents;
        contents.trackType = model::MediaType::Dvd;
        contents.dvd = dvd;
        contents.identity = dvd->identity;
        return contents;
    }
    FoundFolder root;
    Walk walk(medium, progress, tracks.get());
    if (auto status = walk.read(root, 0); !status) {
        return status.failure();
    }
    if (progress.cancelled) {
        return Error{"cancelled"};
    }
    if (tracks && root.folders.empty()) {
        return *tracks; // its files are nothing that can be played
    }
    Numbering numbering(walk.repair());
    numbering.add(root, 0, walk.repair().toUtf8(medium.label()));
    auto contents = numbering.take();
    contents.identity = walk.identity();
    return contents;
}

} // namespace zm::disc::library
