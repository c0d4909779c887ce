#pragma once

#include <string>

namespace zm::disc::medium {

/** The UDF library spells characters beyond the first 65,536 as two halves of three bytes each. Both ways; whatever is
 * no such pair stays as it is. */
std::string plainUtf8(const std::string& rare);
std::string rareUtf8(const std::string& plain);

} // namespace zm::disc::medium
