#include "services/disc/library/Tags.h"

#include "services/disc/library/FileKinds.h"
#include "services/disc/library/InflateLimit.h"
#include "services/disc/library/TagStream.h"

#include <apetag.h>
#include <asffile.h>
#include <flacfile.h>
#include <id3v1tag.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <infotag.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <opusfile.h>
#include <textidentificationframe.h>
#include <vorbisfile.h>
#include <wavfile.h>
#include <xiphcomment.h>

#include <algorithm>
#include <cstdlib>

namespace zm::disc::library {

namespace {

constexpr auto Style = TagLib::AudioProperties::Fast;
// Longer texts are not for a display of 800 pixels and would swell the published objects.
constexpr unsigned MaxTextLength = 250;
// What compressed texts of one file may come to.
constexpr uint64_t MaxInflated = uint64_t{4} << 20;
// An old tag at the end of a file has this many bytes for each text.
constexpr size_t OldTagTextBytes = 30;

using Text = RawTags::Text;

Text knownText(const TagLib::String& text) {
    return {text.substr(0, MaxTextLength).to8Bit(true), false};
}

// Text whose bytes were taken as Latin-1 although nothing says that they are.
Text doubtfulText(const TagLib::String& text) {
    return text.isLatin1() ? Text{text.substr(0, MaxTextLength).to8Bit(false), true} : knownText(text);
}

// A text that fills its field was cut, maybe inside a character of two bytes.
Text oldTagText(const TagLib::String& text) {
    Text result = doubtfulText(text);
    auto& bytes = result.bytes;
    const auto isHigh = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    const auto run = std::find_if_not(bytes.rbegin(), bytes.rend(), isHigh) - bytes.rbegin();
    if (bytes.size() >= OldTagTextBytes && run % 2 == 1) {
        bytes.pop_back();
    }
    return result;
}

int number(const TagLib::String& text) {
    return std::max(0, text.toInt());
}

template <class TagLibFile>
int lengthOf(TagLibFile& file) {
    return file.audioProperties() ? std::max(0, file.audioProperties()->lengthInSeconds()) : 0;
}

void takePlainTag(RawTags& tags, const TagLib::Tag& tag) {
    tags.title = knownText(tag.title());
    tags.artist = knownText(tag.artist());
    tags.album = knownText(tag.album());
    tags.track = static_cast<int>(std::min(tag.track(), 9999u));
}

const TagLib::ID3v2::TextIdentificationFrame* textFrame(const TagLib::ID3v2::Tag& tag, const char* id) {
    const auto& frames = tag.frameList(id);
    return frames.isEmpty() ? nullptr
                            : dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frames.front());
}

Text frameText(const TagLib::ID3v2::Tag& tag, const char* id) {
    const auto* frame = textFrame(tag, id);
    // The library takes the number of an encoding as it stands in the file.
    if (!frame || frame->textEncoding() > TagLib::String::UTF8) {
        return {};
    }
    return frame->textEncoding() == TagLib::String::Latin1 ? doubtfulText(frame->toString())
                                                           : knownText(frame->toString());
}

int frameNumber(const TagLib::ID3v2::Tag& tag, const char* id) {
    const auto* frame = textFrame(tag, id);
    return frame ? number(frame->toString()) : 0; // "3/12" counts as 3
}

// Fills what is still empty.
void complete(RawTags& tags, const RawTags& other) {
    for (const auto text : {&RawTags::title, &RawTags::artist, &RawTags::album}) {
        if ((tags.*text).bytes.empty()) {
            tags.*text = other.*text;
        }
    }
    tags.track = tags.track ? tags.track : other.track;
}

RawTags id3Tags(const TagLib::ID3v2::Tag& tag) {
    RawTags tags;
    tags.title = frameText(tag, "TIT2");
    tags.artist = frameText(tag, "TPE1");
    tags.album = frameText(tag, "TALB");
    tags.track = frameNumber(tag, "TRCK");
    tags.disc = frameNumber(tag, "TPOS");
    return tags;
}

RawTags readMpeg(TagLib::IOStream& stream) {
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), true, Style);
    RawTags tags;
    if (file.hasID3v2Tag()) {
        tags = id3Tags(*file.ID3v2Tag());
    }
    if (const auto* tag = file.hasAPETag() ? file.APETag() : nullptr) {
        RawTags other;
        takePlainTag(other, *tag);
        complete(tags, other);
    }
    if (const auto* tag = file.hasID3v1Tag() ? file.ID3v1Tag() : nullptr) {
        RawTags other;
        other.title = oldTagText(tag->title());
        other.artist = oldTagText(tag->artist());
        other.album = oldTagText(tag->album());
        other.track = static_cast<int>(tag->track());
        complete(tags, other);
    }
    tags.seconds = lengthOf(file);
    return tags;
}

