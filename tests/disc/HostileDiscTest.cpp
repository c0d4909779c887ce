// A disc is input from a stranger: files made to reach beyond the disc, to open windows or to fill the memory.
#include "base/Paths.h"
#include "base/UniqueFd.h"
#include "tests/disc/PictureFixture.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

using namespace zm::test;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

/** Listens on the loopback and tells whether anybody ever came. */
class Outside {
public:
    Outside() : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(m_socket.get(), generic, size), 0);
        EXPECT_EQ(::listen(m_socket.get(), 8), 0);
        EXPECT_EQ(::getsockname(m_socket.get(), generic, &size), 0);
        m_address = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
    }
    const std::string& address() const { return m_address; }
    bool reached() const {
        pollfd waiting{m_socket.get(), POLLIN, 0};
        return ::poll(&waiting, 1, 0) > 0;
    }

private:
    zm::UniqueFd m_socket;
    std::string m_address;
};

std::string box(const std::string& type, const std::string& content) {
    const auto size = static_cast<uint32_t>(content.size() + 8);
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(size >> shift & 0xFF);
    }
    return bytes + type + content;
}

// A movie that only names another one.
std::string referenceMovie(const std::string& address) {
    const std::string length(1, static_cast<char>(address.size() + 1));
    const std::string reference =
        std::string(4, '\0') + "url " + std::string(3, '\0') + length + address + std::string(1, '\0');
    return box("ftyp", "qt  " + std::string(4, '\0') + "qt  ") +
           box("moov", box("rmra", box("rmda", box("rdrf", reference)))) +
           box("mdat", std::string(4096, 'x'));
}

std::string hls(const std::string& address) {
    return "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:10\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:10,\n" +
           address + "\n#EXTINF:10,\nfile:///etc/passwd\n#EXTINF:10,\nother.ts\n#EXT-X-ENDLIST\n";
}

std::string hlsMaster(const std::string& address) {
    return "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=100000,CODECS=\"mp4a.40.2,avc1.4d401e\"\n" + address +
           "list.m3u8\n";
}

std::string dash(const std::string& address) {
    return R"xml(<?xml version="1.0"?><MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" )xml"
           R"xml(mediaPresentationDuration="PT10S" minBufferTime="PT1S" )xml"
           R"xml(profiles="urn:mpeg:dash:profile:isoff-on-demand:2011"><BaseURL>)xml" +
           address +
           R"xml(</BaseURL><Period><AdaptationSet mimeType="video/mp4"><Representation id="1" bandwidth="1000" )xml"
           R"xml(codecs="avc1.4d401e"><BaseURL>a.mp4</BaseURL><SegmentBase indexRange="0-100"/></Representation>)xml"
           R"xml(</AdaptationSet></Period></MPD>)xml";
}

std::string smoothStreaming(const std::string& address) {
    return R"xml(<?xml version="1.0" encoding="utf-8"?><SmoothStreamingMedia MajorVersion="2" MinorVersion="0" )xml"
           R"xml(Duration="100000000"><StreamIndex Type="video" Url=")xml" +
           address +
           R"xml(Q({bitrate})/F({start time})" Chunks="1" QualityLevels="1"><QualityLevel Index="0" )xml"
           R"xml(Bitrate="1000" FourCC="H264" MaxWidth="320" MaxHeight="240" CodecPrivateData=""/>)xml"
           R"xml(<c d="100000000"/></StreamIndex></SmoothStreamingMedia>)xml";
}

struct DisguiseRow {
    const char* name;
    std::string (*make)(const std::string& address);
};

class PlayListInDisguise : public Pictures, public testing::WithParamInterface<DisguiseRow> {};

std::string bigEndian(uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(number >> shift & 0xFF);
    }
    return bytes;
}

enum PngColours : char { Grey = 0, TrueColour = 2, TrueColourAlpha = 6 };

// A PNG that says so, with the data of a small one; whoever believes it asks for that much memory.
std::string pngOf(uint32_t width, uint32_t height, char depth = 8, PngColours colours = TrueColour,
                  bool interlaced = false) {
    std::string bytes = readFile(sample({"small.png", "-f lavfi -i color=red:size=64x64 -frames:v 1"}));
    return bytes.replace(16, 13,
                         bigEndian(width) + bigEndian(height) + depth + static_cast<char>(colours) +
                             std::string(2, '\0') + (interlaced ? '\1' : '\0'));
}

