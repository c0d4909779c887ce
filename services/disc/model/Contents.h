#pragma once

#include "services/disc/model/Media.h"
#include "services/disc/model/PlayLists.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::model {

/** What a music file says about itself, as UTF-8. Numbers are 0 when unknown. */
struct Tags {
    std::string title;
    std::string artist;
    std::string album;
    int disc = 0;
    int track = 0;
    int seconds = 0;
};

/** One playable file. */
struct Item {
    int folderId = 1;
    int fileId = 0;      ///< counts from 1 inside its folder and kind
    std::string rawName; ///< the bytes on the disc
    std::string name;    ///< for the driver, UTF-8: the title or what is left of the file's name
    Tags tags;
};

struct FolderCounts {
    int folders = 0; ///< sub-folders that hold files of the kind, at any depth
    int files = 0;   ///< files of the kind directly inside
};

struct Folder {
    int id = 1;
    int parentId = 0;
    std::string path; ///< raw bytes, relative to the disc's root, "" for the root itself
    std::string name; ///< as shown: UTF-8
    std::array<FolderCounts, KindCount> counts;
};

/** What is known of a DVD-Video before it is played. */
struct DvdMark {
    uint8_t prohibitedRegions = 0; ///< bit n - 1 is set where region n must not play it
    std::string identity;          ///< as that of `Contents`
};

/** Everything playable on a disc, numbered. */
struct Contents {
    /** Of a disc of tracks, which all lie in folder 1; nothing for a disc of folders and files. */
    std::optional<MediaType> trackType;
    std::string identity; ///< the same whenever this disc is read
    /** Of a DVD-Video, which is played by its own program and has neither folders nor items. */
    std::optional<DvdMark> dvd;
    /** The playback control of a VCD; null without one. */
    std::shared_ptr<const PlayLists> playLists;
    std::vector<Folder> folders;                    ///< folder n has the id n + 1
    std::array<std::vector<Item>, KindCount> items; ///< by folder id, then file id

    const std::vector<Item>& of(MediaKind kind) const { return items[kindIndex(kind)]; }
    const Folder& folder(int id) const { return folders[static_cast<size_t>(id) - 1]; }
    bool empty() const {
        return !dvd && std::all_of(items.begin(), items.end(), [](const auto& each) { return each.empty(); });
    }
    bool hasFolders() const { return !trackType; }
    /** What "mediatype" says while an item of `kind` plays. */
    MediaType mediaType(MediaKind kind) const { return trackType.value_or(numbersOf(kind).mediaType); }
    /** The kinds of files that there are, as "mixedtype" publishes them. */
    int mixedMask() const {
        int mask = 0;
        for (const auto& row : kinds) {
            mask |= trackType || of(row.kind).empty() ? 0 : row.mixedBit;
        }
        return mask;
    }
    /** The first kind that there is, in the order of preference. Not for empty contents. */
    MediaKind firstKind() const {
        return std::find_if(kinds.begin(), kinds.end(),
                            [this](const KindNumbers& row) { return !of(row.kind).empty(); })
            ->kind;
    }
    /** The item's raw path relative to the disc's root. */
    std::string pathOf(const Item& item) const {
        const auto& parent = folder(item.folderId).path;
        return parent.empty() ? item.rawName : parent + "/" + item.rawName;
    }
};

} // namespace zm::disc::model
