#pragma once

#include "base/Result.h"
#include "platform/linux/pps/PpsChange.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zm {

/** Flags of PpsFile::open: to write only; the object is made if there is none. */
inline constexpr int PpsWriteOnlyCreate = 257;

/**
 * One open descriptor of a PPS object: what `open`, `read`, `write` on a path below /pps are on the target.
 * Each has a connection of its own to the service of a runtime folder. When the service goes away the
 * descriptor reconnects by itself (at most every 100 ms, from inside read, write and pollFd) and its next
 * read gives the present state again. One thread at a time, except that `write` may run beside `read`.
 */
class PpsFile {
public:
    /**
     * Opens `path` ("/pps/zelmar/disc/status?delta") with flags in the target's numbers (access 0..2, 256
     * create, 512 truncate) on the service behind `socket`. Missing folders are made.
     */
    static Result<PpsFile> open(const std::string& socket, const std::string& path, int flags, unsigned mode);
    PpsFile(PpsFile&&) noexcept;
    PpsFile& operator=(PpsFile&&) noexcept;
    ~PpsFile();

    /**
     * What is new since the last read (delta), or the whole object (full mode); empty when there is nothing
     * new. The option "wait" makes it wait for something new, also while the service is away. An error while
     * disconnected.
     */
    Result<std::string> read();
    /** The same without waiting, each change by itself with its number. */
    Result<PpsChanges> readChanges();
    /**
     * One transaction: all lines or none. An error names the faulty line. Every reader has been told when it
     * returns. When the service has gone it tries for 250 ms to find a new one, then fails.
     */
    Status write(std::string_view text);
    /** Deletes all attributes. */
    Status truncate();
    /**
     * Becomes readable (or hung up, when the service has gone) when `read` has something; ask anew before
     * each poll. -1 while disconnected.
     */
    int pollFd();
    /**
     * Whether it has been connected anew since the last call: the objects are others then and know nothing
     * of what was written before. Such a connection is made by `read`, `write`, `truncate` or `pollFd`.
     */
    bool reconnected();

private:
    struct Impl;
    explicit PpsFile(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

/** Names of all objects below /pps, sorted, without the "/pps/". */
Result<std::vector<std::string>> ppsList(const std::string& socket);
/** Deletes the object `path`. */
Status ppsUnlink(const std::string& socket, const std::string& path);

} // namespace zm
