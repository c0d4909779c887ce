#pragma once

namespace Oro::ZMCAR {

/** Folder of the resource files: environment variable "ZM_RCC_PATH", else "/zmapps/rccs/". Ends with a slash:
 * names are appended as they are. */
const char* GetZMRCCPath();
/** Folder of the fonts: environment variable "ZM_FONT_PATH", else "/zmapps/fonts/". */
const char* GetZMFontPath();

} // namespace Oro::ZMCAR
