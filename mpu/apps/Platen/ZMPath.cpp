#include "ZMPath.h"

#include <cstdlib>

static const char* PathFromEnvironment(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value ? value : fallback;
}

const char* Oro::ZMCAR::GetZMRCCPath() {
    return PathFromEnvironment("ZM_RCC_PATH", "/zmapps/rccs/");
}

const char* Oro::ZMCAR::GetZMFontPath() {
    return PathFromEnvironment("ZM_FONT_PATH", "/zmapps/fonts/");
}
