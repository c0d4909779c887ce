#pragma once

#include <string>

namespace zm::test {

/** Makes `folder` with the files "song 1.wav" ..., each a minute of silence that
 * the disc service can play. */
void writeMusicFolder(const std::string& folder, int songs);

} // namespace zm::test
