#pragma once

#include "base/Result.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zm::disc::image {

/** The words that the descriptions of discs are made of. */

inline constexpr std::string_view Blanks = " \t\r\f\v";

std::string_view trim(std::string_view text);
std::string upperCase(std::string_view word);

struct SplitText {
    std::string_view first;
    std::string_view rest;
};
/** The first word and what follows it. */
SplitText splitWord(std::string_view text);

/** The text of a line, with or without quotes; quotes inside belong to it. */
std::string unquoted(std::string_view text);

/** A whole number from 0 to `largest`. */
std::optional<int> wholeNumber(std::string_view text, int largest);

/** Minutes, seconds and sectors ("mm:ss:ff") as a number of sectors. */
std::optional<int> sectorsOf(std::string_view time);

/** Whether `text` is a disc's catalogue number: 13 digits. */
bool isCatalogNumber(std::string_view text);
/** Whether `text` is a recording's number: 12 letters and digits. */
bool isIsrc(std::string_view text);

/** The error of a line: "line 3: what stands there: what is wrong". */
Error lineError(int line, std::string_view culprit, const std::string& what);

/** Calls `take` with the number and text of each line, without blanks around it, until one fails; too long a line is an
 * error. Any kind of line end, with or without a byte order mark. */
Status forEachLine(std::string_view text, const std::function<Status(int, std::string_view)>& take);

} // namespace zm::disc::image
