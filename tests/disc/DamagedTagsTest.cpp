// Tags that lie about their sizes, counts and texts, each in a way of its own: what is sound in them is read, nothing is made
// up, and neither time nor memory goes with what they claim.
#include "services/disc/library/EmbeddedPictures.h"
#include "services/disc/library/Tags.h"
#include "services/disc/medium/Medium.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <ostream>
#include <span>

using namespace zm::disc;
using namespace zm::test;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds TimeLimit{2};
constexpr long MemoryLimit = 64 << 10; // kilobytes

/** Bytes in memory. */
class MemoryReader : public medium::ByteReader {
public:
    explicit MemoryReader(std::string bytes) : m_bytes(std::move(bytes)) {}
    uint64_t size() const override { return m_bytes.size(); }
    zm::Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        const size_t from = std::min<uint64_t>(offset, m_bytes.size());
        const size_t count = std::min(buffer.size(), m_bytes.size() - from);
        std::memcpy(buffer.data(), m_bytes.data() + from, count);
        return count;
    }

private:
    std::string m_bytes;
};

std::string bytes(uint64_t value, int count, bool littleEndian) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        const int shift = 8 * (littleEndian ? i : count - 1 - i);
        text += static_cast<char>(value >> shift);
    }
    return text;
}

std::string big(uint64_t value, int count = 4) {
    return bytes(value, count, false);
}

std::string little(uint64_t value, int count = 4) {
    return bytes(value, count, true);
}

std::string zeros(size_t count) {
    return std::string(count, '\0');
}

std::string repeated(const std::string& part, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += part;
    }
    return all;
}

// ---- ID3

std::string sevenBits(size_t size) {
    std::string text;
    for (int shift = 21; shift >= 0; shift -= 7) {
        text += static_cast<char>((size >> shift) & 0x7F);
    }
    return text;
}

std::string id3(const std::string& frames, int version = 3, int flags = 0) {
    return "ID3" + big(static_cast<uint64_t>(version), 1) + zeros(1) + big(static_cast<uint64_t>(flags), 1) +
           sevenBits(frames.size()) + frames;
}

std::string frame(const std::string& id, const std::string& body, int flags = 0) {
    return id + big(body.size()) + big(static_cast<uint64_t>(flags), 2) + body;
}

const std::string Title = frame("TIT2", zeros(1) + "Sound");
const std::string Artist = frame("TPE1", zeros(1) + "Ada");

std::string audio() {
    return readFile(sample(
        {"untagged.mp3",
         "-f lavfi -i sine=frequency=440:duration=2 -ac 1 -map_metadata -1 -id3v2_version 0 -write_xing 0"}));
}

std::string mp3(const std::string& tag) {
    return tag + audio();
}

std::string compressed(const std::string& id, const std::string& part, int times = 1) {
    std::string packed((part.size() + 64) * static_cast<size_t>(times) / (times == 1 ? 1 : 100) + 64, '\0');
    z_stream stream{};
    ::deflateInit(&stream, Z_BEST_SPEED);
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    for (int i = 0; i < times; ++i) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(part.data()));
        stream.avail_in = static_cast<uInt>(part.size());
        ::deflate(&stream, i + 1 == times ? Z_FINISH : Z_NO_FLUSH);
    }
    packed.resize(stream.total_out);
    ::deflateEnd(&stream);
    const std::string body = sevenBits(part.size() * static_cast<size_t>(times)) + packed;
    return id + sevenBits(body.size()) + big(0x0009, 2) + body;
}

// Two hundred megabytes in one.
std::string bomb(const std::string& id) {
    static std::map<std::string, std::string> made;
    auto& result = made[id];
    return result.empty() ? result = compressed(id, zeros(size_t{1} << 20), 200) : result;
}

// Parts inside each other: a chapter in a chapter, some hundred deep.
std::string nestedChapters(int depth) {
    std::string inner = Title;
    for (int i = 0; i < depth; ++i) {
        inner = frame("CHAP", std::string("c") + zeros(17) + inner);
    }
    return inner;
}

// ---- APE

