#pragma once

#include "base/Result.h"
#include "services/disc/medium/Medium.h"
#include "services/disc/model/Contents.h"

#include <atomic>

namespace zm::disc::library {

/** Shared with the thread that scans: how far it is, and whether it shall stop. */
struct ScanProgress {
    std::atomic<bool> cancelled{false};
    std::atomic<int> steps{0}; ///< grows with each folder and file looked at
};

/** Limits of what a disc may hold; they come from the numbers' places in a packed "PlayTrack". */
inline constexpr int MaxFolders = 65535;
inline constexpr int MaxFilesInFolder = 65535;
inline constexpr int MaxDepth = 128;

/**
 * Reads the whole disc: which folders and playable files there are, their order, their tags, their names as
 * UTF-8. Folders are numbered from the root (1) on, each before its sub-folders; folders without any playable
 * file are left out, so are covers beside music. Inside a folder music goes by disc and track number, then by
 * file name; the rest by file name. A folder that cannot be read is logged and left out; the error is for a
 * root that cannot be read, or "cancelled". A disc of tracks knows its contents without being searched;
 * one that has playable files beside its tracks is a disc of files, the tracks being those of its root.
 * Blocks; any thread.
 */
Result<model::Contents> scan(medium::Medium& medium, ScanProgress& progress);

} // namespace zm::disc::library
