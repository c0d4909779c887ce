#pragma once

#include <sys/types.h>

#include <string>

namespace zm::test {

/** Kinds of DVDs; what is on them stands in make-dvd. */
enum class DvdKind { Menus, Formats, Film, Sync, Shapes, Stills, Angles, Slides };

/** The folder of a DVD, made once for all tests of a build folder; its image has the same name and ".iso". */
std::string dvdFolder(DvdKind kind);
inline std::string dvdImage(DvdKind kind) {
    return dvdFolder(kind) + ".iso";
}

/** The DVD reader that process `service` has started; 0 without one. */
pid_t dvdReaderOf(pid_t service);

} // namespace zm::test
