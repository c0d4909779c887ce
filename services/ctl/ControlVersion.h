#pragma once

namespace zm::ctl {

/** The version of the messages on ctl.sock that this build speaks (docs/protocols.md). */
inline constexpr int ControlVersion = 1;

} // namespace zm::ctl
