#include "services/disc/medium/IsoMedium.h"

#include "services/disc/medium/SliceReader.h"

#include <sys/stat.h>

#include <algorithm>

namespace zm::disc {

namespace {

std::string join(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

} // namespace

IsoMedium::IsoMedium(std::string image, Opener opener, std::unique_ptr<ByteReader> reader, IsoVolume volume)
    : m_image(std::move(image)), m_opener(std::move(opener)), m_reader(std::move(reader)),
      m_volume(std::move(volume)) {
    m_folders[""] = m_volume.root;
}

Result<std::shared_ptr<Medium>> IsoMedium::openImage(const std::string& image) {
    struct stat info {};
    if (::stat(image.c_str(), &info) != 0) {
        return systemError(image);
    }
    const auto bytes = static_cast<uint64_t>(info.st_size);
    return openImage(image, [image, bytes](const std::string& name, const IsoExtent& extent) {
        return openSlice(image, extent.offset, std::min(extent.size, bytes), name);
    });
}

Result<std::shared_ptr<Medium>> IsoMedium::openImage(const std::string& image, const Opener& opener) {
    auto reader = opener(image, {0, UINT64_MAX});
    if (!reader) {
        return reader.failure();
    }
    auto volume = readIsoVolume(**reader);
    if (!volume) {
        return Error{image + ": " + volume.error()};
    }
    return std::shared_ptr<Medium>(new IsoMedium(image, opener, std::move(*reader), std::move(*volume)));
}

Result<std::vector<Entry>> IsoMedium::list(const std::string& folder) {
    std::lock_guard lock(m_mutex);
    const auto known = m_folders.find(folder);
    if (known == m_folders.end()) {
        return Error{m_image + ": " + folder + ": no such folder"};
    }
    const auto records = readIsoDirectory(*m_reader, m_volume, known->second);
    if (!records) {
        return Error{m_image + ": " + folder + ": " + records.error()};
    }
    std::vector<Entry> entries;
    for (const auto& record : *records) {
        if (record.name == "." || record.name == ".." || record.name.find('/') != std::string::npos) {
            continue; // no name that a file could have
        }
        const bool isFolder = record.type == Entry::Type::Folder;
        (isFolder ? m_folders : m_files)[join(folder, record.name)] = record.extent;
        // Two names of one folder begin at the same place.
        const auto identity = isFolder ? std::pair<uint64_t, uint64_t>{1, record.extent.offset}
                                       : std::pair<uint64_t, uint64_t>{};
        entries.push_back({record.name, record.type, identity, record.extent.size});
    }
    return entries;
}

Result<std::unique_ptr<ByteReader>> IsoMedium::open(const std::string& file) {
    IsoExtent extent;
    {
        std::lock_guard lock(m_mutex);
        const auto known = m_files.find(file);
        if (known == m_files.end()) {
            return Error{m_image + ": " + file + ": no such file"};
        }
        extent = known->second;
    }
    return m_opener(m_image + ": " + file, extent);
}

} // namespace zm::disc
