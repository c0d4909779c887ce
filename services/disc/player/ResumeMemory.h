#pragma once

#include "services/disc/player/ResumeFile.h"

#include <memory>
#include <optional>

namespace zm::disc::player {

/**
 * The discs that were in the drive last, and where each was left. The file follows within moments, written by
 * a thread of its own as a disk may be slow. On the service's loop.
 */
class ResumeMemory {
public:
    /** Discs that are remembered; the one used least recently gives way. */
    static constexpr size_t MaxDiscs = 50;

    /** Reads what `file` holds. */
    explicit ResumeMemory(const std::string& file);
    /** The file is up to date afterwards, unless the disk hangs. */
    ~ResumeMemory();
    ResumeMemory(const ResumeMemory&) = delete;
    ResumeMemory& operator=(const ResumeMemory&) = delete;

    /** Where the disc was left; nothing for a disc that is new. */
    std::optional<ResumePoint> find(const std::string& identity) const;
    /** The disc is the one used last, and now here. */
    void keep(const std::string& identity, const ResumePoint& point);

private:
    class Writer;
    std::vector<RememberedDisc> m_discs; ///< the one used last at the end
    std::shared_ptr<Writer> m_writer;
};

} // namespace zm::disc::player
