#pragma once

#include "services/disc/image/DiscSheet.h"
#include "services/disc/image/SoundHeader.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** A file that a description of a disc names. */
struct FoundSheetFile {
    std::string path;
    uint64_t size = 0;
    image::SheetFileType type = image::SheetFileType::Sectors;
    image::SoundHeader sound; ///< of a file of sound
};

/** Looks for `file` beside the description in `folder` or in folders below; if none is called exactly so, one that
 * differs in the case of its letters counts. The error names the file and what is wrong. */
Result<FoundSheetFile> findSheetFile(const std::string& folder, const image::SheetFile& file);

/** At most `most` bytes of the file at `path`. */
Result<std::string> readSmallFile(const std::string& path, size_t most);

} // namespace zm::disc::medium