std::string apeItem(const std::string& key, const std::string& value, uint64_t claims) {
    return little(claims) + little(0) + key + zeros(1) + value;
}

std::string ape(const std::string& items, uint64_t count, uint64_t claims) {
    const auto block = [&](uint64_t flags) {
        return "APETAGEX" + little(2000) + little(claims) + little(count) + little(flags) + zeros(8);
    };
    return block(0xA0000000) + items + block(0x80000000);
}

// ---- FLAC and Vorbis

std::string flacBlock(int type, const std::string& body, bool last, uint64_t claims) {
    return big(static_cast<uint64_t>(type) | (last ? 0x80u : 0u), 1) + big(claims, 3) + body;
}

std::string streamInfo() {
    return flacBlock(
        0,
        big(4096, 2) + big(4096, 2) + zeros(6) +
            big((uint64_t{44100} << 44) | (uint64_t{1} << 41) | (uint64_t{15} << 36) | 88200, 8) + zeros(16),
        false, 34);
}

std::string comment(const std::string& text) {
    return little(text.size()) + text;
}

std::string flac(const std::string& comments, uint64_t claims) {
    return "fLaC" + streamInfo() + flacBlock(4, comments, true, claims);
}

std::string flac(const std::string& comments) {
    return flac(comments, comments.size());
}

constexpr int PictureBlock = 6;

std::string oggPage(const std::string& body, int flags, int sequence, const std::string& segments) {
    return std::string("OggS") + zeros(1) + big(static_cast<uint64_t>(flags), 1) + zeros(8) + little(7) +
           little(static_cast<uint64_t>(sequence)) + zeros(4) + big(segments.size(), 1) + segments + body;
}

std::string vorbis(const std::string& comments) {
    const std::string head = "\x01vorbis" + little(0) + "\x02" + little(44100) + zeros(12) + "\xB8\x01";
    const std::string body = "\x03vorbis" + comments + "\x01";
    std::string segments(body.size() / 255, '\xFF');
    segments += static_cast<char>(body.size() % 255);
    return oggPage(head, 2, 0, big(head.size(), 1)) + oggPage(body, 0, 1, segments);
}

// ---- MP4

std::string atom(const std::string& name, const std::string& body) {
    return big(body.size() + 8) + name + body;
}

std::string atomThatClaims(uint64_t size, const std::string& name, const std::string& body) {
    return big(size) + name + body;
}

const std::string FileType = atom("ftyp", "M4A " + zeros(4) + "M4A mp42");

std::string tagged(const std::string& list) {
    const std::string handler = zeros(8) + "mdir" + "appl" + zeros(9);
    return FileType +
           atom("moov", atom("udta", atom("meta", zeros(4) + atom("hdlr", handler) + atom("ilst", list))));
}

std::string mp4Text(const std::string& name, const std::string& text) {
    return atom(name, atom("data", big(1) + zeros(4) + text));
}

const std::string Mp4Title = mp4Text("\xA9nam", "Sound");

std::string nestedAtoms(int depth) {
    std::string inner = atom("free", "");
    for (int i = 0; i < depth; ++i) {
        inner = atom("moov", inner);
    }
    return inner;
}

// ---- RIFF

std::string chunk(const std::string& name, const std::string& body, uint64_t claims) {
    return name + little(claims) + body + (body.size() % 2 != 0 ? zeros(1) : "");
}

std::string chunk(const std::string& name, const std::string& body) {
    return chunk(name, body, body.size());
}

std::string wav(const std::string& chunks) {
    const std::string format =
        little(1, 2) + little(1, 2) + little(8000) + little(16000) + little(2, 2) + little(16, 2);
    const std::string body = "WAVE" + chunk("fmt ", format) + chunks;
    return "RIFF" + little(body.size()) + body;
}

const std::string WavSound = chunk("data", zeros(16000));
const std::string WavTitle = chunk("LIST", "INFO" + chunk("INAM", "Sound" + zeros(1)));

// ---- ASF

const std::string AsfHeader =
    "\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9" + zeros(1) + "\xAA" + zeros(1) + "\x62\xCE\x6C";
