#pragma once

#include "services/disc/engine/Gst.h"

#include <array>
#include <cstddef>

namespace zm::disc::dvd {

/** The ways out of a DVD's source element, one for each kind of stream. */
enum class Pad { Video, Subtitle, Ac3, Mpeg, Lpcm, Dts };
inline constexpr size_t PadCount = 6;
inline constexpr std::array<Pad, 4> soundPads{Pad::Ac3, Pad::Mpeg, Pad::Lpcm, Pad::Dts};

/** Makes a source element that only has these pads; whoever reads the disc pushes into them. The reference is
 * floating. */
GstElement* makeElement();
/** Owned by the element. */
GstPad* padOf(GstElement* element, Pad pad);

} // namespace zm::disc::dvd
