#include "tests/images/ImageDamage.h"

#include "tests/disc/Samples.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

using Seeded = std::minstd_rand;

std::string partOf(const std::string& image, const Structure& structure) {
    return image.substr(structure.begin, structure.size);
}

void writeAt(const std::string& file, size_t begin, const std::string& bytes) {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(static_cast<std::streamoff>(begin));
    stream << bytes;
}

Damage cutInFront(const std::string&, const SmallImage&, const Structure& structure, Seeded&) {
    return {structure.begin, {}, true};
}
Damage cutInside(const std::string&, const SmallImage&, const Structure& structure, Seeded& random) {
    return {structure.begin + random() % structure.size, {}, true};
}
Damage zeroed(const std::string&, const SmallImage&, const Structure& structure, Seeded&) {
    return {structure.begin, std::string(structure.size, '\0')};
}
Damage flipped(const std::string& image, const SmallImage&, const Structure& structure, Seeded& random) {
    const size_t place = structure.begin + random() % structure.size;
    return {place, std::string(1, static_cast<char>(image[place] ^ (1 << random() % 8)))};
}
Damage noise(const std::string& image, const SmallImage&, const Structure& structure, Seeded& random) {
    std::string bytes = partOf(image, structure);
    for (int i = 0; i < 16; ++i) {
        bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    return {structure.begin, bytes};
}
// A number, whichever way round, becomes the largest; in a text one of many digits.
Damage largest(const std::string& image, const SmallImage&, const Structure& structure, Seeded& random) {
    std::string bytes = partOf(image, structure);
    const size_t digit = bytes.find_first_of("0123456789");
    const bool text = bytes.back() == '\n' && digit != std::string::npos;
    const size_t count = std::min<size_t>(random() % 2 ? 4 : 2, bytes.size());
    const size_t place = text ? digit : random() % (bytes.size() - count + 1);
    const char most = text ? '9' : static_cast<char>(random() % 2 ? 0xff : 0x7f);
    bytes.replace(place, count, count, most);
    return {structure.begin, bytes};
}
// Number 1 to 3 of a structure's blocks leads to another structure: folders into each other, lists into themselves.
Damage ledInCircles(const std::string& image, const SmallImage& form, const Structure& structure,
                    Seeded& random) {
    constexpr size_t Block = 2048;
    std::string bytes = partOf(image, structure);
    const auto number = [&](size_t at) {
        return static_cast<uint8_t>(bytes[at]) | static_cast<uint8_t>(bytes[at + 1]) << 8;
    };
    std::vector<size_t> places;
    for (size_t at = 0; at + 8 <= bytes.size(); ++at) {
        const auto leads = [&](const Structure& each) {
            return each.begin / Block == static_cast<size_t>(number(at)) && each.begin > 0;
        };
        if (bytes[at + 2] == 0 && std::any_of(form.structures.begin(), form.structures.end(), leads)) {
            places.push_back(at);
        }
    }
    if (!places.empty()) {
        const size_t block = form.structures[random() % form.structures.size()].begin / Block;
        const size_t at = places[random() % places.size()];
        const std::string little{static_cast<char>(block & 0xff), static_cast<char>(block >> 8 & 0xff)};
        const bool twice = bytes[at + 6] == bytes[at + 1] && bytes[at + 7] == bytes[at];
        bytes.replace(at, 2, little);
        if (twice) {
            bytes.replace(at + 6, 2, std::string(little.rbegin(), little.rend()));
        }
    }
    return {structure.begin, bytes};
}
Damage likeAnother(const std::string& image, const SmallImage& form, const Structure& structure,
                   Seeded& random) {
    std::string bytes = partOf(image, form.structures[random() % form.structures.size()]);
    bytes.resize(structure.size);
    return {structure.begin, bytes};
}

} // namespace

const std::vector<DamageKind>& damageKinds() {
    static const std::vector<DamageKind> kinds{
        {"cut in front", cutInFront}, {"cut inside", cutInside},
        {"zeroed", zeroed},           {"flipped", flipped, 12},
        {"noise", noise, 4},          {"largest", largest, 8},
        {"circle", ledInCircles, 4},  {"another", likeAnother, 3, true}};
    return kinds;
}

WhileDamaged::WhileDamaged(const std::string& file, const std::string& whole, const Damage& damage)
    : m_file(file), m_whole(whole), m_damage(damage) {
    if (damage.cut) {
        std::filesystem::resize_file(file, damage.begin);
    } else {
        writeAt(file, damage.begin, damage.bytes);
    }
}

WhileDamaged::~WhileDamaged() {
    writeAt(m_file, m_damage.begin,
            m_damage.cut ? m_whole.substr(m_damage.begin)
                         : m_whole.substr(m_damage.begin, m_damage.bytes.size()));
}

} // namespace zm::test
