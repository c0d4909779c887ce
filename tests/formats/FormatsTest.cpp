// Inputs of the fuzz targets that are changed in their own language are still read, most of them, and differ from what
// they were; the same seed makes the same.
#include "BuildPaths.h"
#include "base/JsonMessage.h"
#include "fuzz/formats/CueText.h"
#include "fuzz/formats/DvdPack.h"
#include "fuzz/formats/DvdTables.h"
#include "fuzz/formats/IsoImage.h"
#include "fuzz/formats/PpsText.h"
#include "fuzz/formats/ResourceText.h"
#include "fuzz/formats/ScreenMessages.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Patches.h"
#include "platform/linux/pps/PpsObject.h"
#include "services/disc/dvd/NavPack.h"
#include "services/disc/dvd/Pack.h"
#include "services/disc/image/CueSheet.h"
#include "services/disc/medium/IsoDirectory.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <set>
#include <sstream>
#include <utility>

using namespace zm;
using namespace zm::fuzz;

namespace {

constexpr unsigned Seeds = 400;

std::string seedBytes(const std::string& name) {
    std::ifstream stream(std::string(ZM_SOURCE_DIR) + "/fuzz/seeds/" + name, std::ios::binary);
    EXPECT_TRUE(stream) << name;
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

/** The bytes of an image. */
class ImageBytes : public disc::medium::ByteReader {
public:
    explicit ImageBytes(std::string bytes) : m_bytes(std::move(bytes)) {}
    uint64_t size() const override { return m_bytes.size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        return offset >= m_bytes.size() ? size_t{0} : m_bytes.copy(buffer.data(), buffer.size(), offset);
    }

private:
    std::string m_bytes;
};

bool isPps(const std::string& input) {
    std::string_view rest = input;
    while (!rest.empty()) {
        std::string_view write = takePart(rest, '\f');
        write.remove_prefix(write.starts_with('\v'));
        if (PpsObject object("status"); !object.merge(write)) {
            return false;
        }
    }
    return true;
}

// Each of its files is JSON with comments; what they say together may still be no resource.
bool isResource(const std::string& input) {
    std::string file;
    Pieces lines = splitLines(input, "\n");
    lines.emplace_back("//// \n");
    for (const auto& line : lines) {
        if (!line.starts_with("//// ")) {
            file += line;
        } else if (!nlohmann::json::accept(std::exchange(file, ""), true)) {
            return false;
        }
    }
    return true;
}

bool isScreen(const std::string& input) {
    std::string_view rest = input;
    size_t right = 0;
    size_t lines = 0;
    for (; !rest.empty(); ++lines) {
        std::string_view line = takePart(rest, '\n');
        line.remove_prefix(line.starts_with('@') ? std::min(line.find('{'), line.size()) : 0);
        right += parseMessage(line).is_object();
    }
    return right == lines;
}

bool isCue(const std::string& input) {
    return static_cast<bool>(disc::image::parseCueSheet(input));
}

bool isIso(const std::string& input) {
    std::string bytes(size_t{32} * BlockBytes, '\0');
    for (const auto& [number, block] : blocksOf(input, {16, 1})) {
        bytes.replace((16 + size_t{number}) * BlockBytes, block.size(), block);
    }
    ImageBytes image(bytes);
    const auto volume = disc::medium::readIsoVolume(image);
    return volume && disc::medium::readIsoDirectory(image, *volume, volume->root);
}

bool isDvdTable(const std::string& input) {
    return input.find("DVDVIDEO-VMG") != std::string::npos && input.find('\n') != std::string::npos;
}

bool isNavigation(const std::string& input) {
    return disc::dvd::readNavPack({reinterpret_cast<const uint8_t*>(input.data()), input.size()}, false)
        .has_value();
}

bool isFilm(const std::string& input) {
    return !disc::dvd::splitPack({reinterpret_cast<const uint8_t*>(input.data()), input.size()}).empty();
}

struct Row {
    const char* name;
    const Format& (*format)();
    const char* seed;
    bool (*accepted)(const std::string& input);
};
std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

class Formats : public testing::TestWithParam<Row> {
protected:
    std::string m_seed = seedBytes(GetParam().seed);
    const Format& m_format = GetParam().format();
    void SetUp() override { ASSERT_TRUE(GetParam().accepted(m_seed)) << "the seed is right"; }
};

} // namespace

TEST_P(Formats, AChangedInputIsStillReadAsOftenAsNot) {
    unsigned accepted = 0;
    std::set<std::string> different;
    for (unsigned seed = 1; seed <= Seeds; ++seed) {
        Random random(seed);
        const std::string changed = mutated(m_format, m_seed, random);
        accepted += GetParam().accepted(changed);
        different.insert(changed);
    }
    std::printf("%s: %u of %u accepted, %zu different\n", GetParam().name, accepted, Seeds, different.size());
    EXPECT_GE(accepted, Seeds / 2);
    EXPECT_GE(different.size(), Seeds / 2);
}

TEST_P(Formats, TheSameSeedMakesTheSame) {
    for (unsigned seed = 1; seed <= Seeds; ++seed) {
        Random first(seed);
        Random second(seed);
        const std::string changed = mutated(m_format, m_seed, first);
        ASSERT_EQ(changed, mutated(m_format, m_seed, second));
        ASSERT_EQ(crossed(m_format, m_seed, changed, first), crossed(m_format, m_seed, changed, second));
    }
}

TEST_P(Formats, AnyBytesCanBeChanged) {
    for (unsigned seed = 1; seed <= Seeds; ++seed) {
        Random random(seed);
        std::string bytes = m_seed.substr(random.below(m_seed.size()), random.below(m_seed.size()));
        for (int changes = 0; changes < 20; ++changes) {
            bytes = mutated(m_format, withChangedBytes(bytes, random), random);
            bytes = crossed(m_format, m_seed, bytes, random).substr(0, 4096);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Formats,
                         testing::Values(Row{"Pps", ppsText, "pps/attributes", isPps},
                                         Row{"Resource", resourceText, "resource/whole", isResource},
                                         Row{"Screen", screenMessages, "screen/app", isScreen},
                                         Row{"Cue", cueText, "cue/one-file", isCue},
                                         Row{"Iso", isoImage, "iso/rock-ridge", isIso},
                                         Row{"DvdTables", dvdTables, "dvddisc/folder", isDvdTable},
                                         Row{"Navigation", dvdPack, "dvdpack/menu", isNavigation},
                                         Row{"Film", dvdPack, "dvdpack/picture", isFilm}),
                         [](const auto& row) { return std::string(row.param.name); });
