#include "services/disc/image/DiscSheet.h"

#include "services/disc/text/Charset.h"

namespace zm::disc::image {

namespace {

template <class Use>
void forEachText(DiscSheet& sheet, Use use) {
    use(sheet.title);
    use(sheet.performer);
    for (auto& file : sheet.files) {
        use(file.name);
    }
    for (auto& track : sheet.tracks) {
        use(track.title);
        use(track.performer);
    }
}

} // namespace

void repairTexts(DiscSheet& sheet) {
    text::CharsetRepair repair;
    forEachText(sheet, [&](const std::string& text) { repair.learn(text); });
    forEachText(sheet, [&](std::string& text) { text = repair.toUtf8(text); });
}

} // namespace zm::disc::image
