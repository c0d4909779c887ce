#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace zm::mutation {

/**
 * Which of the mutants compiled into this program lives: the one whose number is in ZM_MUTANT, or none. Those that
 * are reached are marked, a byte each, in the file that ZM_MUTANT_REACHED names; programs that a
 * test starts mark theirs there, too.
 */
struct Choice {
    int number = -1;
    unsigned char* reached = nullptr;
    long size = 0;

    Choice() {
        if (const char* chosen = std::getenv("ZM_MUTANT")) {
            number = std::atoi(chosen);
        }
        const char* path = std::getenv("ZM_MUTANT_REACHED");
        const int file = path ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
        struct stat about {};
        if (file >= 0 && ::fstat(file, &about) == 0) {
            void* area = ::mmap(nullptr, static_cast<size_t>(about.st_size), PROT_READ | PROT_WRITE,
                                MAP_SHARED, file, 0);
            if (area != MAP_FAILED) {
                reached = static_cast<unsigned char*>(area);
                size = about.st_size;
            }
            ::close(file);
        }
    }
};

inline const Choice& choice() {
    static const Choice made;
    return made;
}

// Before main: later a program may have forbidden itself to open files.
inline const bool ChoiceMade = choice().number >= 0;

inline bool lives(int number) {
    const Choice& chosen = choice();
    if (number < chosen.size) {
        chosen.reached[number] = 1;
    }
    return chosen.number == number;
}

} // namespace zm::mutation
