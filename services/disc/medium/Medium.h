#pragma once

#include "base/Result.h"
#include "services/disc/model/Contents.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace zm::disc::medium {

/** Reads one opened file of a disc at any place. One thread at a time. */
class ByteReader {
public:
    virtual ~ByteReader() = default;
    /** Bytes in the file. */
    virtual uint64_t size() const = 0;
    /** Fills `buffer` from `offset` on; fewer bytes only at the end of the file. May block as long as the
     * drive does. */
    virtual Result<size_t> readAt(uint64_t offset, std::span<char> buffer) = 0;
};

/** One name in a folder of a disc. */
struct Entry {
    enum class Type { File, Folder };
    std::string rawName;
    Type type = Type::File;
    /** The same for two names of one folder (links); used to walk each folder once. */
    std::pair<uint64_t, uint64_t> identity;
    uint64_t size = 0; ///< bytes of a file; not said by a disc of tracks
};

/** What is known of a disc before it is searched. */
struct DiscDescription {
    std::string form;               ///< as what it was recognised, in words
    std::string catalogNumber;      ///< 13 digits, or empty
    std::vector<std::string> isrcs; ///< numbers of its recordings, by track, empty ones where unknown
};

/** The part of a file of encoded sound that is a track; in sectors of a CD, 75 a second. */
struct SoundCut {
    uint64_t first = 0;
    std::optional<uint64_t> count; ///< nothing: up to the file's end
    uint64_t silence = 0;          ///< behind it
    bool operator==(const SoundCut&) const = default;
};

/**
 * The readable side of a disc, whatever it really is. Paths are raw bytes relative to the root, "" being the
 * root. Every call may block as long as the drive does, so none belongs on a thread that answers. Any thread,
 * also several at once.
 */
class Medium {
public:
    virtual ~Medium() = default;
    /** The disc's name, raw bytes. */
    virtual std::string label() const = 0;
    /** Names in a folder, unsorted, without "." and "..". */
    virtual Result<std::vector<Entry>> list(const std::string& folder) = 0;
    virtual Result<std::unique_ptr<ByteReader>> open(const std::string& file) = 0;
    /** Which part of a track's file is the track; nothing where it is all of it. Does not block. */
    virtual std::optional<SoundCut> cut(const std::string& /*file*/) const { return std::nullopt; }
    /** All that is on a disc of tracks; null for a disc of files, which has to be searched.
     * Does not block. */
    virtual std::shared_ptr<const model::Contents> tracks() const { return nullptr; }
    /** Whether a disc of tracks has files, too: then it has to be searched. Does not block. */
    virtual bool hasFilesToo() const { return false; }

    const DiscDescription& description() const { return m_description; }
    /** By whoever opens it, before anybody else sees it. */
    void describe(DiscDescription description) { m_description = std::move(description); }

private:
    DiscDescription m_description;
};

} // namespace zm::disc::medium