RawTags readFlac(TagLib::IOStream& stream) {
    TagLib::FLAC::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), true, Style);
    RawTags tags;
    takePlainTag(tags, *file.tag());
    if (auto* comment = file.xiphComment()) {
        const auto& fields = comment->fieldListMap();
        tags.disc = fields.contains("DISCNUMBER") ? number(fields["DISCNUMBER"].front()) : 0;
    }
    tags.seconds = lengthOf(file);
    return tags;
}

template <class OggFile>
RawTags readOgg(TagLib::IOStream& stream) {
    OggFile file(&stream, true, Style);
    RawTags tags;
    if (auto* comment = file.tag()) {
        takePlainTag(tags, *comment);
        const auto& fields = comment->fieldListMap();
        tags.disc = fields.contains("DISCNUMBER") ? number(fields["DISCNUMBER"].front()) : 0;
    }
    tags.seconds = lengthOf(file);
    return tags;
}

RawTags readMp4(TagLib::IOStream& stream) {
    TagLib::MP4::File file(&stream, true, Style);
    RawTags tags;
    if (auto* tag = file.tag()) {
        takePlainTag(tags, *tag);
        tags.disc = tag->contains("disk") ? std::max(0, tag->item("disk").toIntPair().first) : 0;
    }
    tags.seconds = lengthOf(file);
    return tags;
}

RawTags readAsf(TagLib::IOStream& stream) {
    TagLib::ASF::File file(&stream, true, Style);
    RawTags tags;
    if (const auto* tag = file.tag()) {
        takePlainTag(tags, *tag);
    }
    tags.seconds = lengthOf(file);
    return tags;
}

// Nothing in a RIFF file says in which characters its texts are.
struct BytesAsTheyAre : TagLib::RIFF::Info::StringHandler {
    TagLib::String parse(const TagLib::ByteVector& bytes) const override {
        const int end = bytes.find('\0');
        return {end < 0 ? bytes : bytes.mid(0, static_cast<unsigned>(end)), TagLib::String::Latin1};
    }
};
const BytesAsTheyAre infoTexts;
[[maybe_unused]] const bool infoTextsAreSet = (TagLib::RIFF::Info::Tag::setStringHandler(&infoTexts), true);

RawTags readWav(TagLib::IOStream& stream) {
    TagLib::RIFF::WAV::File file(&stream, true, Style);
    RawTags tags;
    if (file.hasID3v2Tag()) {
        tags = id3Tags(*file.ID3v2Tag());
    }
    if (file.hasInfoTag()) {
        const auto& info = *file.InfoTag();
        RawTags other;
        other.title = doubtfulText(info.title());
        other.artist = doubtfulText(info.artist());
        other.album = doubtfulText(info.album());
        other.track = static_cast<int>(std::min(info.track(), 9999u));
        complete(tags, other);
    }
    tags.seconds = lengthOf(file);
    return tags;
}

struct ReaderRow {
    TagFormat format;
    RawTags (*read)(TagLib::IOStream&);
};

constexpr ReaderRow readers[] = {
    {TagFormat::Mpeg, readMpeg},
    {TagFormat::Flac, readFlac},
    {TagFormat::Vorbis, readOgg<TagLib::Ogg::Vorbis::File>},
    {TagFormat::Opus, readOgg<TagLib::Ogg::Opus::File>},
    {TagFormat::Mp4, readMp4},
    {TagFormat::Asf, readAsf},
    {TagFormat::Wav, readWav},
};

constexpr auto rawTexts = {&RawTags::title, &RawTags::artist, &RawTags::album};

std::string repairText(const text::CharsetRepair& repair, const Text& text) {
    return text.ofUnknownCharset ? repair.toUtf8(text.bytes) : text::cleanText(text.bytes);
}

} // namespace

RawTags readTags(medium::ByteReader& reader, const std::string& name) {
    const auto kind = fileKind(name);
    const auto row = std::find_if(std::begin(readers), std::end(readers),
                                  [&](const ReaderRow& each) { return kind && each.format == kind->tags; });
    if (row == std::end(readers)) {
        return {};
    }
    TagStream stream(reader, name);
    const InflateLimit limit(MaxInflated);
    return row->read(stream);
}

void learnTags(text::CharsetRepair& repair, const RawTags& tags) {
    for (const auto text : rawTexts) {
        if ((tags.*text).ofUnknownCharset) {
            repair.learn((tags.*text).bytes);
        }
    }
}

model::Tags repairTags(const text::CharsetRepair& repair, const RawTags& tags) {
    return {repairText(repair, tags.title),
            repairText(repair, tags.artist),
            repairText(repair, tags.album),
            tags.disc,
            tags.track,
            tags.seconds};
}

} // namespace zm::disc::library
