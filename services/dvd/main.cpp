#include "base/About.h"
#include "services/dvd/CircleWatch.h"
#include "services/dvd/Navigator.h"
#include "services/dvd/VersionedNames.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <optional>

namespace {

using namespace zm::dvd;

constexpr const char* usage = "usage: zmdvd PATH\n"
                              "Reads the DVD at PATH (an image, a folder with VIDEO_TS, a drive) for the "
                              "disc service, which starts it.\n";

enum class Faults : int32_t { None, ReadError, NoAnswer };

// The next command, waiting for it at most `milliseconds`; nothing if there is none. Ends the program when
// the service is gone.
std::optional<Command> nextCommand() {
    Command command;
    const ssize_t size = ::recv(ReaderSocket, &command, sizeof command, MSG_DONTWAIT);
    if (size == 0) {
        ::_exit(0);
    }
    return size == static_cast<ssize_t>(sizeof command) ? std::optional(command) : std::nullopt;
}

void carryOut(const Command& command, Navigator& navigator, Outbox& outbox) {
    if (command.operation != Operation::Fault) {
        navigator.carryOut(command, outbox);
        return;
    }
    navigator.setFailing(command.first == static_cast<int32_t>(Faults::ReadError));
    if (command.first == static_cast<int32_t>(Faults::NoAnswer)) {
        // As in a drive that does not answer, nothing is heard meanwhile.
        for (;;) {
            ::pause();
        }
    }
}

void serve(Navigator& navigator, CircleWatch& watch) {
    Outbox outbox(ReaderSocket);
    outbox.add(navigator.disc());
    while (outbox.send()) {
        watch.at(navigator.progress());
        const bool reads = outbox.empty() && !navigator.waits();
        pollfd socket{ReaderSocket, static_cast<short>(outbox.empty() ? POLLIN : POLLIN | POLLOUT), 0};
        ::poll(&socket, 1, reads ? 0 : -1);
        while (const auto command = nextCommand()) {
            carryOut(*command, navigator, outbox);
        }
        if (outbox.empty() && !navigator.waits()) {
            // Blocks share a packet as long as nothing else comes between them.
            for (size_t i = 0; i < MaxBlocks && !navigator.waits(); ++i) {
                navigator.step(outbox);
            }
        }
    }
}

} // namespace

// Where the machine has a library that decrypts discs, the one that reads them would load it. This is what it then
// calls: nothing here decrypts.
extern "C" void* dlopen(const char*, int) noexcept {
    return nullptr;
}

// The library knows the files of a folder by their bare names. It is told those, and asked for one it gets that with the
// version.
namespace {

VersionedNames& versionedNames() {
    static VersionedNames names;
    return names;
}

template <class Function>
Function* realCall(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

template <class Call>
int withVersion(const char* path, Call call) {
    const int result = call(path);
    if (result >= 0 || errno != ENOENT) {
        return result;
    }
    const std::string original = versionedNames().original(path);
    errno = ENOENT;
    return original.empty() ? result : call(original.c_str());
}

} // namespace

extern "C" {

dirent* readPlainName(DIR*) __asm__("readdir");
int openPlainName(const char*, int, ...) __asm__("open");
int statPlainName(const char*, struct stat*) __asm__("stat");

dirent* readPlainName(DIR* folder) {
    static auto* const real = realCall<dirent*(DIR*)>("readdir");
    dirent* const entry = real(folder);
    if (entry) {
        versionedNames().strip(entry->d_name);
    }
    return entry;
}

int openPlainName(const char* path, int flags, ...) {
    static auto* const real = realCall<int(const char*, int, ...)>("open");
    va_list rest;
    va_start(rest, flags);
    const int mode = flags & O_CREAT ? va_arg(rest, int) : 0;
    va_end(rest);
    return withVersion(path, [&](const char* name) { return real(name, flags, mode); });
}

int statPlainName(const char* path, struct stat* info) {
    static auto* const real = realCall<int(const char*, struct stat*)>("stat");
    return withVersion(path, [&](const char* name) { return real(name, info); });
}
}

int main(int argc, char** argv) {
    if (zm::answerAbout({argv + 1, argv + argc}, "zmdvd", usage)) {
        return 0;
    }
    int kind = 0;
    socklen_t size = sizeof kind;
    if (argc != 2 || ::getsockopt(ReaderSocket, SOL_SOCKET, SO_TYPE, &kind, &size) != 0 ||
        kind != SOCK_SEQPACKET) {
        std::fputs(usage, stderr);
        return 2;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The library talks to the terminal; what matters the service says.
    const int terminal = ::dup(STDERR_FILENO);
    if (const int nowhere = ::open("/dev/null", O_WRONLY); nowhere >= 0) {
        ::dup2(nowhere, STDOUT_FILENO);
        ::dup2(nowhere, STDERR_FILENO);
    }
    CircleWatch watch;
    auto navigator = Navigator::open(argv[1]);
    if (!navigator) {
        ::dprintf(terminal, "zmdvd: %s\n", navigator.error().c_str());
        return 1;
    }
    serve(**navigator, watch);
    return 0;
}
