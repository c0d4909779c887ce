#include "services/cover/Jail.h"

#include "services/jail/CallFilter.h"
#include "services/jail/Limits.h"

namespace zm::cover {

namespace {

// Half a gigabyte for a picture of 100 megapixels, which is the most, and half for decoding it.
constexpr rlim_t MemoryLimit = rlim_t{1} << 30;
// A PNG of 100 megapixels takes two.
constexpr rlim_t SecondsLimit = 10;

constexpr const char* allowed[] = {
    "read",           "write",       "close",           "fstat",        "newfstatat",
    "lseek",          "mmap",        "munmap",          "mremap",       "mprotect",
    "madvise",        "brk",         "futex",           "getrandom",    "getpid",
    "gettid",         "tgkill",      "rt_sigaction",    "rt_sigreturn", "clock_gettime",
    "rt_sigprocmask", "sched_yield", "restart_syscall", "exit",         "exit_group"};

} // namespace

Status lockIn() {
    if (!jail::Possible) {
        return ok();
    }
    auto limited =
        jail::limit({{RLIMIT_DATA, MemoryLimit}, {RLIMIT_CPU, SecondsLimit}, {RLIMIT_CORE, rlim_t{0}}});
    if (!limited) {
        return limited;
    }
    jail::CallFilter filter;
    filter.allow(allowed);
    return filter.load();
}

} // namespace zm::cover
