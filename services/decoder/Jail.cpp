#include "services/decoder/Jail.h"

#include "services/decoder/Fonts.h"
#include "services/jail/CallFilter.h"
#include "services/jail/Limits.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <cerrno>
#include <csignal>
#include <malloc.h>
#include <ucontext.h>
#include <unistd.h>

namespace zm::decoder {

namespace {

constexpr rlim_t MemoryLimit = rlim_t{1} << 30;
constexpr rlim_t AddressLimit = rlim_t{4} << 30;
// Pictures and generated code lie in files without a name.
constexpr rlim_t FileLimit = rlim_t{16} << 20;

// What decoding, drawing and waiting need. Whatever else is asked for fails.
constexpr const char* allowed[] = {"read",
                                   "write",
                                   "readv",
                                   "writev",
                                   "pread64",
                                   "close",
                                   "fstat",
                                   "newfstatat",
                                   "stat",
                                   "lstat",
                                   "statx",
                                   "lseek",
                                   "mmap",
                                   "mprotect",
                                   "munmap",
                                   "mremap",
                                   "madvise",
                                   "brk",
                                   "memfd_create",
                                   "ftruncate",
                                   "rt_sigaction",
                                   "rt_sigprocmask",
                                   "rt_sigreturn",
                                   "sigaltstack",
                                   "tgkill",
                                   "ioctl",
                                   "poll",
                                   "ppoll",
                                   "select",
                                   "pselect6",
                                   "epoll_create1",
                                   "epoll_ctl",
                                   "epoll_wait",
                                   "epoll_pwait",
                                   "eventfd2",
                                   "pipe2",
                                   "dup",
                                   "fcntl",
                                   "futex",
                                   "futex_waitv",
                                   "sched_yield",
                                   "sched_getaffinity",
                                   "sched_getparam",
                                   "sched_getscheduler",
                                   "getpriority",
                                   "nanosleep",
                                   "clock_nanosleep",
                                   "clock_gettime",
                                   "clock_getres",
                                   "gettimeofday",
                                   "time",
                                   "times",
                                   "getpid",
                                   "getppid",
                                   "gettid",
                                   "getuid",
                                   "geteuid",
                                   "getgid",
                                   "getegid",
                                   "getrandom",
                                   "getrusage",
                                   "sysinfo",
                                   "uname",
                                   "set_robust_list",
                                   "get_robust_list",
                                   "rseq",
                                   "arch_prctl",
                                   "prctl",
                                   "exit",
                                   "exit_group",
                                   "sendmsg",
                                   "recvmsg",
                                   "sendto",
                                   "recvfrom",
                                   "shutdown",
                                   "getsockopt",
                                   "restart_syscall",
                                   "membarrier",
                                   "timerfd_create",
                                   "timerfd_settime",
                                   "access",
                                   "faccessat",
                                   "faccessat2",
                                   "getpeername",
                                   "semop",
                                   "semtimedop",
                                   "getcwd"};

// Opening a font gives the descriptor that was opened in time; opening anything else fails.
void answerOpen(int, siginfo_t* info, void* context) {
    auto* registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    const bool plain = info->si_syscall == __NR_open;
    const auto* path = reinterpret_cast<const char*>(registers[plain ? REG_RDI : REG_RSI]);
    const auto flags = registers[plain ? REG_RSI : REG_RDX];
    const int font = (flags & O_ACCMODE) == O_RDONLY ? fontDescriptor(path) : -1;
    const int opened = font >= 0 ? ::dup(font) : -1;
    registers[REG_RAX] = opened >= 0 ? opened : -EACCES;
}

Status filterCalls() {
    jail::CallFilter filter;
    filter.allow(allowed);
    for (const char* opening : {"open", "openat"}) {
        filter.add(SCMP_ACT_TRAP, opening);
    }
    // Threads, but no processes. The other call for it has its flags out of sight: it does not exist here.
    filter.add(SCMP_ACT_ALLOW, "clone", {SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD)});
    filter.add(SCMP_ACT_ERRNO(ENOSYS), "clone3");
    // A pair of sockets is a pipe within the process; it leads nowhere else.
    filter.add(SCMP_ACT_ALLOW, "socketpair",
               {SCMP_A0(SCMP_CMP_EQ, AF_UNIX, 0), SCMP_A1(SCMP_CMP_MASKED_EQ, 0xF, SOCK_STREAM)});
    // Limits can be asked for, not changed.
    filter.add(SCMP_ACT_ALLOW, "prlimit64", {SCMP_A2(SCMP_CMP_EQ, 0, 0)});
    return filter.load();
}

} // namespace

Status lockIn() {
    if (!jail::Possible) {
        return ok();
    }
    // Each thread's own heap would be counted with all that it might become.
    ::mallopt(M_ARENA_MAX, 2);
    struct sigaction action {};
    action.sa_sigaction = answerOpen;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    ::sigaction(SIGSYS, &action, nullptr);
    auto limited = jail::limit({{RLIMIT_DATA, MemoryLimit},
                                {RLIMIT_AS, AddressLimit},
                                {RLIMIT_FSIZE, FileLimit},
                                {RLIMIT_CORE, rlim_t{0}}});
    return limited ? filterCalls() : limited;
}

} // namespace zm::decoder
