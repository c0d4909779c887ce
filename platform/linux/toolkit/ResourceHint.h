#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zm {

/** A remedy for a name that is not known: ` (did you mean "plain"?)`, or nothing if no known one is near. */
std::string didYouMean(std::string_view name, const std::vector<std::string>& known);

/**
 * What is wrong with a text that is not JSON, as "found ..., expected ...". `reason` is the parser's own
 * message, `token` what it could not use.
 */
std::string syntaxFault(std::string_view reason, const std::string& token);

} // namespace zm
