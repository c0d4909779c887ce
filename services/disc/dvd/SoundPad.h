#pragma once

#include "services/disc/dvd/Element.h"
#include "services/dvd/Wire.h"

namespace zm::disc::dvd {

/** Where sound of that kind goes in. */
inline Pad padOf(zm::dvd::SoundKind kind) {
    switch (kind) {
    case zm::dvd::SoundKind::Mpeg:
        return Pad::Mpeg;
    case zm::dvd::SoundKind::Lpcm:
        return Pad::Lpcm;
    case zm::dvd::SoundKind::Dts:
        return Pad::Dts;
    default:
        return Pad::Ac3;
    }
}

} // namespace zm::disc::dvd
