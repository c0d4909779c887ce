#pragma once

#include <malloc.h>

#include <filesystem>
#include <iterator>

namespace zm::test {

/** What the process holds at a moment. */
struct Holdings {
    long bytes = 0;
    long descriptors = 0;
    long threads = 0;

    static Holdings now() {
        return {static_cast<long>(mallinfo2().uordblks + mallinfo2().hblkhd), entries("/proc/self/fd"),
                entries("/proc/self/task")};
    }

private:
    static long entries(const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder),
                             std::filesystem::directory_iterator());
    }
};

} // namespace zm::test
