#pragma once

#include "services/disc/model/Media.h"

#include <optional>
#include <string>
#include <string_view>

namespace zm::disc::library {

/** How the tags of a music file are stored. */
enum class TagFormat { None, Mpeg, Flac, Vorbis, Opus, Mp4, Asf, Wav };

struct FileKind {
    std::string_view extension; ///< lower case, without the dot
    model::MediaKind kind;
    TagFormat tags = TagFormat::None;
};

/** The row of a file by its name's extension in any case; nothing for files that cannot be played. */
std::optional<FileKind> fileKind(std::string_view name);

/** Whether a picture has a name that players of music give to a cover, in any case. */
bool isCover(std::string_view name);
/** The place of that name among those of covers, 0 for the likeliest; -1 if it is none. */
int coverRank(std::string_view name);

} // namespace zm::disc::library
