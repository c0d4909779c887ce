#pragma once

#include <cstdint>
#include <string>

/** Where one PPS object lies and how it is opened. */
struct fileTagInfo {
    int32_t key;      ///< number under which changes are reported
    std::string path; ///< PPS path with its open options
    int32_t flags;    ///< open flags in the target's numbers (2 read and write, 1 write only, 256 create, 512
                      ///< truncate)
    uint32_t mode;    ///< permission bits of a created object
};
