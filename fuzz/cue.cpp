// Cue sheets: the text as it stands in a file.
#include "fuzz/support/Check.h"
#include "services/disc/medium/CueSheet.h"

#include <algorithm>

using namespace zm;
using namespace zm::disc;
using namespace zm::fuzz;

namespace {

// Tracks of one file follow each other without overlapping.
void checkPlaces(const CueSheet& sheet) {
    const CueTrack* before = nullptr;
    for (const auto& track : sheet.tracks) {
        check(track.file < sheet.files.size(), "a track lies in a file");
        check(!track.end || *track.end > track.begin, "a track has an end behind its beginning");
        check(track.format.sectorSize > track.format.headerSize, "a sector has room for bytes of its own");
        if (before) {
            check(track.number > before->number, "numbers grow");
            check(track.file >= before->file, "files are used one after the other");
            check(track.file != before->file || (before->end && *before->end <= track.begin),
                  "a track ends before the next one begins");
        }
        before = &track;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto sheet = parseCueSheet(text);
    if (!sheet) {
        check(!sheet.error().empty(), "a failure says why");
        check(sheet.error().find('\n') == std::string::npos, "a failure is one line");
        return 0;
    }
    check(!sheet->tracks.empty() && sheet->tracks.size() <= 99, "a disc has 1 to 99 tracks");
    check(std::none_of(sheet->files.begin(), sheet->files.end(),
                       [](const CueFile& file) { return file.rawName.empty(); }),
          "a file has a name");
    checkPlaces(*sheet);
    return 0;
}
