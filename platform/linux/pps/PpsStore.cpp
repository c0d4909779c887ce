#include "platform/linux/pps/PpsStore.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zm {

namespace {

constexpr size_t DescriptorsOfObject = 200;
constexpr size_t DescriptorsOfFolder = 32;
// Bounds on what a client gone wild can make the service keep; far above what a head unit needs.
constexpr size_t ObjectsInAll = 4096;
constexpr size_t BytesInAll = 16u << 20;

std::string folderKey(const std::string& folder) {
    return folder.empty() ? ".all" : folder + "/.all";
}

std::string child(const std::string& folder, const std::string& leaf) {
    return folder.empty() ? leaf : folder + "/" + leaf;
}

} // namespace

PpsReader::~PpsReader() {
    const auto found = m_store.m_readers.find(m_path.name);
    std::erase(found->second, this);
    if (found->second.empty()) {
        m_store.m_readers.erase(found);
    }
}

void PpsReader::announce() {
    if (!m_told && onReadable && m_access != PpsWriteOnly) {
        m_told = true;
        onReadable();
    }
}

void PpsReader::tell(const std::string& leaf, const PpsChange& change) {
    if (m_access == PpsWriteOnly) {
        return;
    }
    if (!m_path.delta) {
        if (m_path.wholeFolder() && !m_fresh && std::ranges::find(m_changed, leaf) == m_changed.end()) {
            m_changed.push_back(leaf);
        }
    } else if (!m_fresh && !m_overflowed) {
        m_queued += change.text.size();
        m_overflowed = m_queued > m_path.backlog;
        m_overflowed ? m_queue.clear() : m_queue.push_back(change);
    }
    announce();
}

Result<PpsChanges> PpsReader::read() {
    if (m_access == PpsWriteOnly) {
        return Error{m_path.name + ": opened for writing only (EBADF)"};
    }
    m_told = false;
    PpsChanges result{{}, m_store.m_number};
    if (m_path.delta) {
        result.changes = takeChanges();
    } else if (auto whole = takeWhole(); !whole.empty()) {
        result.changes.push_back({m_store.m_number, std::move(whole)});
    }
    return result;
}

std::vector<PpsChange> PpsReader::takeChanges() {
    m_queued = 0;
    auto changes = std::exchange(m_queue, {});
    if (!m_fresh && !m_overflowed) {
        return changes;
    }
    std::string text = m_overflowed ? "|@" + m_path.leaf + "\n" : "";
    m_fresh = m_overflowed = false;
    if (m_path.wholeFolder()) {
        text += m_store.folderText(m_path.folder);
    } else {
        text += m_object ? m_object->text() : "-@" + m_path.leaf + "\n";
    }
    return text.empty() ? std::vector<PpsChange>()
                        : std::vector{PpsChange{m_store.m_number, std::move(text)}};
}

std::string PpsReader::takeWhole() {
    if (!m_path.wholeFolder()) {
        return m_object ? m_object->text() : std::string();
    }
    if (m_fresh) {
        m_changed = m_store.folderNames(m_path.folder);
        m_fresh = false;
    }
    if (m_changed.empty()) {
        return {};
    }
    const std::string leaf = m_changed.front();
    m_changed.pop_front();
    if (!m_changed.empty()) {
        announce();
    }
    const auto found = m_store.m_objects.find(child(m_path.folder, leaf));
    return found == m_store.m_objects.end() ? "-@" + leaf + "\n" : found->second->text();
}

Status PpsReader::writable() const {
    if (m_access == PpsReadOnly) {
        return Error{m_path.name + ": opened for reading only (EBADF)"};
    }
    if (!m_object) {
        return Error{m_path.name +
                     (m_path.wholeFolder() ? ": cannot be written (EINVAL)" : ": deleted (ENOENT)")};
    }
    return ok();
}

Status PpsReader::write(std::string_view text) {
    if (auto allowed = writable(); !allowed) {
        return allowed;
    }
    if (m_store.m_bytes + text.size() > BytesInAll) {
        return Error{m_path.name + ": no space for more objects (ENOSPC)"};
    }
    m_store.m_bytes -= m_object->size();
    auto change = m_object->merge(text);
    m_store.m_bytes += m_object->size();
    if (!change) {
        return change.failure();
    }
    if (!change->empty()) {
        m_store.publish(m_path, *change, this);
    }
    return ok();
}

Status PpsReader::truncate() {
    if (auto allowed = writable(); !allowed) {
        return allowed;
    }
    m_store.m_bytes -= m_object->size();
    m_object->clear();
    m_store.m_bytes += m_object->size();
    m_store.publish(m_path, "#@" + m_path.leaf + "\n", this);
    return ok();
}

Status PpsStore::makeFolders(const std::string& folder) {
    for (size_t end = 0; end != folder.npos && !folder.empty();) {
        end = folder.find('/', end + 1);
        const auto part = folder.substr(0, end);
        if (m_objects.contains(part)) {
            return Error{part + ": not a folder (ENOTDIR)"};
        }
        if (!m_folders.contains(part) && m_folders.size() >= ObjectsInAll) {
            return Error{part + ": too many folders (ENOSPC)"};
        }
        m_folders.insert(part);
    }
    return ok();
}

