#pragma once

#include "platform/linux/toolkit/FontBook.h"
#include "platform/linux/toolkit/Resource.h"
#include "platform/linux/toolkit/ScreenFit.h"

#include <string>
#include <vector>

namespace zm::test {

/** What is wrong, a line each: "window 6 item 6521: ...". */
using Findings = std::vector<std::string>;

/** Lengths below are those of the usual screen; on a larger one they are larger by its `fit`. */
inline const ScreenFit usualScreen{{}, {}};

/** Everything that is touched is at least 60 pixels high and wide, and 76 where the page leaves room. */
Findings touchTargets(const zm::Resource& resource, const ScreenFit& fit = usualScreen);
/** Controls stand at least 8 pixels apart and inside the screen. */
Findings distances(const zm::Resource& resource, const ScreenFit& fit = usualScreen);
/** Texts are at least 24 pixels high, 20 in the status bar, titles 32. */
Findings textSizes(const zm::Resource& resource, const ScreenFit& fit = usualScreen);
/** In each theme and state texts contrast 4.5 : 1 with what they stand on, pictures,
 * borders and bars 3 : 1. */
Findings contrasts(const zm::Resource& resource);
/** Names in the tallest letters of Latin, Chinese and Arabic stay inside their item, or row. */
Findings highTexts(const zm::Resource& resource, zm::FontBook& fonts);
/** No text is cut at its longest in any language, and each letter has a font. */
Findings cutTexts(const zm::Resource& resource, zm::FontBook& fonts);

} // namespace zm::test
