#pragma once

namespace zm::film {

// The descriptors that the film's process is started with.
inline constexpr int ControlFd = 3; ///< JSON messages (base/Socket.h), see docs/protocols.md
inline constexpr int ScreenFd = 4;  ///< SharedScreen

} // namespace zm::film
