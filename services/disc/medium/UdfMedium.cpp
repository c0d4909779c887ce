#include "services/disc/medium/UdfMedium.h"

#include "services/disc/log/Log.h"
#include "services/disc/medium/UdfNames.h"
#include "services/disc/medium/WindowReader.h"

#include <udfread/blockinput.h>
#include <udfread/udfread.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace zm::disc::medium {

namespace {

constexpr uint64_t UdfBlockSize = UDF_BLOCK_SIZE;

// The library stops looking for its volumeMarks at the first block without one, such as that of an ISO 9660 part which was
// taken away, or at that part's own end mark. What they say has been found out before, so that it is shown them, with their
// type and version around the name, in their first place.
constexpr uint32_t FirstMark = 16;
constexpr std::array<std::string_view, 3> volumeMarks{
    std::string_view("\0BEA01\1", 7), std::string_view("\0NSR02\1", 7), std::string_view("\0TEA01\1", 7)};

void showMarks(uint32_t first, std::span<char> blocks) {
    for (uint32_t i = 0; i < volumeMarks.size(); ++i) {
        const uint64_t place = (uint64_t{FirstMark} + i - first) * UdfBlockSize;
        if (first <= FirstMark + i && place < blocks.size()) {
            std::copy(volumeMarks[i].begin(), volumeMarks[i].end(),
                      blocks.begin() + static_cast<std::ptrdiff_t>(place));
        }
    }
}

/** Gives the library the image's blocks. It asks for them one by one, what it says of files mostly for neighbours. */
struct Blocks : udfread_block_input {
    Blocks(std::string name, std::unique_ptr<ByteReader> bytes)
        : image(std::move(name)), reader(std::move(bytes)) {
        close = nullptr;
        read = [](udfread_block_input* self, uint32_t block, void* buffer, uint32_t count, int) {
            auto& source = *static_cast<Blocks*>(self);
            const std::span<char> blocks(static_cast<char*>(buffer), size_t{count} * UdfBlockSize);
            const auto done = source.near.readAt(block * UdfBlockSize, blocks);
            showMarks(block, blocks);
            // The library goes by the tags' sums alone, and would take what is damaged behind them for another file.
            if (done && hideDamage(blocks.first(*done)) && !std::exchange(source.damageTold, true)) {
                logWarning("%s: damaged in what it says of its files: some are left out\n",
                           source.image.c_str());
            }
            return done ? static_cast<int>(*done / UdfBlockSize) : -1;
        };
        size = [](udfread_block_input* self) {
            const uint64_t blocks = static_cast<Blocks*>(self)->reader->size() / UdfBlockSize;
            return static_cast<uint32_t>(std::min<uint64_t>(blocks, std::numeric_limits<uint32_t>::max()));
        };
    }
    std::string image;
    std::unique_ptr<ByteReader> reader;
    WindowReader near{*reader};
    bool damageTold = false;
};

std::string whyUnread(const UdfVolume& volume) {
    if (volume.isVirtual) {
        return volume.name() + " written in packets to a disc that can be written once is not read";
    }
    if (volume.isSparable) {
        return volume.name() + " written in packets to a rewritable disc is not read";
    }
    if (volume.blockSize != 0 && volume.blockSize != UdfBlockSize) {
        return volume.name() + " with blocks of " + std::to_string(volume.blockSize) + " bytes is not read";
    }
    if (volume.badRootBytes) {
        return volume.name() + ": damaged, what says where the root is has " +
               std::to_string(*volume.badRootBytes) + " bytes";
    }
    return volume.name() + ": damaged, or of a kind that is not read";
}

} // namespace

struct UdfMedium::Volume {
    Volume(std::string name, std::unique_ptr<ByteReader> image) : blocks(std::move(name), std::move(image)) {}
    ~Volume() { udfread_close(library); }
    Volume(const Volume&) = delete;
    Volume& operator=(const Volume&) = delete;

    Blocks blocks;
    udfread* library = udfread_init();
};