const std::string AsfContent =
    "\x33\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9" + zeros(1) + "\xAA" + zeros(1) + "\x62\xCE\x6C";

std::string wide(const std::string& text) {
    std::string result;
    for (const char each : text) {
        result += each + zeros(1);
    }
    return result;
}

std::string asf(const std::string& objects, uint64_t count, uint64_t claims) {
    return AsfHeader + little(claims, 8) + little(count) + "\x01\x02" + objects;
}

std::string asfTitle(uint64_t titleSize, uint64_t claims) {
    return AsfContent + little(claims, 8) + little(titleSize, 2) + little(0, 2) + little(0, 2) +
           little(0, 2) + little(0, 2) + wide("Sound");
}

struct DamagedTag {
    const char* name;
    const char* file;
    std::string (*bytes)();
    const char* title;
};

std::ostream& operator<<(std::ostream& out, const DamagedTag& tag) {
    return out << tag.name;
}

const DamagedTag tags[] = {
    // Nothing is wrong with these: what the others are made of is read.
    {"Id3", "a.mp3", [] { return mp3(id3(Title)); }, "Sound"},
    {"Ape", "a.mp3", [] { return audio() + ape(apeItem("Title", "Sound", 5), 1, 51); }, "Sound"},
    {"Flac", "a.flac", [] { return flac(comment("maker") + little(1) + comment("TITLE=Sound")); }, "Sound"},
    {"Vorbis", "a.ogg", [] { return vorbis(comment("maker") + little(1) + comment("TITLE=Sound")); },
     "Sound"},
    {"Mp4", "a.m4a", [] { return tagged(Mp4Title); }, "Sound"},
    {"Wav", "a.wav", [] { return wav(WavSound + WavTitle); }, "Sound"},
    {"Asf", "a.wma", [] { return asf(asfTitle(10, 44), 1, 74); }, "Sound"},
    {"Id3LongerThanItsFile", "a.mp3", [] { return "ID3\x03" + zeros(2) + "\x7F\x7F\x7F\x7F" + Title; },
     "Sound"},
    {"Id3OfNoSize", "a.mp3", [] { return mp3("ID3\x03" + zeros(6)); }, ""},
    {"Id3CutInItsTitle", "a.mp3", [] { return id3(Artist + Title).substr(0, 32); }, ""},
    {"Id3FrameLongerThanTheTag", "a.mp3",
     [] { return mp3(id3(Title + "TALB" + big(0x00FFFFFF) + zeros(2) + "x")); }, "Sound"},
    {"Id3FrameOfFourGigabytes", "a.mp3",
     [] { return mp3(id3(Title + "TALB" + big(0xFFFFFFFF) + zeros(2) + "x")); }, "Sound"},
    {"Id3FrameOfNoSizeBeforeTheTitle", "a.mp3", [] { return mp3(id3(frame("TALB", "") + Title)); }, ""},
    {"Id3FrameOfAnEncodingAloneBeforeTheTitle", "a.mp3",
     [] { return mp3(id3(frame("TALB", zeros(1)) + Title)); }, "Sound"},
    {"Id3OfAVersionThatIsNone", "a.mp3", [] { return mp3(id3(Title, 9)); }, "Sound"},
    {"Id3OldFormWhoseFramesHaveThreeLetters", "a.mp3",
     [] { return mp3(id3("TT2" + big(6, 3) + zeros(1) + "Sound", 2)); }, "Sound"},
    {"Id3OldFormWhoseFrameIsTooLong", "a.mp3",
     [] { return mp3(id3("TT2" + big(6, 3) + zeros(1) + "Sound" + "TAL" + big(0xFFFFFF, 3), 2)); }, "Sound"},
    {"Id3ExtendedHeaderLongerThanTheTag", "a.mp3",
     [] { return mp3(id3(big(0x7FFFFFFF) + zeros(6) + Title, 3, 0x40)); }, ""},
    {"Id3OutOfStepWithAnEndInTheMiddle", "a.mp3",
     [] { return mp3(id3(frame("TIT2", zeros(1) + "Sound\xFF") + "\xFF", 3, 0x80)); }, "Soundÿ"},
    {"Id3CompressedBomb", "a.mp3", [] { return mp3(id3(bomb("TIT2"), 4)); }, ""},
    {"Id3CompressedBombs", "a.mp3", [] { return mp3(id3(repeated(bomb("TALB"), 20) + Title, 4)); }, "Sound"},
    {"Id3CompressedPicture", "a.mp3", [] { return mp3(id3(bomb("APIC") + Title, 4)); }, "Sound"},
    {"Id3CompressedTitle", "a.mp3", [] { return mp3(id3(compressed("TIT2", zeros(1) + "Sound"), 4)); },
     "Sound"},
    {"Id3CompressedFrameThatIsNone", "a.mp3",
     [] { return mp3(id3("TALB" + sevenBits(10) + big(0x0009, 2) + "\x7F\x7F\x7F\x7Fnozlib" + Artist, 4)); },
     ""},
    {"Id3EncryptedTitle", "a.mp3",
     [] { return mp3(id3("TIT2" + sevenBits(6) + big(0x0004, 2) + zeros(1) + "Sound", 4)); }, ""},
    {"Id3WideTextOfAnOddNumberOfBytes", "a.mp3",
     [] { return mp3(id3(frame("TIT2", "\x01\xFF\xFE" + wide("Sound") + "x"))); }, "Sound"},
    {"Id3WideTextWithoutItsMark", "a.mp3", [] { return mp3(id3(frame("TIT2", "\x01" + wide("Sound")))); },
     ""},
    {"Id3HalfACharacter", "a.mp3",
     [] { return mp3(id3(frame("TIT2", "\x01\xFF\xFE" + wide("Sound") + "\x3D\xD8"))); }, ""},
    {"Id3EncodingThatIsNone", "a.mp3", [] { return mp3(id3(frame("TIT2", "\x09Sound"))); }, ""},
    {"Id3WrongUtf8", "a.mp3", [] { return mp3(id3(frame("TIT2", "\x03Sou\xC3\x28nd"), 4)); }, ""},
    {"Id3SeveralTitlesInOne", "a.mp3",
     [] { return mp3(id3(frame("TIT2", zeros(1) + "Sound" + zeros(1) + "Noise" + zeros(3)))); },
     "Sound Noise"},
    {"Id3TenThousandTitles", "a.mp3",
     [] { return mp3(id3(Title + repeated(frame("TIT2", zeros(1) + "Noise"), 10000))); }, "Sound"},
    {"Id3PictureWithoutAnyEnd", "a.mp3",
     [] { return mp3(id3(frame("APIC", zeros(1) + std::string(200000, 'x')) + Title)); }, "Sound"},
    {"Id3ChaptersInsideEachOther", "a.mp3", [] { return mp3(id3(nestedChapters(2000) + Title, 4)); },
     "Sound"},
    {"Id3FramesThatAreTooShort", "a.mp3",
     [] {
         std::string frames;
         for (const char* id : {"COMM", "TXXX", "WXXX", "UFID", "SYLT", "ETCO", "GEOB", "RVA2", "POPM",
                                "PRIV", "OWNE", "CHAP", "CTOC", "APIC", "USLT", "WOAR", "PCST", "GRP1"}) {
             frames += frame(id, "x") + frame(id, zeros(2));
         }
         return mp3(id3(frames + Title));
     },
     "Sound"},
    {"Id3Twice", "a.mp3", [] { return mp3(id3(Title) + id3(frame("TIT2", zeros(1) + "Noise"))); }, "Sound"},
    {"Id3AThousandTimes", "a.mp3", [] { return mp3(repeated(id3(Title), 1000)); }, "Sound"},
    {"ApeOfFourThousandMillionItems", "a.mp3",
     [] { return audio() + ape(apeItem("Title", "Sound", 5), 0xFFFFFFFF, 51); }, "Sound"},
    {"ApeItemLongerThanTheTag", "a.mp3",
     [] { return audio() + ape(apeItem("Title", "Sound", 5) + apeItem("Album", "x", 0xFFFFFFF0), 2, 66); },
     "Sound"},
    {"ApeLongerThanTheFile", "a.mp3",
     [] { return audio() + ape(apeItem("Title", "Sound", 5), 1, 0xFFFFFF00); }, ""},
    {"ApeKeyWithoutAnEnd", "a.mp3",
     [] { return audio() + ape(little(5) + little(0) + std::string(300, 'k'), 1, 340); }, ""},
    {"FlacCommentsOfFourThousandMillion", "a.flac",
     [] { return flac(comment("maker") + little(0xFFFFFFFF) + comment("TITLE=Sound")); }, ""},
    {"FlacMakerOfFourGigabytes", "a.flac", [] { return flac(little(0xFFFFFFFF) + "x"); }, ""},
    {"FlacCommentLongerThanItsBlock", "a.flac",
     [] {
         return flac(comment("maker") + little(2) + comment("TITLE=Sound") + little(0x7FFFFFFF) + "ALBUM=x");
     },
     "Sound"},
    {"FlacCommentWithoutAValue", "a.flac",
     [] {
         return flac(comment("maker") + little(4) + comment("TITLE") + comment("=x") + comment("") +
                     comment("TITLE=Sound"));
     },
     "Sound"},
    {"FlacBlockLongerThanTheFile", "a.flac",
     [] { return flac(comment("maker") + little(1) + comment("TITLE=Sound"), 0xFFFFFF); }, ""},
    {"FlacInfoOfNoSize", "a.flac",
     [] { return "fLaC" + flacBlock(0, "", false, 0) + flacBlock(4, comment("") + little(0), true, 8); }, ""},
    {"FlacPictureWhoseSizesLie", "a.flac",
     [] {
         const std::string picture = big(3) + big(0xFFFFFFF0) + "image/png" + big(0xFFFFFFFF) + zeros(20);
         const std::string comments = comment("maker") + little(1) + comment("TITLE=Sound");
         return "fLaC" + streamInfo() + flacBlock(4, comments, false, comments.size()) +
                flacBlock(PictureBlock, picture, true, picture.size());
     },
     "Sound"},
    {"FlacTenThousandBlocks", "a.flac",
     [] {
         const std::string comments = comment("maker") + little(1) + comment("TITLE=Sound");
         return "fLaC" + streamInfo() + repeated(flacBlock(1, "", false, 0), 10000) +
                flacBlock(4, comments, true, comments.size());
     },
     "Sound"},
    {"VorbisCommentsOfFourThousandMillion", "a.ogg",
     [] { return vorbis(comment("maker") + little(0xFFFFFFFF) + comment("TITLE=Sound")); }, ""},
    {"VorbisWithoutItsEnd", "a.ogg",
     [] { return vorbis(comment("maker") + little(1) + comment("TITLE=Sound")).substr(0, 100); }, ""},
    {"OggPageThatClaimsMoreThanThereIs", "a.ogg",
     [] { return oggPage("\x01vorbis", 2, 0, std::string(255, '\xFF')); }, ""},
    {"OggTenThousandEmptyPages", "a.ogg", [] { return repeated(oggPage("", 0, 1, ""), 10000); }, ""},
    {"OpusWhoseCommentsLie", "a.opus",
     [] {
         const std::string head = "OpusHead\x01\x01" + little(0, 2) + little(48000) + zeros(3);
         const std::string body = "OpusTags" + little(0xFFFFFFFF) + "x";
         return oggPage(head, 2, 0, big(head.size(), 1)) + oggPage(body, 0, 1, big(body.size(), 1));
     },
     ""},
    {"Mp4AtomOfNoSize", "a.m4a", [] { return FileType + atomThatClaims(0, "moov", Mp4Title); }, ""},
    {"Mp4AtomSmallerThanItsHead", "a.m4a", [] { return FileType + atomThatClaims(3, "moov", Mp4Title); }, ""},
    {"Mp4AtomOfExabytes", "a.m4a",
     [] { return FileType + atomThatClaims(1, "moov", big(0x7FFFFFFFFFFFFFFF, 8)); }, ""},
    {"Mp4AtomLongerThanTheFile", "a.m4a",
     [] { return tagged(Mp4Title) + atomThatClaims(0xFFFFFFF0, "free", ""); }, "Sound"},
    {"Mp4AtomsInsideEachOther", "a.m4a", [] { return FileType + nestedAtoms(20000); }, ""},
    {"Mp4TextShorterThanItsHead", "a.m4a",
     [] {
         return tagged(atom("\xA9"
                            "alb",
                            atomThatClaims(9, "data", "x")) +
                       Mp4Title);
     },
     "Sound"},
    {"Mp4TextWithoutData", "a.m4a",
     [] {
         return tagged(atom("\xA9"
                            "alb",
                            "") +
                       Mp4Title);
     },
     "Sound"},
    {"Mp4DataLongerThanItsAtom", "a.m4a",
     [] { return tagged(atom("\xA9nam", atomThatClaims(0x7FFFFFFF, "data", big(1) + zeros(4) + "Sound"))); },
     "Sound"},
    {"Mp4TrackNumberOfOneByte", "a.m4a",
     [] { return tagged(atom("trkn", atom("data", zeros(8) + "x")) + Mp4Title); }, "Sound"},
    {"WavChunkOfFourGigabytes", "a.wav",
     [] { return wav(WavTitle + chunk("data", zeros(16000), 0xFFFFFFFF)); }, "Sound"},
    {"WavListLongerThanTheFile", "a.wav",
     [] { return wav(WavSound + chunk("LIST", "INFO" + chunk("INAM", "Sound" + zeros(1)), 0x7FFFFFFF)); },
     ""},
    {"WavTextLongerThanItsList", "a.wav",
     [] { return wav(WavSound + chunk("LIST", "INFO" + chunk("INAM", "Sound", 0xFFFFFFF0))); }, ""},
    {"WavTenThousandChunks", "a.wav", [] { return wav(repeated(chunk("junk", ""), 10000) + WavTitle); },
     "Sound"},
    {"WavOfNoFormat", "a.wav", [] { return "RIFF" + little(4) + "WAVE"; }, ""},
    {"WavWithAnId3ThatLies", "a.wav",
     [] { return wav(WavSound + WavTitle + chunk("id3 ", "ID3\x03" + zeros(2) + "\x7F\x7F\x7F\x7F")); },
     "Sound"},
    {"AsfOfFourThousandMillionObjects", "a.wma",
     [] { return asf(asfTitle(10, 44), 0xFFFFFFFF, 0x7FFFFFFFFFFFFFFF); }, ""},
    {"AsfObjectOfNoSize", "a.wma", [] { return asf(asfTitle(10, 0) + zeros(100), 3, 30 + 144); }, "Sound"},
    {"AsfTitleLongerThanTheFile", "a.wma", [] { return asf(asfTitle(0xFFFE, 44), 1, 74); }, "Sound"},
};

