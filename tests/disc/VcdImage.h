#pragma once

#include <string>

namespace zm::test {

/** The cue sheet of a VCD of that kind, see make-vcd. Made once. */
std::string vcdImage(const std::string& kind);

} // namespace zm::test
