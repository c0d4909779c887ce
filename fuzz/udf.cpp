// Disc images: UDF. An image is mostly zeros, so the input says what else stands in it: one byte for the block, of those
// that mean something, two for the place in it (low byte first), two for the number of bytes that follow.
#include "fuzz/support/Check.h"
#include "services/disc/medium/UdfMedium.h"

#include <algorithm>
#include <deque>

using namespace zm;
using namespace zm::disc::medium;
using namespace zm::fuzz;

namespace {

constexpr size_t BlockBytes = 2048;
constexpr size_t Blocks = 400;
constexpr int MostFolders = 16;
constexpr size_t MostEntries = 64;

// Recognition, descriptors, anchor, partition.
size_t blockOf(uint8_t number) {
    constexpr size_t Recognition = 4;
    constexpr size_t Descriptors = 12;
    constexpr size_t Rest = 64;
    return number < Recognition    ? 16 + number
           : number < Descriptors  ? 32 + number - Recognition
           : number == Descriptors ? 256
                                   : 300 + (number - Descriptors - 1) % Rest;
}

class Image : public ByteReader {
public:
    explicit Image(const std::string& bytes) : m_bytes(bytes) {}
    uint64_t size() const override { return m_bytes.size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        return offset >= m_bytes.size() ? size_t{0} : m_bytes.copy(buffer.data(), buffer.size(), offset);
    }

private:
    const std::string& m_bytes;
};

std::string imageOf(std::span<const uint8_t> patches) {
    constexpr size_t Header = 5;
    std::string bytes(Blocks * BlockBytes, '\0');
    while (patches.size() >= Header) {
        const size_t start = blockOf(patches[0]) * BlockBytes + (patches[1] | patches[2] << 8) % BlockBytes;
        const size_t count = std::min({static_cast<size_t>(patches[3] | patches[4] << 8),
                                       patches.size() - Header, bytes.size() - start});
        std::copy_n(patches.begin() + Header, count, bytes.begin() + static_cast<std::ptrdiff_t>(start));
        patches = patches.subspan(Header + count);
    }
    return bytes;
}

void putShort(std::string& bytes, size_t at, unsigned value) {
    bytes[at] = static_cast<char>(value);
    bytes[at + 1] = static_cast<char>(value >> 8);
}

unsigned shortAt(const std::string& bytes, size_t at) {
    return static_cast<uint8_t>(bytes[at]) | static_cast<unsigned>(static_cast<uint8_t>(bytes[at + 1])) << 8;
}

// The sums of the descriptor at `at` become right: that of what stands behind its tag, and that of the tag.
void seal(std::string& bytes, size_t at) {
    constexpr size_t TagBytes = 16;
    const size_t end = std::min(at + TagBytes + shortAt(bytes, at + 10), bytes.size());
    unsigned sum = 0;
    for (size_t i = at + TagBytes; i < end; ++i) {
        sum ^= static_cast<unsigned>(static_cast<uint8_t>(bytes[i])) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 0x8000 ? sum << 1 ^ 0x1021 : sum << 1) & 0xffff;
        }
    }
    putShort(bytes, at + 8, sum);
    bytes[at + 4] = 0;
    unsigned tag = 0;
    for (size_t i = at; i < at + TagBytes; ++i) {
        tag += static_cast<uint8_t>(bytes[i]);
    }
    bytes[at + 4] = static_cast<char>(tag);
}

// What is damaged by its own sum is left out, so that most inputs get sums that are right: descriptions of files, and the
// names behind each other in a folder.
void sealFiles(std::string& bytes) {
    constexpr unsigned Name = 257;
    constexpr unsigned LastTag = 266;
    constexpr size_t NameBytes = 38;
    for (size_t block = 0; block + BlockBytes <= bytes.size(); block += BlockBytes) {
        const size_t end = block + BlockBytes;
        if (const unsigned tag = shortAt(bytes, block); tag > Name && tag <= LastTag) {
            seal(bytes, block);
        }
        for (size_t at = block; at + NameBytes <= end && shortAt(bytes, at) == Name;) {
            seal(bytes, at);
            const size_t size = NameBytes + static_cast<uint8_t>(bytes[at + 19]) + shortAt(bytes, at + 36);
            at += (size + 3) / 4 * 4;
        }
    }
}

void readFile(Medium& medium, const std::string& path, uint64_t size) {
    auto reader = medium.open(path);
    if (!reader) {
        return;
    }
    check((*reader)->size() == size, "a file is as large as its folder says");
    std::string buffer(5000, '\0');
    for (const uint64_t place : {uint64_t{0}, uint64_t{1000}, size - std::min<uint64_t>(size, 10)}) {
        const auto count = (*reader)->readAt(place, buffer);
        check(!count || *count <= buffer.size(), "no more is read than was asked for");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string bytes = imageOf({data, size});
    constexpr size_t LeftAsItIs = 4;
    if (size % LeftAsItIs != 0) {
        sealFiles(bytes);
    }
    Image image(bytes);
    const auto volume = findUdfVolume(image);
    if (!volume) {
        return 0;
    }
    const auto opener = [&](const std::string&, const IsoExtent&) {
        return Result<std::unique_ptr<ByteReader>>(std::make_unique<Image>(bytes));
    };
    const auto medium = UdfMedium::openImage("image", opener, *volume);
    if (!medium) {
        check(!medium.error().empty(), "a failure says why");
        return 0;
    }
    std::deque<std::string> folders{""};
    for (int count = 0; !folders.empty() && count < MostFolders; ++count) {
        const std::string folder = folders.front();
        folders.pop_front();
        auto entries = (*medium)->list(folder);
        if (!entries) {
            continue;
        }
        entries->resize(std::min(entries->size(), MostEntries));
        for (const auto& entry : *entries) {
            const std::string path = folder.empty() ? entry.rawName : folder + "/" + entry.rawName;
            if (entry.type == Entry::Type::Folder) {
                folders.push_back(path);
            } else {
                readFile(**medium, path, entry.size);
            }
        }
    }
    return 0;
}
