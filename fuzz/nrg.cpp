// Images with their description at their end: what stands behind the sectors, of which there are 16 MB.
#include "fuzz/support/DiscSheetCheck.h"
#include "services/disc/image/NrgTrailer.h"

using namespace zm::disc::image;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr uint64_t Sectors = 16u << 20;
    const std::string_view trailer(reinterpret_cast<const char*>(data), size);
    const auto place = nrgTrailerPlace(trailer, Sectors + size);
    zm::fuzz::check(!place || *place < Sectors + size, "a description begins in the image");
    zm::fuzz::checkSheet(parseNrgTrailer(trailer, "d.nrg", Sectors + size));
    return 0;
}
