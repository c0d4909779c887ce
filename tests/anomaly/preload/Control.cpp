// Loaded into the bench and, through it, into all its programs (LD_PRELOAD); acts only in those that
// ZM_FAULT_PROGRAM names. Nothing here allocates once the program has begun.
#include "tests/anomaly/preload/Control.h"

#include <execinfo.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>

namespace zm::faults {

namespace {

constexpr int Frames = 24;

Control* mapped = nullptr;
int traces = -1;

/** Whether ZM_FAULT_PROGRAM, names between colons, holds the name of this program. */
bool concerned() {
    char path[PATH_MAX + 1] = {};
    const char* names = std::getenv("ZM_FAULT_PROGRAM");
    if (!names || ::readlink("/proc/self/exe", path, PATH_MAX) <= 0) {
        return false;
    }
    const char* slash = std::strrchr(path, '/');
    const char* own = slash ? slash + 1 : path;
    const size_t length = std::strlen(own);
    for (const char* name = names; name; name = std::strchr(name, ':')) {
        name += *name == ':';
        if (std::strncmp(name, own, length) == 0 && (name[length] == ':' || name[length] == '\0')) {
            return true;
        }
    }
    return false;
}

[[gnu::constructor]] void begin() {
    const char* file = std::getenv("ZM_FAULT_CONTROL");
    if (!file || !concerned()) {
        return;
    }
    const int fd = ::open(file, O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        return;
    }
    void* memory = ::mmap(nullptr, sizeof(Control), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    ::close(fd);
    void* frames[1];
    ::backtrace(frames, 1); // loads what it needs
    if (const char* trace = std::getenv("ZM_FAULT_TRACE")) {
        traces = ::open(trace, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    }
    if (memory != MAP_FAILED) {
        mapped = static_cast<Control*>(memory);
    }
}

} // namespace

Control* control() {
    return mapped;
}

bool armed(Kind kind) {
    return mapped && mapped->kind.load(std::memory_order_relaxed) == static_cast<int32_t>(kind);
}

bool isTheOne() {
    return ++mapped->calls == mapped->number;
}

uint64_t drawn(uint64_t limit) {
    uint64_t state = static_cast<uint64_t>(mapped->seed + 1) * 0x9e3779b97f4a7c15u +
                     static_cast<uint64_t>(mapped->calls) * 0xbf58476d1ce4e5b9u;
    state = (state ^ (state >> 30)) * 0xbf58476d1ce4e5b9u;
    state = (state ^ (state >> 27)) * 0x94d049bb133111ebu;
    return (state ^ (state >> 31)) % limit;
}

bool isPicked() {
    ++mapped->calls;
    if (drawn(static_cast<uint64_t>(mapped->share.load())) != 0) {
        return false;
    }
    ++mapped->faults;
    return true;
}

void noteFault() {
    ++mapped->faults;
    if (traces >= 0) {
        void* frames[Frames];
        ::backtrace_symbols_fd(frames, ::backtrace(frames, Frames), traces);
    }
}

} // namespace zm::faults
