#include "tests/disc/CdImage.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

constexpr int SectorsPerSecond = 75;
constexpr size_t EmptySectors = 30;
constexpr size_t FileSystemSectors = 300;
constexpr size_t FilmHeader = 24;
constexpr int SamplesPerSecond = 44100;
constexpr double Loudness = 8000;
constexpr double FullCircle = 6.283185307179586;

void add(std::string& bytes, int sample) {
    bytes += static_cast<char>(sample & 0xFF);
    bytes += static_cast<char>(sample >> 8 & 0xFF);
}

std::string text(const char* word, const std::string& value) {
    return value.empty() ? "" : std::string(word) + " \"" + value + "\"\n";
}

} // namespace

std::string cdSound(int seconds, int frequency) {
    std::string second;
    for (int i = 0; i < SamplesPerSecond; ++i) {
        const int sample =
            static_cast<int>(Loudness * std::sin(FullCircle * frequency * i / SamplesPerSecond));
        add(second, sample);
        add(second, -sample);
    }
    std::string sound;
    for (int i = 0; i < seconds; ++i) {
        sound += second;
    }
    return sound;
}

std::string cdTime(int sectors) {
    const int seconds = sectors / SectorsPerSecond;
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", seconds / 60, seconds % 60,
                  sectors % SectorsPerSecond);
    return text;
}

std::string writeAudioCd(const std::string& folder, const std::vector<CdTrack>& tracks) {
    std::filesystem::create_directories(folder);
    std::string cue = "TITLE \"Demo CD\"\nPERFORMER \"The Tones\"\nFILE \"disc.bin\" BINARY\n";
    std::ofstream image(folder + "/disc.bin", std::ios::binary);
    int second = 0;
    int number = 0;
    for (const auto& track : tracks) {
        char line[32];
        std::snprintf(line, sizeof line, "TRACK %02d AUDIO\n", ++number);
        cue += line + text("TITLE", track.title) + text("PERFORMER", track.performer) + "INDEX 01 " +
               cdTime(second * SectorsPerSecond) + "\n";
        image << cdSound(track.seconds, track.frequency);
        second += track.seconds;
    }
    std::ofstream(folder + "/disc.cue") << cue;
    return folder + "/disc.cue";
}

std::string dataSectors(const std::string& bytes, size_t each, size_t header) {
    std::string whole;
    for (size_t at = 0; at < bytes.size(); at += each) {
        std::string part = bytes.substr(at, each);
        part.resize(each);
        std::string sector = std::string(header, '\x11') + part;
        sector.resize(SectorBytes, '\x22');
        whole += sector;
    }
    return whole;
}

void SectorImage::add(const std::string& mode, const std::string& sectors) {
    cue += "TRACK " + std::to_string(++tracks) + " " + mode + "\nINDEX 01 " +
           cdTime(static_cast<int>(bin.size()) / SectorBytes) + "\n";
    bin += sectors;
}

void SectorImage::addFileSystem() {
    add("MODE2/2352", std::string(FileSystemSectors * SectorBytes, '\0'));
}

void SectorImage::addFilm(const std::string& bytes) {
    add("MODE2/2352",
        dataSectors(std::string(EmptySectors * FilmBytes, '\0') + bytes, FilmBytes, FilmHeader));
}

std::string SectorImage::write(const std::string& folder) const {
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/disc.bin", std::ios::binary) << bin;
    std::ofstream(folder + "/disc.cue") << cue;
    return folder + "/disc.cue";
}

} // namespace zm::test
