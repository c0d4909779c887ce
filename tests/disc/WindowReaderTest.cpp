#include "services/disc/medium/WindowReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace zm::test {

namespace {

using disc::medium::WindowReader;

/** Numbered bytes, of which some cannot be read; counts what it is asked. */
class CountedImage : public disc::medium::ByteReader {
public:
    explicit CountedImage(size_t size) : m_bytes(size) { std::iota(m_bytes.begin(), m_bytes.end(), 0); }
    uint64_t size() const override { return m_bytes.size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        ++reads;
        if (offset <= scratch && scratch < offset + buffer.size()) {
            return Error{"scratched"};
        }
        const size_t count = offset < m_bytes.size() ? std::min(buffer.size(), m_bytes.size() - offset) : 0;
        std::copy_n(m_bytes.data() + offset, count, buffer.data());
        return count;
    }
    int reads = 0;
    uint64_t scratch = UINT64_MAX;

private:
    std::vector<char> m_bytes;
};

Result<std::string> read(WindowReader& reader, uint64_t offset, size_t size) {
    std::string bytes(size, '\0');
    auto count = reader.readAt(offset, bytes);
    if (!count) {
        return count.failure();
    }
    bytes.resize(*count);
    return bytes;
}

} // namespace

TEST(WindowReader, ManyPlacesNearEachOtherCostOneRead) {
    CountedImage image(300000);
    WindowReader reader(image);
    for (uint64_t place = 65536; place < 131072; place += 2048) {
        EXPECT_EQ((*read(reader, place, 3))[2], static_cast<char>(place + 2));
    }
    EXPECT_EQ(image.reads, 1);
    EXPECT_EQ((*read(reader, 131070, 4)), std::string("\xFE\xFF\x00\x01", 4)) << "over two windows";
    EXPECT_EQ(read(reader, 0, 100000)->size(), 100000U) << "more than a window";
}

TEST(WindowReader, AScratchHidesNoOtherPlace) {
    CountedImage image(300000);
    image.scratch = 70000;
    WindowReader reader(image);
    EXPECT_EQ(*read(reader, 65536, 2), std::string("\0\1", 2));
    EXPECT_FALSE(read(reader, 69999, 2));
    EXPECT_EQ(*read(reader, 70001, 1), std::string(1, static_cast<char>(70001)));
}

TEST(WindowReader, AtTheEndThereAreFewerBytes) {
    CountedImage image(1000);
    WindowReader reader(image);
    EXPECT_EQ(reader.size(), 1000U);
    EXPECT_EQ(read(reader, 990, 20)->size(), 10U);
    EXPECT_EQ(read(reader, 990, 10)->size(), 10U);
    EXPECT_EQ(read(reader, 2000, 10)->size(), 0U);
}

} // namespace zm::test
