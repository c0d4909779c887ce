// A program for which memory is out ends at once and says so, and whoever watches over it starts it anew. Hardly any
// library survives an allocation that failed in its midst: fonts are waited for without end, texts are cut, a lock is
// never given back. So the allocations of the whole process, libraries included, lead through here, and none that is
// small ever fails. A large one may: its size often comes from a damaged file, and who asks for it has to cope.
#include <dlfcn.h>
#include <errno.h>
#include <unistd.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

// The sanitizers have allocations of their own.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

constexpr size_t Large = size_t(16) << 20;
constexpr int OutOfMemoryStatus = 71; // as sysexits.h has it for what the system lacks

void say(std::string_view text) {
    // Where even that fails nobody can be told.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

[[noreturn]] void end(size_t size) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, size);
    say(program_invocation_short_name);
    say(": out of memory: no ");
    say({digits, static_cast<size_t>(written.ptr - digits)});
    say(" bytes are left\n");
    ::_exit(OutOfMemoryStatus);
}

void* found(void* memory, size_t size) {
    if (!memory && size < Large && size > 0) {
        end(size);
    }
    return memory;
}

/** The C library's function of that name. */
template <class Function>
Function* next(const char* name) {
    void* symbol = ::dlsym(RTLD_NEXT, name);
    Function* function = nullptr;
    std::memcpy(&function, &symbol, sizeof function);
    return function;
}

} // namespace

extern "C" void* malloc(size_t size) {
    static const auto allocate = next<void*(size_t)>("malloc");
    return found(allocate(size), size);
}

extern "C" void* calloc(size_t count, size_t size) {
    static const auto allocate = next<void*(size_t, size_t)>("calloc");
    size_t all = 0;
    return found(allocate(count, size), __builtin_mul_overflow(count, size, &all) ? Large : all);
}

extern "C" void* realloc(void* memory, size_t size) {
    static const auto allocate = next<void*(void*, size_t)>("realloc");
    return found(allocate(memory, size), size);
}

extern "C" void* aligned_alloc(size_t alignment, size_t size) {
    static const auto allocate = next<void*(size_t, size_t)>("aligned_alloc");
    void* memory = allocate(alignment, size);
    return memory || errno != ENOMEM ? memory : found(memory, size);
}

extern "C" int posix_memalign(void** memory, size_t alignment, size_t size) {
    static const auto allocate = next<int(void**, size_t, size_t)>("posix_memalign");
    const int status = allocate(memory, alignment, size);
    if (status == ENOMEM && size < Large) {
        end(size);
    }
    return status;
}

#endif