class UdfMedium::Folder {
public:
    explicit Folder(UDFDIR* folder) : m_folder(folder, &udfread_closedir) {}
    UDFDIR* get() const { return m_folder.get(); }
    /** The names in it, as the library spells them, and whether they are folders. */
    std::vector<std::pair<std::string, bool>> names() const {
        std::vector<std::pair<std::string, bool>> names;
        udfread_rewinddir(get());
        udfread_dirent entry{};
        while (udfread_readdir(get(), &entry)) {
            const std::string name = entry.d_name;
            const bool shown = !name.empty() && name != "." && name != ".." &&
                               name.find('/') == std::string::npos && name.find('\\') == std::string::npos;
            if (shown && (entry.d_type == UDF_DT_DIR || entry.d_type == UDF_DT_REG)) {
                names.emplace_back(name, entry.d_type == UDF_DT_DIR);
            }
        }
        return names;
    }

private:
    std::unique_ptr<UDFDIR, void (*)(UDFDIR*)> m_folder;
};

class UdfMedium::File {
public:
    explicit File(UDFFILE* file) : m_file(file, &udfread_file_close) {}
    UDFFILE* get() const { return m_file.get(); }
    uint64_t size() const { return static_cast<uint64_t>(std::max<int64_t>(0, udfread_file_size(get()))); }

private:
    std::unique_ptr<UDFFILE, void (*)(UDFFILE*)> m_file;
};

/** Reads a file's blocks by itself where the library says that they are. */
class UdfMedium::FileReader : public ByteReader {
public:
    FileReader(std::shared_ptr<Volume> volume, File file, std::unique_ptr<ByteReader> image)
        : m_volume(std::move(volume)), m_file(std::move(file)), m_image(std::move(image)),
          m_size(m_file.size()) {
        // A small file may stand inside its own description.
        if (m_size < UdfBlockSize) {
            m_inside.resize(static_cast<size_t>(m_size));
            const auto count = udfread_file_read(m_file.get(), m_inside.data(), m_inside.size());
            m_inside.resize(count > 0 ? static_cast<size_t>(count) : 0);
        }
    }

    uint64_t size() const override { return m_size; }

    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        if (offset >= m_size) {
            return size_t{0};
        }
        if (!m_inside.empty()) {
            return offset < m_inside.size() ? m_inside.copy(buffer.data(), buffer.size(), offset) : size_t{0};
        }
        const auto wanted = static_cast<size_t>(std::min<uint64_t>(buffer.size(), m_size - offset));
        size_t done = 0;
        while (done < wanted) {
            const auto count = readRun(offset + done, buffer.subspan(done, wanted - done));
            if (!count || *count == 0) {
                return count ? Result<size_t>(done) : count;
            }
            done += *count;
        }
        return done;
    }

private:
    uint64_t placeOf(uint64_t block) const {
        return udfread_file_lba(m_file.get(), static_cast<uint32_t>(block));
    }

    // As much as lies together in the image.
    Result<size_t> readRun(uint64_t offset, std::span<char> buffer) {
        const uint64_t block = offset / UdfBlockSize;
        const uint64_t place = placeOf(block);
        const auto skip = static_cast<size_t>(offset % UdfBlockSize);
        size_t bytes = std::min(buffer.size(), static_cast<size_t>(UdfBlockSize) - skip);
        for (uint64_t next = 1; bytes < buffer.size(); ++next) {
            if (placeOf(block + next) != (place == 0 ? 0 : place + next)) {
                break;
            }
            bytes = std::min(buffer.size(), bytes + static_cast<size_t>(UdfBlockSize));
        }
        if (place == 0) {
            std::fill_n(buffer.begin(), bytes, '\0'); // never written
            return bytes;
        }
        return m_image->readAt(place * UdfBlockSize + skip, buffer.first(bytes));
    }

    std::shared_ptr<Volume> m_volume;
    File m_file;
    std::unique_ptr<ByteReader> m_image;
    uint64_t m_size;
    std::string m_inside;
};

