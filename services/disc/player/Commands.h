#pragma once

namespace zm::disc::player {

class Transport;

/** Also means something without anything that plays. */
inline constexpr int BrowseCommand = 186;

/** Carries the command of that number out, `first` and `second` being its parameters; false if there is none. */
bool carryOut(Transport& transport, int command, int first, int second);

} // namespace zm::disc::player
