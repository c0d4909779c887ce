#pragma once

#include "services/disc/Medium.h"

namespace zm::disc {

/** The disc at `path`: a folder or an image of a data disc. The error names the path and says what is wrong.
 */
Result<std::shared_ptr<Medium>> openMedium(const std::string& path);

} // namespace zm::disc
