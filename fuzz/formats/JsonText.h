#pragma once

#include "fuzz/support/Random.h"

#include <string>
#include <string_view>

namespace zm::fuzz {

/**
 * The text with one value of it replaced by another one, changed, taken away or doubled. The text need not be
 * right; comments and blanks stay.
 */
std::string withChangedValue(const std::string& text, Random& random);

/** `text` with one value replaced by one of `other`, of the same kind where there is one. */
std::string withForeignValue(const std::string& text, std::string_view other, Random& random);

} // namespace zm::fuzz
