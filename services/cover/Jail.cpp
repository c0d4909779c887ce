#include "services/cover/Jail.h"

#include <seccomp.h>
#include <sys/resource.h>

#include <cstring>
#include <utility>

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

Status limit(__rlimit_resource what, rlim_t most) {
    const rlimit both{most, most};
    return ::setrlimit(what, &both) == 0 ? ok() : systemError("a limit");
}

} // namespace

Status lockIn() {
#ifdef __SANITIZE_ADDRESS__
    constexpr bool sanitized = true;
#else
    constexpr bool sanitized = false;
#endif
    if (sanitized) {
        return ok(); // the sanitizer needs both memory and files
    }
    for (const auto& [what, most] : {std::pair{RLIMIT_DATA, MemoryLimit}, std::pair{RLIMIT_CPU, SecondsLimit},
                                     std::pair{RLIMIT_CORE, rlim_t{0}}}) {
        if (auto limited = limit(what, most); !limited) {
            return limited;
        }
    }
    scmp_filter_ctx filter = ::seccomp_init(SCMP_ACT_ERRNO(EPERM));
    int error = 0;
    for (const char* name : allowed) {
        error = error != 0
                    ? error
                    : ::seccomp_rule_add(filter, SCMP_ACT_ALLOW, ::seccomp_syscall_resolve_name(name), 0);
    }
    error = error != 0 ? error : ::seccomp_load(filter);
    ::seccomp_release(filter);
    return error == 0 ? ok() : Error{std::string("system call filter: ") + ::strerror(-error)};
}

} // namespace zm::cover
