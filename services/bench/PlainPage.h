#pragma once

#include "base/Rect.h"
#include "services/bench/Compositor.h"

#include <string>

namespace zm {

/** The area of every plain page that leads back to the disc player. */
inline constexpr Rect PlainPageReturn{300, 300, 200, 80};

/** The page that stands for another application of the head unit. */
Image drawPlainPage(const std::string& application);

} // namespace zm
