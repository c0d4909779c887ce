#pragma once

#include <string_view>

namespace zm::disc::text {

/**
 * Orders names as people do: runs of digits by their value (2 before 10), letters without regard to case, the
 * rest by code point. Names that are equal so far are ordered by their bytes, so the order is total.
 * Negative, zero or positive as `a` comes before, is, or comes after `b`.
 */
int compareNatural(std::string_view a, std::string_view b);

} // namespace zm::disc::text
