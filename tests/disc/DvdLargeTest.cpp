#include "tests/disc/DvdFixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ios>

using namespace zm::test;

namespace {

constexpr uint64_t DvdBlock = 2048;
// Both layers of a disc are full.
constexpr uint64_t DiscBytes = 8'500'000'000;
constexpr uint32_t FarBlock = 4'000'000;
// Where the part of the image begins from which its newer file system counts.
constexpr uint32_t PartBegin = 257;

std::string bytesOf(uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(number >> shift);
    }
    return bytes;
}

uint32_t numberLowFirst(const std::string& bytes, size_t at) {
    uint32_t number = 0;
    for (size_t i = 4; i-- > 0;) {
        number = number << 8 | static_cast<uint8_t>(bytes[at + i]);
    }
    return number;
}

/** The image of `Menus`, whose film lies at the end of a disc of two layers. */
void writeLargeImage(const std::string& path) {
    std::string image = readFile(dvdImage(DvdKind::Menus));
    const size_t name = image.find("VTS_01_1.VOB;1");
    ASSERT_NE(name, std::string::npos);
    const size_t record = name - 33;
    const uint32_t begin = numberLowFirst(image, record + 2);
    const uint32_t size = numberLowFirst(image, record + 10);
    const std::string film = image.substr(begin * DvdBlock, size);
    std::string big = bytesOf(FarBlock);
    image.replace(record + 2, 4, big);
    std::reverse(big.begin(), big.end());
    image.replace(record + 6, 4, big);
    const size_t place = image.find(bytesOf(size) + bytesOf(begin - PartBegin));
    ASSERT_NE(place, std::string::npos);
    image.replace(place + 4, 4, bytesOf(FarBlock - PartBegin));
    // Nothing is left where it was.
    image.replace(begin * DvdBlock, film.size(), film.size(), '\0');
    std::ofstream stream(path, std::ios::binary);
    stream << image;
    stream.seekp(static_cast<std::streamoff>(FarBlock * DvdBlock));
    stream << film;
    stream.close();
    std::filesystem::resize_file(path, DiscBytes);
}

} // namespace

TEST_F(Dvd, AFilmInTheSecondLayerPlays) {
    TempFolder folder;
    const std::string path = folder / "large.iso";
    ASSERT_NO_FATAL_FAILURE(writeLargeImage(path));
    playDisc(path);
    nextMenu();
    touchButton(1);
    nextPlace(1, 1);
    EXPECT_TRUE(shows(red));
    EXPECT_TRUE(m_unit.sound().waitForTone(440));
    m_unit.command(183, 3);
    nextPlace(1, 3);
    EXPECT_TRUE(shows(blue));
    m_unit.command(185, 8);
    nextTime(8, 9);
    EXPECT_TRUE(shows(green));
}
