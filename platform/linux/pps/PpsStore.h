#pragma once

#include "base/Result.h"
#include "platform/linux/pps/PpsChange.h"
#include "platform/linux/pps/PpsObject.h"
#include "platform/linux/pps/PpsPath.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace zm {

class PpsStore;

/** One open descriptor as the service sees it: what it reads and what waits for it. */
class PpsReader {
public:
    ~PpsReader();
    PpsReader(const PpsReader&) = delete;
    PpsReader& operator=(const PpsReader&) = delete;

    /** Called when something has come that the next read returns; once until that read. */
    std::function<void()> onReadable;
    /** Calls `onReadable` unless it has been called since the last read; at first for the present state. */
    void announce();

    /** What `read` on the descriptor returns; without changes when there is nothing new. */
    Result<PpsChanges> read();
    /** One transaction; every other reader has been told when it returns. */
    Status write(std::string_view text);
    Status truncate();

private:
    friend class PpsStore;
    PpsReader(PpsStore& store, PpsPath path, int access)
        : m_store(store), m_path(std::move(path)), m_access(access) {}
    void tell(const std::string& leaf, const PpsChange& change);
    std::vector<PpsChange> takeChanges();
    std::string takeWhole();
    Status writable() const;

    PpsStore& m_store;
    PpsPath m_path;
    int m_access;
    PpsObject* m_object = nullptr; ///< null for a folder and while the object is deleted
    bool m_fresh = true;           ///< the next read gives the present state
    bool m_overflowed = false;
    bool m_told = false;
    std::vector<PpsChange> m_queue;    ///< changes of a delta reader
    size_t m_queued = 0;               ///< bytes of their texts
    std::deque<std::string> m_changed; ///< objects that a full reader of a folder has yet to see
};

/** All objects and all descriptors, without sockets. One thread. */
class PpsStore {
public:
    PpsStore();

    /** Opens `path` with `flags` in the target's numbers. The store must outlive the reader. */
    Result<std::unique_ptr<PpsReader>> open(const std::string& path, int flags);
    Status unlink(const std::string& path);
    /** Names of all objects, sorted. */
    std::vector<std::string> names() const;

    /** Told of each change: object and text. */
    std::function<void(const std::string& object, const std::string& text)> onChange;

private:
    friend class PpsReader;
    /** Tells all who read the object or its folder, except `writer`. */
    void publish(const PpsPath& path, const std::string& text, const PpsReader* writer);
    std::string folderText(const std::string& folder) const;
    std::deque<std::string> folderNames(const std::string& folder) const;
    Result<PpsObject*> create(const PpsPath& path, const std::string& whole);
    Status makeFolders(const std::string& folder);

    std::map<std::string, std::unique_ptr<PpsObject>> m_objects;
    std::set<std::string> m_folders{""};
    std::map<std::string, std::vector<PpsReader*>> m_readers; ///< by object name or "FOLDER/.all"
    size_t m_bytes = 0;
    uint64_t m_number; ///< of the latest change
};

} // namespace zm
