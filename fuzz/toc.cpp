// TOC files: the text as it stands in a file.
#include "fuzz/support/DiscSheetCheck.h"
#include "services/disc/image/TocFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zm::fuzz::checkSheet(zm::disc::image::parseTocFile({reinterpret_cast<const char*>(data), size}));
    return 0;
}
