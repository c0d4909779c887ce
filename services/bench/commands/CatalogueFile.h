#pragma once

#include "base/Result.h"

#include <string>

namespace zm::bench::commands {

/** The bytes of a catalogue as it is, with readers and a writer at it; empty without one. */
Result<std::string> readCatalogue(const std::string& file);
/** Puts what these bytes hold in its place, under those that have it open. */
Status replaceCatalogue(const std::string& file, const std::string& bytes);

} // namespace zm::bench::commands
