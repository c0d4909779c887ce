#include "tests/images/SmallImages.h"

#include "BuildPaths.h"
#include "tests/disc/CdImage.h"
#include "tests/disc/DiscImageFixture.h"
#include "tests/disc/DvdDisc.h"
#include "tests/disc/VcdImage.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace zm::test {

namespace {

namespace fs = std::filesystem;

constexpr size_t ImageBlock = 2048;
constexpr size_t DataHeader = 16;
constexpr size_t FilmHead = 24;

void runMaker(const std::string& command) {
    if (std::system((command + " 2>/dev/null").c_str()) != 0) {
        throw std::runtime_error("failed: " + command);
    }
}

std::vector<std::string> songs() {
    return {readFile(toneFile("mp3", 1, "one")), readFile(toneFile("mp3", 2, "two")),
            readFile(toneFile("mp3", 3, "three"))};
}

std::string songFolder(const std::string& folder) {
    const auto files = songs();
    writeFile(folder + "/content/one.mp3", files[0]);
    writeFile(folder + "/content/music/two.mp3", files[1]);
    writeFile(folder + "/content/music/deep/three.mp3", files[2]);
    return folder + "/content";
}

// Blocks that say something and are no part of a song.
std::vector<Structure> structuresOf(const std::string& image) {
    std::vector<Structure> found;
    std::vector<Structure> contents;
    for (const auto& song : songs()) {
        const size_t begin = image.find(song);
        if (begin != std::string::npos) {
            contents.push_back({begin, song.size()});
        }
    }
    for (size_t at = 0; at + ImageBlock <= image.size(); at += ImageBlock) {
        const auto inSong = [at](const Structure& song) {
            return at >= song.begin && at < song.begin + song.size;
        };
        const size_t last = image.substr(at, ImageBlock).find_last_not_of('\0');
        if (last != std::string::npos && std::none_of(contents.begin(), contents.end(), inSong)) {
            found.push_back({at, last + 1});
        }
    }
    return found;
}

std::vector<Structure> linesOf(const std::string& text) {
    std::vector<Structure> lines;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        lines.push_back({at, end - at});
        at = end;
    }
    return lines;
}

SmallImage isoImage(const std::string& folder, const std::string& options) {
    const std::string image = folder + "/disc.iso";
    runMaker("genisoimage -quiet -V SMALL " + options + " -o '" + image + "' '" + songFolder(folder) + "'");
    return {image, image, structuresOf(readFile(image))};
}
SmallImage plainIso(const std::string& folder) {
    return isoImage(folder, "");
}
SmallImage jolietIso(const std::string& folder) {
    return isoImage(folder, "-J");
}
SmallImage rockRidgeIso(const std::string& folder) {
    return isoImage(folder, "-R");
}

SmallImage udfImage(const std::string& folder, const std::string& revision) {
    const std::string image = folder + "/disc.iso";
    runMaker(std::string(ZM_SOURCE_DIR) + "/tests/disc/make-udf " + revision + " '" + songFolder(folder) +
             "' '" + image + "'");
    return {image, image, structuresOf(readFile(image))};
}
SmallImage oldUdf(const std::string& folder) {
    return udfImage(folder, "1.02");
}
SmallImage newUdf(const std::string& folder) {
    return udfImage(folder, "2.60");
}

SmallImage rawIso(const std::string& folder) {
    SmallImage image = plainIso(folder);
    SectorImage sectors;
    sectors.add("MODE1/2352", dataSectors(readFile(image.damaged), ImageBlock, DataHeader));
    image.opened = sectors.write(folder);
    image.damaged = folder + "/disc.bin";
    for (auto& each : image.structures) {
        each.begin = each.begin / ImageBlock * SectorBytes + DataHeader;
    }
    return image;
}

std::string sounds() {
    return cdSound(1, 440) + cdSound(1, 550) + cdSound(1, 660);
}

