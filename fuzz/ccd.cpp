// Descriptions of images in three files: the text as it stands in a file.
#include "fuzz/support/DiscSheetCheck.h"
#include "services/disc/image/CcdSheet.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zm::fuzz::checkSheet(
        zm::disc::image::parseCcdSheet({reinterpret_cast<const char*>(data), size}, "d.img"));
    return 0;
}
