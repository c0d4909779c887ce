#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** Bytes with an ending that names a format. */
struct DamagedFile {
    std::string name;
    std::string bytes;
};

/** Files of every kind that discs hold, each damaged in one of several ways; the same ones in every run. */
std::vector<DamagedFile> damagedFiles();

} // namespace zm::test
