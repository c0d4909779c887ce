#pragma once

#include "base/Result.h"
#include "services/disc/image/DiscSheet.h"

#include <string>
#include <string_view>

namespace zm::disc::image {

/** The last bytes of such an image say where its trailer begins. */
inline constexpr size_t NrgFooterBytes = 12;

/** Where the trailer of an image of `size` bytes begins that ends with `footer`; nothing if it is no such image. */
std::optional<uint64_t> nrgTrailerPlace(std::string_view footer, uint64_t size);

/**
 * Reads the trailer of an image (.nrg) that has its description behind its sectors. `image` is the file's name, `size`
 * its bytes, `trailer` what stands behind the sectors. The error names the chunk and what is wrong in it.
 */
Result<DiscSheet> parseNrgTrailer(std::string_view trailer, const std::string& image, uint64_t size);

} // namespace zm::disc::image
