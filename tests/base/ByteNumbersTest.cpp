#include "base/ByteNumbers.h"

#include <gtest/gtest.h>

#include <span>
#include <string_view>
#include <vector>

namespace zm::test {

TEST(ByteNumbers, AreReadInBothOrders) {
    const std::string_view text("\x01\x02\xFE\xFF\x05", 5);
    EXPECT_EQ(bigEndian(text, 0, 2), 0x0102u);
    EXPECT_EQ(littleEndian(text, 0, 2), 0x0201u);
    EXPECT_EQ(bigEndian(text, 1, 4), 0x02FEFF05u);
    EXPECT_EQ(littleEndian(text, 1, 4), 0x05FFFE02u);
    const std::vector<uint8_t> bytes(8, 0xFF);
    EXPECT_EQ(bigEndian(std::span(bytes), 0, 8), ~uint64_t{0});
    EXPECT_EQ(littleEndian(std::span(bytes), 0, 8), ~uint64_t{0});
}

TEST(ByteNumbers, CountMissingBytesAsNothing) {
    const std::string_view text("\x01\x02", 2);
    EXPECT_EQ(bigEndian(text, 1, 2), 0x0200u);
    EXPECT_EQ(littleEndian(text, 1, 2), 0x0002u);
    EXPECT_EQ(bigEndian(text, 2, 4), 0u);
    EXPECT_EQ(littleEndian(text, 100, 4), 0u);
}

} // namespace zm::test
