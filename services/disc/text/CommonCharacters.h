#pragma once

#include <string_view>

namespace zm::disc::text {

/** Characters that make up much of everyday texts, titles and names in one language. */
extern const std::u32string_view commonSimplified;
extern const std::u32string_view commonTraditional;
extern const std::u32string_view commonKanji;
extern const std::u32string_view commonHangul;

} // namespace zm::disc::text
