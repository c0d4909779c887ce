#pragma once

#include "base/Mutex.h"
#include "base/Result.h"

#include <cstdint>
#include <list>
#include <optional>
#include <string>

namespace zm::disc::cover {

/**
 * The covers of one disc, as files in a folder that is made with it and goes with it. What was used least recently makes
 * way when they get too large together. Any thread.
 */
class CoverCache {
public:
    CoverCache(std::string folder, uint64_t mostBytes);
    ~CoverCache();
    CoverCache(const CoverCache&) = delete;
    CoverCache& operator=(const CoverCache&) = delete;

    /** The path of the file that is kept under `key`; nothing if it is not there any more. */
    std::optional<std::string> find(const std::string& key);
    /** Keeps `bytes` in a file and gives its path. An error once it is closed, and when it cannot be written. */
    Result<std::string> keep(const std::string& key, const std::string& bytes);
    /** Deletes all files; nothing is kept from now on. */
    void close();

private:
    struct Kept {
        std::string key;
        uint64_t bytes;
    };
    std::string pathOf(const std::string& key) const { return m_folder + "/" + key + ".png"; }
    void makeRoom() ZM_REQUIRES(m_mutex);

    const std::string m_folder;
    const uint64_t m_mostBytes;
    Mutex m_mutex;
    std::list<Kept> m_kept ZM_GUARDED_BY(m_mutex); ///< what was used last comes last
    bool m_open ZM_GUARDED_BY(m_mutex) = true;
};

} // namespace zm::disc::cover
