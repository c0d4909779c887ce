#pragma once

#include "base/JsonMessage.h"
#include "base/Result.h"

#include <string>
#include <vector>

namespace zm::bench::screen {

/** A text on the screen, or something on it that can be touched. */
struct SeenItem {
    std::string view; ///< "main" or "osd"
    int window = 0;
    int item = 0;
    std::string kind;
    std::string text;
    bool enabled = true;
    bool touchable = false;
    int x = 0; ///< middle
    int y = 0;
};

/** From the application's answer to "seen", in reading order: view by view, from the top to the bottom. */
std::vector<SeenItem> seenItems(const Json& answer);
/** A heading for each page and a line for each item: its id and its text, or its kind in brackets. */
std::string seenText(const std::vector<SeenItem>& items);
/**
 * The one that can be touched and is called `name`: by its whole text, else its id, else its text in other letters or
 * a part of it. An error says why there is none, and what comes nearest.
 */
Result<SeenItem> findSeen(const std::vector<SeenItem>& items, const std::string& name);

} // namespace zm::bench::screen
