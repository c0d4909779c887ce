#include "services/disc/library/FileKinds.h"

#include <glib.h>

#include <algorithm>

namespace zm::disc::library {

namespace {

using enum model::MediaKind;

constexpr FileKind table[] = {
    {"mp3", Music, TagFormat::Mpeg},
    {"mp2", Music, TagFormat::Mpeg},
    {"flac", Music, TagFormat::Flac},
    {"ogg", Music, TagFormat::Vorbis},
    {"oga", Music, TagFormat::Vorbis},
    {"opus", Music, TagFormat::Opus},
    {"m4a", Music, TagFormat::Mp4},
    {"m4b", Music, TagFormat::Mp4},
    {"aac", Music},
    {"wma", Music, TagFormat::Asf},
    {"wav", Music, TagFormat::Wav},
    {"mp4", Video},
    {"m4v", Video},
    {"mov", Video},
    {"mkv", Video},
    {"webm", Video},
    {"avi", Video},
    {"divx", Video},
    {"mpg", Video},
    {"mpeg", Video},
    {"vob", Video},
    {"dat", Video},
    {"ts", Video},
    {"wmv", Video},
    {"ogv", Video},
    {"jpg", Photo},
    {"jpeg", Photo},
    {"png", Photo},
    {"bmp", Photo},
    {"gif", Photo},
};

constexpr std::string_view covers[] = {"cover", "folder", "front"};

std::string lowered(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), g_ascii_tolower);
    return lower;
}

} // namespace

std::optional<FileKind> fileKind(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return std::nullopt;
    }
    const std::string extension = lowered(name.substr(dot + 1));
    const auto row = std::find_if(std::begin(table), std::end(table),
                                  [&](const FileKind& each) { return each.extension == extension; });
    if (row == std::end(table)) {
        return std::nullopt;
    }
    return *row;
}

int coverRank(std::string_view name) {
    const auto kind = fileKind(name);
    const std::string stem = lowered(name.substr(0, name.rfind('.')));
    const auto found = std::find(std::begin(covers), std::end(covers), stem);
    const bool cover = kind && kind->kind == Photo && found != std::end(covers);
    return cover ? static_cast<int>(found - std::begin(covers)) : -1;
}

bool isCover(std::string_view name) {
    return coverRank(name) >= 0;
}

} // namespace zm::disc::library
