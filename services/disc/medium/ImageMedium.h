#pragma once

#include "services/disc/medium/DiscImage.h"

namespace zm::disc::medium {

/**
 * The disc that `image` is: a VCD if a track behind the first holds a film, an audio CD if a track holds sound, both
 * sound and files if there is a file system beside it, else a data disc, or one without contents. `form` says how it
 * was recognised.
 */
Result<std::shared_ptr<Medium>> openImageMedium(DiscImage image, const std::string& form);

} // namespace zm::disc::medium
