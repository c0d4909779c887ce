#pragma once

#include "base/Result.h"
#include "fuzz/support/Check.h"
#include "services/disc/image/DiscSheet.h"

#include <algorithm>

namespace zm::fuzz {

inline void checkPiece(const disc::image::DiscSheet& sheet, const disc::image::SheetPiece& piece) {
    check(!piece.file || *piece.file < sheet.files.size(), "a piece lies in a file");
    check(piece.file || piece.end, "silence has a length");
    check(!piece.end || *piece.end > piece.begin, "a piece has an end behind its beginning");
}

/** What every reader of a disc's description promises. */
inline void checkSheet(const Result<disc::image::DiscSheet>& sheet) {
    if (!sheet) {
        check(!sheet.error().empty(), "a failure says why");
        check(sheet.error().find('\n') == std::string::npos, "a failure is one line");
        return;
    }
    check(!sheet->tracks.empty() && sheet->tracks.size() <= 99, "a disc has 1 to 99 tracks");
    check(std::none_of(sheet->files.begin(), sheet->files.end(),
                       [](const disc::image::SheetFile& file) { return file.rawName.empty(); }),
          "a file has a name");
    int number = 0;
    for (const auto& track : sheet->tracks) {
        check(track.number > number, "numbers grow");
        number = track.number;
        check(track.format.sectorSize > track.format.headerSize, "a sector has room for bytes of its own");
        check(!track.pieces.empty(), "a track has something in it");
        for (const auto& piece : track.pieces) {
            checkPiece(*sheet, piece);
        }
    }
    if (sheet->hidden) {
        check(sheet->hidden->file && sheet->hidden->end, "what is hidden lies in a file and ends");
        checkPiece(*sheet, *sheet->hidden);
    }
}

} // namespace zm::fuzz
