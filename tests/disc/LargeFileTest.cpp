#include "services/disc/medium/FileSystem.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace zm::disc::medium;
using namespace zm::test;

namespace {

constexpr uint64_t IsoBlock = 2048;
constexpr uint64_t RootBlock = 18;
constexpr uint64_t FileBlock = 20;
// The most whole blocks that one record can hold.
constexpr uint64_t FirstPart = 0xFFFFF800;
constexpr uint64_t SecondPart = 300 * 1024 * 1024 + 77;
constexpr unsigned char FolderFlag = 0x02;
constexpr unsigned char GoesOnFlag = 0x80;

void put(std::string& bytes, size_t place, uint64_t number, int size) {
    for (int i = 0; i < size; ++i) {
        bytes[place + static_cast<size_t>(i)] = static_cast<char>(number >> (8 * i));
    }
}

std::string record(const std::string& name, uint64_t block, uint64_t size, unsigned char flags) {
    std::string bytes(33 + name.size() + (name.size() % 2 == 0 ? 1 : 0), '\0');
    put(bytes, 0, bytes.size(), 1);
    put(bytes, 2, block, 4);
    put(bytes, 10, size, 4);
    put(bytes, 25, flags, 1);
    put(bytes, 32, name.size(), 1);
    bytes.replace(33, name.size(), name);
    return bytes;
}

std::string descriptor(unsigned char type) {
    std::string bytes(IsoBlock, '\0');
    put(bytes, 0, type, 1);
    bytes.replace(1, 6, "CD001\1");
    const std::string root = record(std::string(1, '\0'), RootBlock, IsoBlock, FolderFlag);
    bytes.replace(156, root.size(), root);
    return bytes;
}

void writeAt(std::fstream& file, uint64_t offset, const std::string& bytes) {
    file.seekp(static_cast<std::streamoff>(offset));
    file << bytes;
}

/** An image with one file of two parts, most of it never written: it takes a few blocks of the disk. */
std::string makeImage(const TempFolder& folder, uint64_t secondBlock) {
    const std::string image = folder / "large.iso";
    writeFile(image, "");
    std::filesystem::resize_file(image, secondBlock * IsoBlock + SecondPart);
    std::fstream file(image, std::ios::in | std::ios::out | std::ios::binary);
    writeAt(file, 16 * IsoBlock, descriptor(1));
    writeAt(file, 17 * IsoBlock, descriptor(255));
    writeAt(file, RootBlock * IsoBlock,
            record(std::string(1, '\0'), RootBlock, IsoBlock, FolderFlag) +
                record("\1", RootBlock, IsoBlock, FolderFlag) +
                record("FILM.MPG;1", FileBlock, FirstPart, GoesOnFlag) +
                record("FILM.MPG;1", secondBlock, SecondPart, 0) + record("Z.MPG;1", FileBlock, 5, 0));
    writeAt(file, FileBlock * IsoBlock, "start");
    writeAt(file, FileBlock * IsoBlock + FirstPart - 4, "left");
    writeAt(file, secondBlock * IsoBlock, "right");
    writeAt(file, secondBlock * IsoBlock + SecondPart - 3, "end");
    return image;
}

std::unique_ptr<ByteReader> openFilm(const std::string& image) {
    const auto medium = openFileSystem(image);
    EXPECT_TRUE(medium) << (medium ? "" : medium.error());
    const auto entries = (*medium)->list("");
    EXPECT_EQ(entries->size(), 2u) << "one file, however many records, and the one behind it";
    auto reader = (*medium)->open("film.mpg");
    EXPECT_TRUE(reader);
    return std::move(*reader);
}

std::string bytesAt(ByteReader& reader, uint64_t offset, size_t size) {
    std::string bytes(size, '\0');
    const auto count = reader.readAt(offset, bytes);
    EXPECT_TRUE(count);
    return bytes.substr(0, *count);
}

} // namespace

TEST(LargeFile, OfSeveralPartsIsReadAsOne) {
    const TempFolder folder;
    const auto film = openFilm(makeImage(folder, FileBlock + FirstPart / IsoBlock));
    EXPECT_EQ(film->size(), FirstPart + SecondPart);
    EXPECT_GT(film->size(), uint64_t{1} << 32);
    EXPECT_EQ(bytesAt(*film, 0, 5), "start");
    EXPECT_EQ(bytesAt(*film, FirstPart - 4, 9), "leftright") << "across the parts";
    EXPECT_EQ(bytesAt(*film, FirstPart + SecondPart - 3, 10), "end");
    EXPECT_EQ(bytesAt(*film, FirstPart + SecondPart, 10), "");
}

TEST(LargeFile, WhosePartsDoNotFollowEachOtherIsReadAsFarAsItGoes) {
    const TempFolder folder;
    const auto film = openFilm(makeImage(folder, FileBlock + FirstPart / IsoBlock + 1));
    EXPECT_EQ(film->size(), FirstPart);
    EXPECT_EQ(bytesAt(*film, FirstPart - 4, 9), "left");
}