Result<PpsObject*> PpsStore::create(const PpsPath& path, const std::string& whole) {
    if (auto made = makeFolders(path.folder); !made) {
        return Error{whole + ": " + made.error()};
    }
    if (m_objects.size() >= ObjectsInAll) {
        return Error{whole + ": too many objects (ENOSPC)"};
    }
    auto& object = m_objects[path.name];
    object = std::make_unique<PpsObject>(path.leaf);
    m_bytes += object->size();
    // Descriptors of a deleted object of that name live on with the new one.
    if (const auto readers = m_readers.find(path.name); readers != m_readers.end()) {
        for (auto* reader : readers->second) {
            reader->m_object = object.get();
        }
    }
    publish(path, "+@" + path.leaf + "\n", nullptr);
    return object.get();
}

Result<std::unique_ptr<PpsReader>> PpsStore::open(const std::string& whole, int flags) {
    auto path = parsePpsPath(whole);
    if (!path) {
        return path.failure();
    }
    const int access = flags & PpsAccessMask;
    if (access == PpsAccessMask || (flags & ~(PpsAccessMask | PpsCreate | PpsTruncate)) != 0) {
        return Error{whole + ": bad flags " + std::to_string(flags) + " (EINVAL)"};
    }
    const auto readers = m_readers.find(path->name);
    const size_t limit = path->wholeFolder() ? DescriptorsOfFolder : DescriptorsOfObject;
    if (readers != m_readers.end() && readers->second.size() >= limit) {
        return Error{whole + ": too many open descriptors (EMFILE)"};
    }
    PpsObject* object = nullptr;
    bool created = false;
    if (path->wholeFolder()) {
        if (flags & PpsCreate) {
            if (auto made = makeFolders(path->folder); !made) {
                return Error{whole + ": " + made.error()};
            }
        }
        if (!m_folders.contains(path->folder)) {
            return Error{whole + ": no such folder (ENOENT)"};
        }
    } else if (m_folders.contains(path->name)) {
        return Error{whole + ": is a folder (EISDIR)"};
    } else if (const auto found = m_objects.find(path->name); found != m_objects.end()) {
        object = found->second.get();
    } else if (flags & PpsCreate) {
        auto made = create(*path, whole);
        if (!made) {
            return made.failure();
        }
        object = *made;
        created = true;
    } else {
        return Error{whole + ": no such object (ENOENT)"};
    }
    std::unique_ptr<PpsReader> reader(new PpsReader(*this, *path, access));
    reader->m_object = object;
    m_readers[path->name].push_back(reader.get());
    if ((flags & PpsTruncate) && object && access != PpsReadOnly && !created) {
        if (auto emptied = reader->truncate(); !emptied) {
            return emptied.failure();
        }
    }
    return reader;
}

Status PpsStore::unlink(const std::string& whole) {
    auto path = parsePpsPath(whole);
    if (!path) {
        return path.failure();
    }
    const auto found = m_objects.find(path->name);
    if (found == m_objects.end()) {
        return Error{whole + ": no such object (ENOENT)"};
    }
    if (const auto readers = m_readers.find(path->name); readers != m_readers.end()) {
        for (auto* reader : readers->second) {
            reader->m_object = nullptr;
        }
    }
    m_bytes -= found->second->size();
    m_objects.erase(found);
    publish(*path, "-@" + path->leaf + "\n", nullptr);
    return ok();
}

// Numbers go on from the time since the machine started: changes never come as fast as nanoseconds, so a
// service that is started anew begins above those of the one before.
PpsStore::PpsStore()
    : m_number(static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count())) {}

void PpsStore::publish(const PpsPath& path, const std::string& text, const PpsReader* writer) {
    const PpsChange change{++m_number, text};
    for (const auto& key : {path.name, folderKey(path.folder)}) {
        if (const auto found = m_readers.find(key); found != m_readers.end()) {
            for (auto* reader : found->second) {
                if (reader != writer) {
                    reader->tell(path.leaf, change);
                }
            }
        }
    }
    if (onChange) {
        onChange(path.name, text);
    }
}

std::deque<std::string> PpsStore::folderNames(const std::string& folder) const {
    std::deque<std::string> result;
    for (const auto& [name, object] : m_objects) {
        if (child(folder, object->leaf()) == name) {
            result.push_back(object->leaf());
        }
    }
    return result;
}

std::string PpsStore::folderText(const std::string& folder) const {
    std::string result;
    for (const auto& leaf : folderNames(folder)) {
        result += m_objects.at(child(folder, leaf))->text();
    }
    return result;
}

std::vector<std::string> PpsStore::names() const {
    std::vector<std::string> result;
    for (const auto& entry : m_objects) {
        result.push_back(entry.first);
    }
    return result;
}

} // namespace zm