// The most that this process has ever held, in kilobytes.
long mostMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class DamagedTags : public testing::TestWithParam<DamagedTag> {};

} // namespace

TEST_P(DamagedTags, GiveWhatIsSoundInThemSoon) {
    const auto& tag = GetParam();
    MemoryReader reader(tag.bytes());
    const long before = mostMemory();
    const auto begin = Clock::now();
    const auto raw = library::readTags(reader, tag.file);
    EXPECT_LT(Clock::now() - begin, TimeLimit);
    EXPECT_LT(mostMemory(), before + MemoryLimit);
    text::CharsetRepair repair;
    library::learnTags(repair, raw);
    EXPECT_EQ(library::repairTags(repair, raw).title, tag.title);
}

TEST_P(DamagedTags, GiveTheirPicturesSoon) {
    const auto& tag = GetParam();
    MemoryReader reader(tag.bytes());
    const long before = mostMemory();
    const auto begin = Clock::now();
    library::embeddedPictures(reader, tag.file);
    EXPECT_LT(Clock::now() - begin, TimeLimit);
    EXPECT_LT(mostMemory(), before + MemoryLimit);
}

INSTANTIATE_TEST_SUITE_P(Each, DamagedTags, testing::ValuesIn(tags),
                         [](const auto& each) { return each.param.name; });
