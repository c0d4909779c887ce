// Allocations: the one that is chosen finds no memory.
#include "tests/anomaly/preload/Control.h"

#include <cerrno>
#include <cstddef>

extern "C" void* __libc_malloc(size_t size);
extern "C" void* __libc_calloc(size_t count, size_t size);
extern "C" void* __libc_realloc(void* memory, size_t size);
extern "C" void* __libc_memalign(size_t alignment, size_t size);

namespace {

bool finds() {
    using namespace zm::faults;
    if (!armed(Kind::Memory) || !isTheOne()) {
        return true;
    }
    control()->kind = static_cast<int32_t>(Kind::None); // what is written down may allocate
    noteFault();
    errno = ENOMEM;
    return false;
}

} // namespace

extern "C" void* malloc(size_t size) {
    return finds() ? __libc_malloc(size) : nullptr;
}

extern "C" void* calloc(size_t count, size_t size) {
    return finds() ? __libc_calloc(count, size) : nullptr;
}

extern "C" void* realloc(void* memory, size_t size) {
    return finds() ? __libc_realloc(memory, size) : nullptr;
}

extern "C" void* memalign(size_t alignment, size_t size) {
    return finds() ? __libc_memalign(alignment, size) : nullptr;
}

extern "C" void* aligned_alloc(size_t alignment, size_t size) {
    return finds() ? __libc_memalign(alignment, size) : nullptr;
}

extern "C" int posix_memalign(void** memory, size_t alignment, size_t size) {
    void* found = finds() ? __libc_memalign(alignment, size) : nullptr;
    if (!found) {
        return ENOMEM;
    }
    *memory = found;
    return 0;
}
