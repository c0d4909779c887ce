#include "services/decoder/Jail.h"

#include "services/decoder/Fonts.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <seccomp.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <malloc.h>
#include <string>
#include <ucontext.h>
#include <unistd.h>
#include <utility>

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

constexpr const char* opening[] = {"open", "openat"};

Status limit(__rlimit_resource what, rlim_t most) {
    const rlimit both{most, most};
    return ::setrlimit(what, &both) == 0 ? ok() : systemError("a limit");
}

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

class Filter {
public:
    Filter() : m_context(::seccomp_init(SCMP_ACT_ERRNO(EPERM))) {}
    ~Filter() { ::seccomp_release(m_context); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    Status load() {
        for (const char* name : allowed) {
            add(SCMP_ACT_ALLOW, name, 0);
        }
        for (const char* name : opening) {
            add(SCMP_ACT_TRAP, name, 0);
        }
        // Threads, but no processes. The other call for it has its flags out of sight: it does not exist here.
        add(SCMP_ACT_ALLOW, "clone", 1, SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD));
        add(SCMP_ACT_ERRNO(ENOSYS), "clone3", 0);
        // A pair of sockets is a pipe within the process; it leads nowhere else.
        add(SCMP_ACT_ALLOW, "socketpair", 2, SCMP_A0(SCMP_CMP_EQ, AF_UNIX, 0),
            SCMP_A1(SCMP_CMP_MASKED_EQ, 0xF, SOCK_STREAM));
        // Limits can be asked for, not changed.
        add(SCMP_ACT_ALLOW, "prlimit64", 1, SCMP_A2(SCMP_CMP_EQ, 0, 0));
        // For threads that libraries have begun, too.
        m_error = m_error != 0 ? m_error : ::seccomp_attr_set(m_context, SCMP_FLTATR_CTL_TSYNC, 1);
        m_error = m_error != 0 ? m_error : ::seccomp_load(m_context);
        return m_error == 0 ? ok() : Error{std::string("system call filter: ") + ::strerror(-m_error)};
    }

private:
    template <class... Conditions>
    void add(uint32_t action, const char* name, unsigned count, Conditions... conditions) {
        const int call = ::seccomp_syscall_resolve_name(name);
        const int result = ::seccomp_rule_add(m_context, action, call, count, conditions...);
        m_error = m_error != 0 ? m_error : result;
    }
    scmp_filter_ctx m_context;
    int m_error = 0;
};

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
    // Each thread's own heap would be counted with all that it might become.
    ::mallopt(M_ARENA_MAX, 2);
    struct sigaction action {};
    action.sa_sigaction = answerOpen;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    ::sigaction(SIGSYS, &action, nullptr);
    for (const auto& [what, most] : {std::pair{RLIMIT_DATA, MemoryLimit}, std::pair{RLIMIT_AS, AddressLimit},
                                     std::pair{RLIMIT_FSIZE, FileLimit}, std::pair{RLIMIT_CORE, rlim_t{0}}}) {
        if (auto limited = limit(what, most); !limited) {
            return limited;
        }
    }
    return Filter().load();
}

} // namespace zm::decoder
