#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace zm::disc::image {

/** A word, a text or a brace of a TOC file. */
struct TocToken {
    enum class Kind { Word, Text, Open, Close };
    Kind kind = Kind::Word;
    std::string text; ///< of a text without its quotes and escapes
    int line = 0;

    bool is(std::string_view word) const { return kind == Kind::Word && text == word; }
};

/** Takes a TOC file apart, without its comments. The error names the line. */
Result<std::vector<TocToken>> tokensOfToc(std::string_view text);

} // namespace zm::disc::image
