#include "services/disc/cover/CoverCache.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace zm::disc::cover {

namespace fs = std::filesystem;

CoverCache::CoverCache(std::string folder, uint64_t mostBytes)
    : m_folder(std::move(folder)), m_mostBytes(mostBytes) {}

CoverCache::~CoverCache() {
    close();
}

std::optional<std::string> CoverCache::find(const std::string& key) {
    MutexLock lock(m_mutex);
    const auto kept =
        std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept& each) { return each.key == key; });
    if (kept == m_kept.end()) {
        return std::nullopt;
    }
    std::error_code unknown;
    if (!fs::exists(pathOf(key), unknown)) {
        m_kept.erase(kept);
        return std::nullopt;
    }
    m_kept.splice(m_kept.end(), m_kept, kept);
    return pathOf(key);
}

Result<std::string> CoverCache::keep(const std::string& key, const std::string& bytes) {
    MutexLock lock(m_mutex);
    if (!m_open) {
        return Error{m_folder + ": is no longer used"};
    }
    std::error_code failed;
    fs::create_directories(m_folder, failed);
    const std::string path = pathOf(key);
    const std::string unfinished = path + ".part";
    std::ofstream file(unfinished, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file || std::rename(unfinished.c_str(), path.c_str()) != 0) {
        Error error = systemError(path);
        ::unlink(unfinished.c_str());
        return error;
    }
    std::erase_if(m_kept, [&](const Kept& each) { return each.key == key; });
    m_kept.push_back({key, bytes.size()});
    makeRoom();
    return path;
}

// The latest one stays in any case.
void CoverCache::makeRoom() {
    uint64_t all = 0;
    for (const Kept& each : m_kept) {
        all += each.bytes;
    }
    while (all > m_mostBytes && m_kept.size() > 1) {
        all -= m_kept.front().bytes;
        ::unlink(pathOf(m_kept.front().key).c_str());
        m_kept.pop_front();
    }
}

void CoverCache::close() {
    MutexLock lock(m_mutex);
    m_open = false;
    m_kept.clear();
    std::error_code failed;
    fs::remove_all(m_folder, failed);
}

} // namespace zm::disc::cover
