#pragma once

#include "BuildPaths.h"

#include <string>

namespace zm::test {

/** The pictures as they should be. */
inline const std::string references = ZM_SOURCE_DIR "/tests/pictures/reference/";
/** Those that the last run found to be different, under the same names. */
inline const std::string changes = ZM_BINARY_DIR "/pictures/";
/** What differs in them. */
inline const std::string differences = ZM_BINARY_DIR "/pictures/difference/";

} // namespace zm::test