SmallImage described(const std::string& folder, const std::string& name, const std::string& text) {
    writeFile(folder + "/disc.bin", sounds());
    writeFile(folder + "/disc.img", sounds());
    writeFile(folder + "/" + name, text);
    return {folder + "/" + name, folder + "/" + name, linesOf(text)};
}
SmallImage cueImage(const std::string& folder) {
    return described(
        folder, "disc.cue",
        "CATALOG 0724359532257\nPERFORMER \"Ann\"\nTITLE \"Album\"\nFILE \"disc.bin\" BINARY\n"
        "TRACK 01 AUDIO\nTITLE \"One\"\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nPREGAP 00:00:10\n"
        "INDEX 00 00:00:70\nINDEX 01 00:01:00\nTRACK 03 AUDIO\nINDEX 01 00:02:00\nPOSTGAP 00:00:05\n");
}
SmallImage tocImage(const std::string& folder) {
    return described(folder, "disc.toc",
                     "CD_DA\nCATALOG \"0724359532257\"\nCD_TEXT {\nLANGUAGE_MAP { 0: 9 }\n"
                     "LANGUAGE 0 { TITLE \"Album\" }\n}\nTRACK AUDIO\nFILE \"disc.bin\" 0 00:01:00\n"
                     "TRACK AUDIO\nPREGAP 00:00:10\nFILE \"disc.bin\" 00:01:00 00:01:00\n"
                     "TRACK AUDIO\nFILE \"disc.bin\" 00:02:00 00:01:00\nSILENCE 00:00:05\n");
}
SmallImage ccdImage(const std::string& folder) {
    return described(
        folder, "disc.ccd",
        "[CloneCD]\r\nVersion=3\r\n[Disc]\r\nTocEntries=5\r\nSessions=1\r\n[Session 1]\r\n"
        "PreGapMode=0\r\n[Entry 0]\r\nSession=1\r\nPoint=0xa2\r\nControl=0x00\r\nPLBA=225\r\n"
        "[Entry 1]\r\nSession=1\r\nPoint=0x01\r\nControl=0x00\r\nPLBA=0\r\n[Entry 2]\r\nSession=1\r\n"
        "Point=0x02\r\nControl=0x00\r\nPLBA=75\r\n[Entry 3]\r\nSession=1\r\nPoint=0x03\r\n"
        "Control=0x00\r\nPLBA=150\r\n[TRACK 1]\r\nMODE=0\r\nINDEX 1=0\r\n[TRACK 2]\r\nMODE=0\r\n"
        "INDEX 1=75\r\n");
}

SmallImage nrgImage(const std::string& folder) {
    const std::string sound = sounds();
    const uint64_t each = sound.size() / 3;
    std::string tracks = std::string(4, '\0') + "0724359532257" + std::string("\0\0\0\1\3", 5);
    for (uint64_t begin = 0; begin < sound.size(); begin += each) {
        tracks += "DEABC1234567" + big(SectorBytes, 2) + "\7" + std::string(3, '\0') + big(begin, 8) +
                  big(begin, 8) + big(begin + each, 8);
    }
    const std::string texts = pack(0x80, 0, 0, std::string("A\0one\0two\0", 10));
    const std::vector<std::string> parts{
        "DAOX" + big(tracks.size(), 4),        tracks.substr(0, 22), tracks.substr(22),
        "CDTX" + big(texts.size(), 4) + texts, "END!" + big(0, 4),   "NER5" + big(sound.size(), 8)};
    SmallImage image{folder + "/disc.nrg", folder + "/disc.nrg", {}};
    std::string bytes = sound;
    for (const auto& part : parts) {
        image.structures.push_back({bytes.size(), part.size()});
        bytes += part;
    }
    writeFile(image.damaged, bytes);
    return image;
}

// Copies the disc, which other tests share; its tables and folders lie in front of its films.
SmallImage vcd(const std::string& folder) {
    constexpr size_t Tables = 300;
    fs::create_directories(folder);
    for (const char* name : {"disc.cue", "disc.bin"}) {
        fs::copy(fs::path(vcdImage("menu")).parent_path() / name, fs::path(folder) / name);
    }
    SmallImage image{folder + "/disc.cue", folder + "/disc.bin", {}};
    const std::string bytes = readFile(image.damaged);
    for (size_t sector = 0; sector < Tables; ++sector) {
        const std::string block = bytes.substr(sector * SectorBytes + FilmHead, ImageBlock);
        const size_t last = block.find_last_not_of('\0');
        if (last != std::string::npos && block.compare(0, 4, std::string("\0\0\1\xba", 4)) != 0) {
            image.structures.push_back({sector * SectorBytes + FilmHead, last + 1});
        }
    }
    return image;
}

SmallImage dvd(const std::string& folder) {
    fs::create_directories(folder);
    const std::string image = folder + "/disc.iso";
    fs::copy(dvdImage(DvdKind::Menus), image);
    const std::string bytes = readFile(image);
    SmallImage found{image, image, {}};
    for (const auto& each : structuresOf(bytes)) {
        if (bytes.compare(each.begin, 4, std::string("\0\0\1\xba", 4)) != 0) {
            found.structures.push_back(each);
        }
    }
    return found;
}

} // namespace

std::ostream& operator<<(std::ostream& out, const ImageForm& form) {
    return out << form.name;
}

const std::vector<ImageForm>& imageForms() {
    static const std::vector<ImageForm> forms{{"Iso", plainIso},
                                              {"Joliet", jolietIso},
                                              {"RockRidge", rockRidgeIso},
                                              {"Udf102", oldUdf, true},
                                              {"Udf260", newUdf, true},
                                              {"RawSectors", rawIso},
                                              {"Cue", cueImage},
                                              {"Toc", tocImage},
                                              {"Ccd", ccdImage},
                                              {"Nrg", nrgImage},
                                              {"Vcd", vcd},
                                              {"Dvd", dvd}};
    return forms;
}

} // namespace zm::test
