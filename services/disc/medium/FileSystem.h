#pragma once

#include "services/disc/medium/IsoMedium.h"

namespace zm::disc::medium {

/** The file system of an image that `opener` opens, whichever it is: UDF, else ISO 9660. `image` names it in error
 * texts, which say what it is instead. */
Result<std::shared_ptr<Medium>> openFileSystem(const std::string& image, const IsoMedium::Opener& opener);
/** That of a file that is the image. */
Result<std::shared_ptr<Medium>> openFileSystem(const std::string& image);

} // namespace zm::disc::medium
