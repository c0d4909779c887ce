#pragma once

#include "tests/toolkit/LegibilityRules.h"

namespace zm::test {

/** Play and pause are filled and a quarter larger than any other key of their rank. */
Findings primaryActions(const zm::Resource& resource);
/** On the music play page the player's keys stand 24 pixels and more from their neighbours on either side. */
Findings groupDistances(const zm::Resource& resource);
/** Rows of lists are 60 pixels high, the gap between them not counted. */
Findings rowHeights(const zm::Resource& resource);
/** The messages of all pages have their picture and sentence at the same heights. */
Findings messageHeights(const zm::Resource& resource);
/** What fades takes 150 to 250 milliseconds. */
Findings motionTimes(const zm::Resource& resource);
/** Each text is used: by a page, or by the application, whose numbers are below 20000. */
Findings unusedTexts(const std::vector<zm::Resource>& resources);

} // namespace zm::test
