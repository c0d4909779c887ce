#pragma once

#include "services/disc/engine/Gst.h"

#include <array>
#include <cstddef>

namespace zm::disc {

/** The ways out of a DVD's source element, one for each kind of stream. */
enum class DvdPad { Video, Subtitle, Ac3, Mpeg, Lpcm, Dts };
inline constexpr size_t DvdPadCount = 6;
inline constexpr std::array<DvdPad, 4> soundPads{DvdPad::Ac3, DvdPad::Mpeg, DvdPad::Lpcm, DvdPad::Dts};

/** Makes a source element that only has these pads; whoever reads the disc pushes into them. The reference is
 * floating. */
GstElement* makeDvdElement();
/** Owned by the element. */
GstPad* dvdPad(GstElement* element, DvdPad pad);

} // namespace zm::disc
