#pragma once

#include "base/Mutex.h"
#include "base/Result.h"
#include "services/disc/model/Contents.h"

#include <atomic>
#include <memory>
#include <string>
#include <utility>

struct sqlite3;

namespace zm::disc::library {

/**
 * The database file in which the application looks up files and folders. It is made once and from then on
 * only refilled, so that readers that hold it open see each disc. Any thread; calls take turns.
 */
class Catalogue {
public:
    /** Opens or makes `file` with empty tables; a file that is not a usable database is replaced. */
    static Result<std::unique_ptr<Catalogue>> open(const std::string& file);
    ~Catalogue();
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

    /** Empties the tables; makes the file anew if it is not there any more or cannot be emptied. */
    Status clear();
    /** Whether the file is still the one that was opened. */
    bool intact();
    /** Adds all files and folders of one kind in one transaction;
     * none of them when `cancelled` becomes true. */
    Status write(const model::Contents& contents, model::MediaKind kind, const std::atomic<bool>& cancelled);

private:
    explicit Catalogue(std::string file) : m_file(std::move(file)) {}
    Status begin();
    Status reopen() ZM_REQUIRES(m_mutex);
    Status prepare() ZM_REQUIRES(m_mutex);
    bool isOpenedFile() const ZM_REQUIRES(m_mutex);
    Status run(const char* statement) ZM_REQUIRES(m_mutex);
    Status failure(const char* what) ZM_REQUIRES(m_mutex);
    Status insertFolders(const model::Contents& contents, model::MediaKind kind) ZM_REQUIRES(m_mutex);
    Status insertFiles(const model::Contents& contents, model::MediaKind kind,
                       const std::atomic<bool>& cancelled) ZM_REQUIRES(m_mutex);

    std::string m_file;
    Mutex m_mutex;
    sqlite3* m_database ZM_GUARDED_BY(m_mutex) = nullptr;
    /** Device and number of the file that is open. */
    std::pair<uint64_t, uint64_t> m_identity ZM_GUARDED_BY(m_mutex);
};

} // namespace zm::disc::library
