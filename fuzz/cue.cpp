// Cue sheets: the text as it stands in a file.
#include "fuzz/formats/CueText.h"
#include "fuzz/support/DiscSheetCheck.h"
#include "services/disc/image/CueSheet.h"

using namespace zm;
using namespace zm::disc::image;
using namespace zm::fuzz;

namespace {

// Tracks of one file follow each other without overlapping.
void checkOrder(const DiscSheet& sheet) {
    const SheetPiece* before = nullptr;
    for (const auto& track : sheet.tracks) {
        const auto& piece = track.pieces.front();
        check(piece.file.has_value(), "a track begins in a file");
        if (before) {
            check(*piece.file >= *before->file, "files are used one after the other");
            check(*piece.file != *before->file || (before->end && *before->end <= piece.begin),
                  "a track ends before the next one begins");
        }
        before = &piece;
    }
}

} // namespace

const zm::fuzz::Format& zm::fuzz::format() {
    return cueText();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto sheet = parseCueSheet({reinterpret_cast<const char*>(data), size});
    checkSheet(sheet);
    if (sheet) {
        checkOrder(*sheet);
    }
    return 0;
}
