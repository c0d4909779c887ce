// CD-TEXT: packs as a drive gives them. Their check sums are made to fit, so that more than the first pack is read,
// unless the input's size is odd.
#include "services/disc/image/CdText.h"
#include "fuzz/support/Check.h"

#include <string>

using namespace zm::disc::image;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    for (size_t at = 0; size % 2 == 0 && at + CdTextPackBytes <= size; at += CdTextPackBytes) {
        const uint16_t sum = cdTextSum(std::string_view(bytes).substr(at, CdTextBareBytes));
        bytes[at + CdTextBareBytes] = static_cast<char>(sum >> 8);
        bytes[at + CdTextBareBytes + 1] = static_cast<char>(sum & 0xFF);
    }
    DiscSheet sheet;
    sheet.title = "kept";
    for (int number = 1; number <= 3; ++number) {
        sheet.tracks.push_back({number, *trackFormat("AUDIO"), {}, {}, {}, {{{}, 0, 2352}}});
    }
    const auto added = addCdText(sheet, bytes);
    zm::fuzz::check(added || !added.error().empty(), "a failure says why");
    zm::fuzz::check(sheet.title == "kept", "what the sheet says counts first");
    zm::fuzz::check(added || sheet.tracks[0].title.empty(), "a failure changes nothing");
    return 0;
}