// A grey one with a colour that is seen through: it is decoded with four channels.
std::string pngWithTransparency(uint32_t width, uint32_t height) {
    std::string bytes = pngOf(width, height, 8, Grey);
    return bytes.insert(33, bigEndian(2) + "tRNS" + std::string(6, '\0'));
}

std::string jpegOf(uint16_t width, uint16_t height) {
    std::string bytes = readFile(sample({"small.jpg", "-f lavfi -i color=red:size=64x64 -frames:v 1"}));
    const size_t frame = bytes.find("\xFF\xC0");
    EXPECT_NE(frame, std::string::npos);
    return bytes.replace(frame + 5, 4, bigEndian(uint32_t{height} << 16 | width));
}

// Not larger than others, but it says all over again what is in a whole picture, in a few bytes each time.
std::string jpegInScans(int count) {
    std::string bytes = readFile(sample({"small.jpg", "-f lavfi -i color=red:size=64x64 -frames:v 1"}));
    const size_t scan = bytes.find("\xFF\xDA");
    const std::string one = bytes.substr(scan, bytes.size() - 2 - scan);
    for (int i = 1; i < count; ++i) {
        bytes.insert(scan, one);
    }
    return bytes;
}

// A decoder that meets the second frame believes that one.
std::string jpegInDisguise() {
    std::string bytes = jpegOf(64, 64);
    const std::string large = jpegOf(65000, 65000);
    const size_t frame = large.find("\xFF\xC0");
    return bytes.insert(bytes.find("\xFF\xDA"), large.substr(frame, 19));
}

struct BombRow {
    const char* name;
    std::string (*make)();
};

class PictureBomb : public Pictures, public testing::WithParamInterface<BombRow> {};

struct CoverRow {
    const char* extension;
    const char* codec;
};

class MusicWithPictures : public Pictures, public testing::WithParamInterface<CoverRow> {};

} // namespace

TEST_P(PlayListInDisguise, IsNoWayOutOfTheDisc) {
    const Outside outside;
    const std::string bytes = GetParam().make(outside.address());
    int count = 0;
    for (const char* extension : {"mp3", "m4a", "mp4", "ts", "mov"}) {
        writeFile(m_disc / (std::to_string(++count) + "." + extension), bytes);
    }
    writeFile(m_disc / "other.ts", "no more");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    m_unit.next("mediatype", "3", 30s); // after a whole round of the music
    m_unit.nextState(PlayState::Error, 30s);
    EXPECT_FALSE(outside.reached());
}

INSTANTIATE_TEST_SUITE_P(All, PlayListInDisguise,
                         testing::Values(DisguiseRow{"Hls", hls}, DisguiseRow{"HlsMaster", hlsMaster},
                                         DisguiseRow{"Dash", dash},
                                         DisguiseRow{"SmoothStreaming", smoothStreaming},
                                         DisguiseRow{"ReferenceMovie", referenceMovie}),
                         [](const auto& row) { return row.param.name; });

TEST_P(MusicWithPictures, PlaysAsMusicAndShowsNothing) {
    const std::string extension = GetParam().extension;
    place(sample({"with-video." + extension, "-f lavfi -i testsrc=size=160x120:rate=25:duration=20 -f lavfi "
                                             "-i sine=frequency=440:duration=20 " +
                                                 std::string(GetParam().codec)}),
          m_disc / ("song." + extension));
    play();
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 2; });
    EXPECT_EQ(m_unit.pictures().frames(), 0);
    EXPECT_TRUE(m_unit.since("errorstatus").empty());
}