UdfMedium::UdfMedium(std::string image, IsoMedium::Opener opener, std::shared_ptr<Volume> volume)
    : m_image(std::move(image)), m_opener(std::move(opener)), m_volume(std::move(volume)) {
    const char* label = udfread_get_volume_id(m_volume->library);
    m_label = plainUtf8(label ? label : "");
}

Result<std::shared_ptr<Medium>>
UdfMedium::openImage(const std::string& image, const IsoMedium::Opener& opener, const UdfVolume& volume) {
    // The library is not given what it would search for long, nor what it alone would find.
    if (volume.blockSize == 0 || volume.badRootBytes) {
        return Error{image + ": " + whyUnread(volume)};
    }
    auto reader = opener(image, {0, UINT64_MAX});
    if (!reader) {
        return reader.failure();
    }
    auto opened = std::make_shared<Volume>(image, std::move(*reader));
    if (!opened->library || udfread_open_input(opened->library, &opened->blocks) < 0) {
        return Error{image + ": " + whyUnread(volume)};
    }
    std::shared_ptr<UdfMedium> medium(new UdfMedium(image, opener, std::move(opened)));
    if (const auto root = medium->list(""); !root) {
        return Error{image + ": " + whyUnread(volume)};
    }
    medium->describe({volume.name(), {}, {}});
    return std::shared_ptr<Medium>(std::move(medium));
}

UdfMedium::~UdfMedium() = default;

// Names are looked up as the library spells them, which differs where they have rare characters.
Result<UdfMedium::Folder> UdfMedium::openFolder(const std::string& path) const {
    const Error unreadable{m_image + ": " + (path.empty() ? "" : path + ": ") + "folder cannot be read"};
    Folder folder(udfread_opendir(m_volume->library, "/"));
    std::string_view left = path;
    while (folder.get() && !left.empty()) {
        const auto end = std::min(left.find('/'), left.size());
        const std::string name = rareUtf8(std::string(left.substr(0, end)));
        left.remove_prefix(std::min(left.size(), end + 1));
        folder = Folder(udfread_opendir_at(folder.get(), name.c_str()));
    }
    return folder.get() ? Result<Folder>(std::move(folder)) : unreadable;
}

Result<std::vector<Entry>> UdfMedium::list(const std::string& folder) {
    MutexLock lock(m_mutex);
    auto opened = openFolder(folder);
    if (!opened) {
        return opened.failure();
    }
    m_listed.clear();
    std::vector<Entry> entries;
    for (const auto& [name, isFolder] : opened->names()) {
        Entry entry{plainUtf8(name), isFolder ? Entry::Type::Folder : Entry::Type::File, {}};
        if (!isFolder) {
            File file(udfread_file_openat(opened->get(), name.c_str()));
            if (!file.get()) {
                continue;
            }
            entry.size = file.size();
            m_listed.insert_or_assign(folder.empty() ? entry.rawName : folder + "/" + entry.rawName,
                                      std::move(file));
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

// The library looks through a whole folder for a name, so that its files are kept from the listing on.
UdfMedium::File UdfMedium::find(const std::string& path) {
    if (auto listed = m_listed.extract(path)) {
        return std::move(listed.mapped());
    }
    const auto slash = path.rfind('/');
    const auto folder = openFolder(slash == std::string::npos ? "" : path.substr(0, slash));
    const std::string name = rareUtf8(path.substr(slash + 1));
    return File(folder ? udfread_file_openat(folder->get(), name.c_str()) : nullptr);
}

Result<std::unique_ptr<ByteReader>> UdfMedium::open(const std::string& file) {
    MutexLock lock(m_mutex);
    File found = find(file);
    if (!found.get()) {
        return Error{m_image + ": " + file + ": no such file"};
    }
    auto image = m_opener(m_image + ": " + file, {0, UINT64_MAX});
    if (!image) {
        return image;
    }
    return std::unique_ptr<ByteReader>(
        std::make_unique<FileReader>(m_volume, std::move(found), std::move(*image)));
}

} // namespace zm::disc::medium
