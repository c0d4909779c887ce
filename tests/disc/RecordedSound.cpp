#include "tests/disc/RecordedSound.h"

#include "tests/disc/Samples.h"

#include <cmath>
#include <cstring>
#include <unordered_map>

namespace zm::test {

namespace {

uint32_t mixed(uint64_t number) {
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9u;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBu;
    return static_cast<uint32_t>(number >> 32);
}

void put(std::string& header, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        header += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

} // namespace

Sound noise(size_t first, size_t frames) {
    Sound sound;
    for (size_t i = 2 * first; i < 2 * (first + frames); ++i) {
        sound.push_back(static_cast<int16_t>(mixed(i + 1) >> 16));
    }
    return sound;
}

Sound hiss(size_t first, size_t frames) {
    constexpr size_t Mixed = 4;
    const Sound raw = noise(first, frames + Mixed - 1);
    Sound sound;
    for (size_t i = 0; i < 2 * frames; ++i) {
        int sum = 0;
        for (size_t k = 0; k < Mixed; ++k) {
            sum += raw[i + 2 * k];
        }
        sound.push_back(static_cast<int16_t>(sum / 12));
    }
    return sound;
}

Sound recordedSound(const std::string& path) {
    const std::string bytes = readFile(path);
    Sound sound(bytes.size() / sizeof(int16_t));
    std::memcpy(sound.data(), bytes.data(), sound.size() * sizeof(int16_t));
    return sound;
}

std::string bytesOf(const Sound& sound) {
    return {reinterpret_cast<const char*>(sound.data()), sound.size() * sizeof(int16_t)};
}

std::string wavOf(const Sound& sound, uint32_t rate) {
    const std::string bytes = bytesOf(sound);
    const auto size = static_cast<uint32_t>(bytes.size());
    std::string header = "RIFF";
    put(header, 36 + size, 4);
    header += "WAVEfmt ";
    put(header, 16, 4);
    put(header, 1, 2);
    put(header, 2, 2);
    put(header, rate, 4);
    put(header, rate * 4, 4);
    put(header, 4, 2);
    put(header, 16, 2);
    header += "data";
    put(header, size, 4);
    return header + bytes;
}

std::ostream& operator<<(std::ostream& out, const Passage& passage) {
    return passage.first == Passage::None ? out << "nothing for " << passage.count
                                          : out << passage.first << " for " << passage.count;
}

std::vector<Passage> passagesOfNoise(const Sound& heard, size_t frames) {
    const auto frameAt = [](const Sound& sound, size_t frame) {
        uint32_t both = 0;
        std::memcpy(&both, &sound[2 * frame], sizeof both);
        return both;
    };
    const Sound all = noise(0, frames);
    std::unordered_map<uint32_t, size_t> places;
    for (size_t i = frames; i-- > 0;) {
        places[frameAt(all, i)] = i;
    }
    std::vector<Passage> passages;
    for (size_t i = 0; i < heard.size() / 2; ++i) {
        const uint32_t frame = frameAt(heard, i);
        const size_t next = passages.empty() || passages.back().first == Passage::None
                                ? 0
                                : passages.back().first + passages.back().count;
        if (next > 0 && next < frames && frameAt(all, next) == frame) {
            ++passages.back().count;
            continue;
        }
        const auto place = places.find(frame);
        const size_t first = place == places.end() ? Passage::None : place->second;
        if (!passages.empty() && first == Passage::None && passages.back().first == Passage::None) {
            ++passages.back().count;
        } else {
            passages.push_back({first, 1});
        }
    }
    return passages;
}

double likeness(const int16_t* a, const int16_t* b, size_t samples) {
    double both = 0;
    double first = 0;
    double second = 0;
    for (size_t i = 0; i < samples; ++i) {
        both += double(a[i]) * b[i];
        first += double(a[i]) * a[i];
        second += double(b[i]) * b[i];
    }
    return first > 0 && second > 0 ? both / std::sqrt(first * second) : 0;
}

int latenessAt(const Sound& heard, const Sound& wanted, size_t at) {
    constexpr int Most = 5;
    constexpr size_t Window = 1000;
    int best = -Most;
    double most = -1;
    for (int late = -Most; late <= Most; ++late) {
        const auto begin = 2 * static_cast<std::ptrdiff_t>(at);
        const double like = likeness(heard.data() + begin + 2 * late, wanted.data() + begin, 2 * Window);
        if (like > most) {
            most = like;
            best = late;
        }
    }
    return best;
}

} // namespace zm::test