INSTANTIATE_TEST_SUITE_P(
    All, MusicWithPictures,
    testing::Values(CoverRow{"ogg", "-c:v libtheora -c:a libvorbis"},
                    CoverRow{"m4a", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac -f mp4"},
                    CoverRow{"wma", "-c:v wmv2 -c:a wmav2 -f asf"},
                    CoverRow{"mp3", "-map 1 -map 0 -c:v mjpeg -frames:v 1 -disposition:v attached_pic "
                                    "-c:a libmp3lame"}),
    [](const auto& row) { return row.param.extension; });

TEST_P(PictureBomb, IsRefusedBeforeItIsDecoded) {
    writeFile(m_disc / "1.png", GetParam().make());
    place(sample({"small.png", "-f lavfi -i color=red:size=64x64 -frames:v 1"}), m_disc / "2.png");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    m_unit.next("msgtip", "1");
    m_unit.next("errorstatus", "32");
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
    EXPECT_TRUE(shows(red));
    const std::string log = readFile(zm::logFile(m_unit.runtime()));
    EXPECT_NE(log.find("1.png: too large a photo: "), std::string::npos) << log;
}

INSTANTIATE_TEST_SUITE_P(
    All, PictureBomb,
    testing::Values(BombRow{"Png", [] { return pngOf(20000, 20000); }},
                    BombRow{"HugePng", [] { return pngOf(0x7FFFFFFF, 0x7FFFFFFF); }},
                    BombRow{"PngOfManyBytes", [] { return pngOf(9999, 9999, 8, TrueColourAlpha); }},
                    BombRow{"DeepPng", [] { return pngOf(5200, 5200, 16, TrueColourAlpha); }},
                    BombRow{"InterlacedPng", [] { return pngOf(5800, 5800, 8, TrueColourAlpha, true); }},
                    BombRow{"TransparentPng", [] { return pngWithTransparency(9999, 9999); }},
                    BombRow{"Jpeg", [] { return jpegOf(65000, 65000); }},
                    BombRow{"ProgressiveJpeg",
                            [] {
                                std::string bytes = jpegOf(9999, 9999);
                                const size_t frame = bytes.find("\xFF\xC0");
                                bytes[frame + 1] = '\xC2';
                                bytes[frame + 11] = '\x11'; // no component is smaller than another
                                return bytes;
                            }},
                    BombRow{"JpegInScans", [] { return jpegInScans(65); }},
                    BombRow{"JpegInDisguise", jpegInDisguise},
                    BombRow{"Gif", [] { return "GIF89a" + std::string("\x60\xEA\x60\xEA\0\0\0;", 8); }},
                    BombRow{"Bmp",
                            [] {
                                std::string bytes = "BM" + std::string(52, '\0');
                                bytes.replace(14, 12,
                                              std::string("\x28\0\0\0\x20\x4E\0\0\xE0\xB1\xFF\xFF", 12));
                                return bytes; // 20000 columns, minus 20000 rows
                            }}),
    [](const auto& row) { return row.param.name; });

TEST_F(Pictures, ALargeJpegIsMadeSmallerWhileItIsDecoded) {
    // 81 megapixels, the left half red, the right half blue.
    place(sample({"large.jpg", "-f lavfi -i color=red:size=4500x9000 -f lavfi -i color=blue:size=4500x9000 "
                               "-filter_complex hstack -frames:v 1"}),
          m_disc / "p.jpg");
    play();
    EXPECT_TRUE(m_unit.pictures().waitFor(300, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(500, MiddleY, blue));
    EXPECT_TRUE(m_unit.pictures().waitFor(100, MiddleY, black)) << "it keeps its shape";
}

TEST_F(Pictures, AFilmBehindAPhotoIsNoPartOfIt) {
    // As telephones append one: here a picture that nobody could decode.
    writeFile(m_disc / "1.jpg",
              readFile(sample({"small.jpg", "-f lavfi -i color=red:size=64x64 -frames:v 1"})) +
                  jpegOf(65000, 65000));
    play();
    EXPECT_TRUE(shows(red));
}

TEST_F(Pictures, WhatTheDecoderWouldGetWrongIsRefusedInWords) {
    writeFile(m_disc / "1.png", pngOf(64, 64, 16, TrueColour));
    std::string printed = jpegOf(64, 64);
    printed[printed.find("\xFF\xC0") + 9] = 4;
    writeFile(m_disc / "2.jpg", printed);
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    m_unit.nextState(PlayState::Error);
    const std::string log = readFile(zm::logFile(m_unit.runtime()));
    EXPECT_NE(log.find("1.png: a PNG of three times 16 bits"), std::string::npos) << log;
    EXPECT_NE(log.find("2.jpg: a photo in other colours than grey, or red, green and blue"),
              std::string::npos)
        << log;
}
