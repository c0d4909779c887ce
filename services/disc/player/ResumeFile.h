#pragma once

#include "base/Result.h"
#include "services/disc/model/Media.h"

#include <chrono>
#include <string>
#include <vector>

namespace zm::disc::player {

/**
 * Where a disc was left: the item by its numbers on the disc, and the modes as "playstate" has them. A DVD's item is a
 * video: its title (0: it begins anew) as the folder, its chapter as the file.
 */
struct ResumePoint {
    model::MediaKind kind = model::MediaKind::Music;
    int folderId = 1;
    int fileId = 1;
    std::chrono::milliseconds position{0};
    int repeat = 2;
    int shuffle = 0;
    int sound = -1;    ///< of a DVD, logical number; -1 as the disc wants it
    int subtitle = -1; ///< the same
    bool operator==(const ResumePoint&) const = default;
};

struct RememberedDisc {
    std::string identity;
    ResumePoint point;
    bool operator==(const RememberedDisc&) const = default;
};

/**
 * The SQLite file in which remembered discs outlast a power-off. It is opened for each call only, so that a
 * file that was taken away is simply made anew. A file that is damaged is put aside under its name with
 * ".damaged" behind it, in place of an earlier one. Calls block; one thread at a time.
 */
class ResumeFile {
public:
    explicit ResumeFile(std::string path) : m_path(std::move(path)) {}

    /** The discs, the one used last at the end; rows that make no sense are left out. Empty without a file. */
    std::vector<RememberedDisc> read();
    /** Makes these the file's only discs; on the disk when the call returns. */
    Status write(const std::vector<RememberedDisc>& discs);

private:
    void putAside(const std::string& reason);

    std::string m_path;
};

} // namespace zm::disc::player
