#include "services/disc/medium/IsoMedium.h"

#include "services/disc/log/Log.h"
#include "services/disc/medium/IsoNumbers.h"
#include "services/disc/medium/IsoSessions.h"
#include "services/disc/medium/WindowReader.h"
#include "services/disc/text/Charset.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

// A chain of links longer than that leads round in a circle; a disc with more links than that wants to keep us busy.
constexpr int MaxLinkSteps = 16;
constexpr int MaxLinks = 10000;

std::string nameForm(IsoVolume::Names names) {
    switch (names) {
    case IsoVolume::Names::RockRidge:
        return " with Rock Ridge";
    case IsoVolume::Names::Joliet:
        return " with Joliet";
    case IsoVolume::Names::Long:
        return ":1999";
    case IsoVolume::Names::Plain:
        break;
    }
    return "";
}

std::string join(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

// Where a link that stands in `folder` leads, from the root on; nothing if out of the disc.
std::optional<std::string> pathOf(const std::string& folder, const std::string& link) {
    std::vector<std::string> parts;
    const std::string whole = link.front() == '/' ? link : folder + "/" + link;
    std::string path;
    for (size_t begin = 0; begin < whole.size();) {
        const size_t end = std::min(whole.find('/', begin), whole.size());
        const std::string part = whole.substr(begin, end - begin);
        begin = end + 1;
        if (part == ".." && parts.empty()) {
            return std::nullopt;
        }
        if (part == "..") {
            parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
    }
    for (const auto& part : parts) {
        path = join(path, part);
    }
    return path;
}

} // namespace

IsoMedium::IsoMedium(std::string image, Opener opener, std::unique_ptr<ByteReader> reader, IsoVolume volume)
    : m_image(std::move(image)), m_opener(std::move(opener)), m_reader(std::move(reader)),
      m_volume(std::move(volume)) {
    m_folders[""] = m_volume.root;
}

Result<std::shared_ptr<Medium>> IsoMedium::openImage(const std::string& image, const Opener& opener) {
    auto reader = opener(image, {0, UINT64_MAX});
    if (!reader) {
        return reader.failure();
    }
    WindowReader near(**reader);
    const auto session = findNewestSession(near);
    const uint64_t shift = session.firstBlock * IsoBlockSize;
    if (shift > 0) {
        reader = std::unique_ptr<ByteReader>(std::make_unique<ShiftedReader>(std::move(*reader), shift));
    }
    auto volume = readIsoVolume(**reader, session.begin);
    if (!volume) {
        return Error{image + ": " + volume.error()};
    }
    const Opener shifted = [opener, shift](const std::string& name, const IsoExtent& extent) {
        const uint64_t before = shift - std::min(shift, extent.offset);
        return opener(name, {extent.offset + before - shift, extent.size - std::min(before, extent.size)});
    };
    const std::string newest = session.begin > session.firstBlock ? ", the newest of several sessions" : "";
    const std::string form = "ISO 9660" + nameForm(volume->names) + newest;
    std::shared_ptr<Medium> medium(new IsoMedium(image, shifted, std::move(*reader), std::move(*volume)));
    medium->describe({form, {}, {}});
    return medium;
}

// ---- links

// What is at `path`, from the root on.
std::optional<IsoRecord> IsoMedium::find(const std::string& path) {
    IsoRecord found{"", Entry::Type::Folder, m_volume.root, {}, {}};
    for (size_t begin = 0; begin < path.size();) {
        const size_t end = std::min(path.find('/', begin), path.size());
        const auto records = found.type == Entry::Type::Folder
                                 ? readIsoDirectory(*m_reader, m_volume, found.extent)
                                 : Error{"no folder"};
        if (!records) {
            return std::nullopt;
        }
        const auto record = std::find_if(records->begin(), records->end(), [&](const IsoRecord& each) {
            return path.compare(begin, end - begin, each.name) == 0;
        });
        if (record == records->end()) {
            return std::nullopt;
        }
        begin = end + 1;
        // A link on the way is followed by `resolve`; the path found so far is what it is relative to.
        if (!record->link.empty()) {
            IsoRecord link = *record;
            link.link = begin < path.size() ? join(link.link, path.substr(begin)) : link.link;
            link.name = path.substr(0, end);
            return link;
        }
        found = *record;
    }
    return found;
}

// What the link in `folder` stands for in the end; nothing if that does not exist or leads round in a circle.
std::optional<IsoRecord> IsoMedium::resolve(const std::string& folder, const std::string& link) {
    std::string from = folder;
    std::string to = link;
    for (int step = 0; step < MaxLinkSteps && m_links < MaxLinks; ++step, ++m_links) {
        const auto path = pathOf(from, to);
        const auto found = path ? find(*path) : std::nullopt;
        if (!found || found->link.empty()) {
            return found;
        }
        to = found->link;
        from = folderOf(found->name);
    }
    return std::nullopt;
}

Result<std::vector<Entry>> IsoMedium::list(const std::string& folder) {
    MutexLock lock(m_mutex);
    const auto known = m_folders.find(folder);
    if (known == m_folders.end()) {
        return Error{m_image + ": " + folder + ": no such folder"};
    }
    const auto records = readIsoDirectory(*m_reader, m_volume, known->second);
    if (!records) {
        return Error{m_image + ": " + (folder.empty() ? "" : folder + ": ") + records.error()};
    }
    std::vector<Entry> entries;
    for (const auto& each : *records) {
        const auto target = each.link.empty() ? std::optional(each) : resolve(folder, each.link);
        if (!target) {
            logWarning("%s: %s: stands for what is not there\n", m_image.c_str(),
                       text::cleanText(join(folder, each.name)).c_str());
            continue;
        }
        IsoRecord record = *target;
        record.name = each.name;
        if (record.name == "." || record.name == ".." || record.name.find('/') != std::string::npos) {
            continue; // no name that a file could have
        }
        const bool isFolder = record.type == Entry::Type::Folder;
        const std::string path = join(folder, record.name);
        if (isFolder) {
            m_folders[path] = record.extent;
        } else {
            m_files[path] = {record.extent, record.compressed};
        }
        // Two names of one folder begin at the same place.
        const auto identity = isFolder ? std::pair<uint64_t, uint64_t>{1, record.extent.offset}
                                       : std::pair<uint64_t, uint64_t>{};
        const uint64_t size = record.compressed ? record.compressed->size : record.extent.size;
        entries.push_back({record.name, record.type, identity, size});
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> IsoMedium::open(const std::string& file) {
    File found;
    {
        MutexLock lock(m_mutex);
        const auto known = m_files.find(file);
        if (known == m_files.end()) {
            return Error{m_image + ": " + file + ": no such file"};
        }
        found = known->second;
    }
    const std::string name = m_image + ": " + file;
    auto bytes = m_opener(name, found.extent);
    return bytes && found.compressed ? openZisofs(std::move(*bytes), *found.compressed, name)
                                     : std::move(bytes);
}

} // namespace zm::disc::medium
