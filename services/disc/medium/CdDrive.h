#pragma once

#include "services/disc/medium/DiscImage.h"
#include "services/disc/medium/DriveToc.h"

namespace zm::disc::medium {

/** Whether the disc in the drive at `path` is a CD that is not read as files alone: it holds sound, or no track at all.
 * May take as long as the drive does, as all here. */
bool isCdDrive(const std::string& path);
/** Such a disc. The error names the drive and what is wrong with the disc's table of contents. */
Result<DiscImage> readCdDrive(const std::string& path);

/** The disc that `toc` describes, in the drive at `path`. */
Result<DiscImage> imageOfDrive(const DriveToc& toc, const std::string& path);

} // namespace zm::disc::medium
