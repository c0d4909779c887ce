// Disc images: ISO 9660 with Joliet and Rock Ridge. An image is mostly zeros, so the input says what else
// stands in it: one byte for the block, counted from the first that means something, two for the place in it
// (low byte first), one for the number of bytes that follow.
#include "fuzz/formats/IsoImage.h"
#include "fuzz/support/Check.h"
#include "services/disc/medium/IsoDirectory.h"
#include "services/disc/medium/IsoNumbers.h"

#include <algorithm>
#include <deque>
#include <set>

using namespace zm;
using namespace zm::disc::medium;
using namespace zm::fuzz;

namespace {

constexpr size_t FirstBlock = 16;
constexpr size_t Blocks = 16;
constexpr int MostFolders = 32;

class Image : public ByteReader {
public:
    explicit Image(std::span<const uint8_t> patches) : m_bytes((FirstBlock + Blocks) * IsoBlockSize, '\0') {
        constexpr size_t Header = 4;
        while (patches.size() >= Header) {
            const size_t place = (patches[1] | patches[2] << 8) % IsoBlockSize;
            const size_t start = (FirstBlock + patches[0] % Blocks) * IsoBlockSize + place;
            const size_t count =
                std::min({size_t{patches[3]}, patches.size() - Header, m_bytes.size() - start});
            std::copy_n(patches.begin() + Header, count,
                        m_bytes.begin() + static_cast<std::ptrdiff_t>(start));
            patches = patches.subspan(Header + count);
        }
    }

    uint64_t size() const override { return m_bytes.size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        if (offset >= m_bytes.size()) {
            return size_t{0};
        }
        return m_bytes.copy(buffer.data(), buffer.size(), offset);
    }

private:
    std::string m_bytes;
};

} // namespace

const zm::fuzz::Format& zm::fuzz::format() {
    return isoImage();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Image image({data, size});
    const auto volume = readIsoVolume(image);
    if (!volume) {
        return 0;
    }
    std::deque<IsoExtent> folders{volume->root};
    std::set<uint64_t> seen;
    for (int count = 0; !folders.empty() && count < MostFolders; ++count) {
        const auto extent = folders.front();
        folders.pop_front();
        const auto records = readIsoDirectory(image, *volume, extent);
        if (!records) {
            check(!records.error().empty(), "a failure says why");
            continue;
        }
        for (const auto& record : *records) {
            check(!record.name.empty(), "a record has a name");
            check(record.extent.offset <= image.size(), "a record begins inside the image");
            if (record.type == Entry::Type::Folder && seen.insert(record.extent.offset).second) {
                folders.push_back(record.extent);
            }
        }
    }
    return 0;
}
