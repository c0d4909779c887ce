#include "tests/system/MusicFolder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

constexpr uint32_t Rate = 8000; ///< bytes a second, one channel of 8 bits
constexpr uint32_t Seconds = 60;
constexpr char Silence = '\x80';

std::string little(uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xff);
    }
    return text;
}

std::string silence() {
    const uint32_t size = Rate * Seconds;
    return "RIFF" + little(36 + size, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) + little(1, 2) +
           little(Rate, 4) + little(Rate, 4) + little(1, 2) + little(8, 2) + "data" + little(size, 4) +
           std::string(size, Silence);
}

} // namespace

void writeMusicFolder(const std::string& folder, int songs) {
    std::filesystem::create_directories(folder);
    for (int song = 1; song <= songs; ++song) {
        std::ofstream(folder + "/song " + std::to_string(song) + ".wav", std::ios::binary) << silence();
    }
}

} // namespace zm::test
