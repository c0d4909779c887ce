#include "services/disc/library/EmbeddedPictures.h"

#include "services/disc/library/FileKinds.h"
#include "services/disc/library/InflateLimit.h"
#include "services/disc/library/TagStream.h"

#include <asffile.h>
#include <attachedpictureframe.h>
#include <flacfile.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <mp4file.h>
#include <mpegfile.h>
#include <opusfile.h>
#include <vorbisfile.h>
#include <wavfile.h>
#include <xiphcomment.h>

#include <algorithm>

namespace zm::disc::library {

namespace {

// What compressed pictures of one file may come to.
constexpr uint64_t MaxInflatedPictures = uint64_t{16} << 20;

// All formats number what a picture shows as ID3 does.
using Shown = TagLib::ID3v2::AttachedPictureFrame::Type;

struct TagPicture {
    int rank = 0;
    TagLib::ByteVector bytes;
};
using TagPictures = std::vector<TagPicture>;

int rankOf(int shown) {
    switch (shown) {
    case Shown::FrontCover:
        return 0;
    case Shown::Other:
        return 1;
    case Shown::Media:
        return 2;
    case Shown::FileIcon:
    case Shown::OtherFileIcon:
        return 4;
    default:
        return 3;
    }
}

void takeFrames(TagPictures& found, const TagLib::ID3v2::Tag* tag) {
    if (!tag) {
        return;
    }
    for (const auto* frame : tag->frameList("APIC")) {
        if (const auto* picture = dynamic_cast<const TagLib::ID3v2::AttachedPictureFrame*>(frame)) {
            found.push_back({rankOf(picture->type()), picture->picture()});
        }
    }
}

void takeBlocks(TagPictures& found, const TagLib::List<TagLib::FLAC::Picture*>& blocks) {
    for (const auto* picture : blocks) {
        found.push_back({rankOf(picture->type()), picture->data()});
    }
}

TagPictures ofMpeg(TagLib::IOStream& stream) {
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    TagPictures found;
    takeFrames(found, file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr);
    return found;
}

TagPictures ofFlac(TagLib::IOStream& stream) {
    TagLib::FLAC::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    TagPictures found;
    takeBlocks(found, file.pictureList());
    if (auto* comment = file.hasXiphComment() ? file.xiphComment() : nullptr) {
        takeBlocks(found, comment->pictureList());
    }
    takeFrames(found, file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr);
    return found;
}

template <class OggFile>
TagPictures ofOgg(TagLib::IOStream& stream) {
    OggFile file(&stream, false);
    TagPictures found;
    if (auto* comment = file.tag()) {
        takeBlocks(found, comment->pictureList());
    }
    return found;
}

TagPictures ofMp4(TagLib::IOStream& stream) {
    TagLib::MP4::File file(&stream, false);
    TagPictures found;
    if (auto* tag = file.tag(); tag && tag->contains("covr")) {
        for (const auto& cover : tag->item("covr").toCoverArtList()) {
            found.push_back({0, cover.data()});
        }
    }
    return found;
}

TagPictures ofAsf(TagLib::IOStream& stream) {
    TagLib::ASF::File file(&stream, false);
    TagPictures found;
    if (auto* tag = file.tag()) {
        for (const auto& attribute : tag->attributeListMap()["WM/Picture"]) {
            const auto picture = attribute.toPicture();
            found.push_back({rankOf(picture.type()), picture.picture()});
        }
    }
    return found;
}

TagPictures ofWav(TagLib::IOStream& stream) {
    TagLib::RIFF::WAV::File file(&stream, false);
    TagPictures found;
    takeFrames(found, file.hasID3v2Tag() ? file.ID3v2Tag() : nullptr);
    return found;
}

struct PictureRow {
    TagFormat format;
    TagPictures (*read)(TagLib::IOStream&);
};

constexpr PictureRow pictureReaders[] = {
    {TagFormat::Mpeg, ofMpeg},
    {TagFormat::Flac, ofFlac},
    {TagFormat::Vorbis, ofOgg<TagLib::Ogg::Vorbis::File>},
    {TagFormat::Opus, ofOgg<TagLib::Ogg::Opus::File>},
    {TagFormat::Mp4, ofMp4},
    {TagFormat::Asf, ofAsf},
    {TagFormat::Wav, ofWav},
};

} // namespace

std::vector<std::string> embeddedPictures(medium::ByteReader& reader, const std::string& name) {
    const auto kind = fileKind(name);
    const auto row = std::find_if(std::begin(pictureReaders), std::end(pictureReaders),
                                  [&](const PictureRow& each) { return kind && each.format == kind->tags; });
    if (row == std::end(pictureReaders)) {
        return {};
    }
    TagStream stream(reader, name);
    const InflateLimit limit(MaxInflatedPictures);
    TagPictures found = row->read(stream);
    std::stable_sort(found.begin(), found.end(),
                     [](const TagPicture& a, const TagPicture& b) { return a.rank < b.rank; });
    std::vector<std::string> pictures;
    for (const TagPicture& picture : found) {
        pictures.emplace_back(picture.bytes.data(), picture.bytes.size());
    }
    return pictures;
}

} // namespace zm::disc::library
