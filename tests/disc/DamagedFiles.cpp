#include "tests/disc/DamagedFiles.h"

#include "tests/disc/Samples.h"

#include <algorithm>
#include <cstdint>
#include <random>

namespace zm::test {

namespace {

constexpr int Seconds = 3;
constexpr size_t HeaderBytes = 512;

std::string film(const std::string& extension, const std::string& codec) {
    return sample({"damage." + extension, "-f lavfi -i testsrc=size=160x120:rate=25:duration=3 -f lavfi -i "
                                          "sine=frequency=440:duration=3 -g 25 " +
                                              codec});
}

std::vector<std::string> wholeFiles() {
    return {toneFile("mp3", Seconds),
            toneFile("ogg", Seconds),
            toneFile("flac", Seconds),
            toneFile("m4a", Seconds),
            toneFile("wav", Seconds),
            toneFile("wma", Seconds),
            toneFile("opus", Seconds),
            film("mp4", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac"),
            film("mkv", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a libvorbis"),
            film("mpg", "-c:v mpeg2video -b:v 400k -c:a mp2 -f vob"),
            film("avi", "-c:v mpeg4 -vtag XVID -c:a libmp3lame"),
            film("webm", "-c:v libvpx -deadline realtime -b:v 300k -c:a libvorbis"),
            film("ts", "-c:v mpeg2video -b:v 400k -c:a mp2 -f mpegts"),
            film("wmv", "-c:v wmv2 -c:a wmav2"),
            sample({"damage.jpg", "-f lavfi -i testsrc=size=640x480 -frames:v 1"}),
            sample({"damage.png", "-f lavfi -i testsrc=size=640x480 -frames:v 1"})};
}

using Random = std::minstd_rand;

// Bytes here and there get another value; about one in `rarity`.
std::string sprinkled(std::string bytes, Random& random, size_t rarity) {
    for (size_t i = 0; i < bytes.size() / rarity + 1; ++i) {
        bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    return bytes;
}

std::string noisyHeader(std::string bytes, Random& random) {
    const size_t end = std::min(HeaderBytes, bytes.size());
    for (int i = 0; i < 12; ++i) {
        bytes[random() % end] = static_cast<char>(random());
    }
    return bytes;
}

std::string blanked(std::string bytes, Random&) {
    const auto third = static_cast<std::ptrdiff_t>(bytes.size() / 3);
    std::fill(bytes.begin() + third, bytes.begin() + 2 * third, '\0');
    return bytes;
}

std::string cut(const std::string& bytes, size_t percent) {
    return bytes.substr(0, bytes.size() * percent / 100);
}

std::string headOnly(const std::string& bytes) {
    return bytes.substr(0, HeaderBytes);
}

// The head of one format before bytes that belong to none.
std::string headAndNoise(std::string bytes, Random& random) {
    std::generate(bytes.begin() + static_cast<std::ptrdiff_t>(std::min(HeaderBytes, bytes.size())),
                  bytes.end(), [&] { return static_cast<char>(random()); });
    return bytes;
}

} // namespace

std::vector<DamagedFile> damagedFiles() {
    Random random(20261122);
    std::vector<DamagedFile> files;
    for (const std::string& path : wholeFiles()) {
        const std::string bytes = readFile(path);
        const std::string ending = path.substr(path.rfind('.'));
        const auto add = [&](const std::string& damage, const std::string& damaged) {
            files.push_back({damage + ending, damaged});
        };
        add("sprinkled", sprinkled(bytes, random, 1000));
        add("riddled", sprinkled(bytes, random, 20));
        add("noisy-header", noisyHeader(bytes, random));
        add("blanked", blanked(bytes, random));
        add("half", cut(bytes, 50));
        add("tenth", cut(bytes, 10));
        add("head-only", headOnly(bytes));
        add("head-and-noise", headAndNoise(bytes, random));
    }
    return files;
}

} // namespace zm::test
