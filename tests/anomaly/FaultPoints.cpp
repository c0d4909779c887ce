// The linker leads the calls of the program's objects to the functions here (see the list in
// tests/CMakeLists.txt); those of shared libraries stay as they are. C++ functions go by their mangled names:
// a member function is called like a free one whose first parameter is the object.
#include "tests/anomaly/FaultPoints.h"

#include "platform/linux/pps/PpsFile.h"
#include "qdb/qdb.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/socket.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <memory>
#include <system_error>
#include <thread>

using zm::PpsFile;
using zm::test::FaultKind;

#define WRAP(symbol) asm("__wrap_" symbol)
#define REAL(symbol) asm("__real_" symbol)

namespace {

std::atomic<FaultKind> armedKind = FaultKind::Count;
std::atomic<int> armedNumber = 0;
std::atomic<int> calls = 0;

bool fails(FaultKind kind) {
    return kind == armedKind && ++calls == armedNumber;
}

/** What a failed system call returns. */
int failWith(int number) {
    errno = number;
    return -1;
}

} // namespace

namespace zm::test {

void armFault(FaultKind kind, int number) {
    armedKind = kind;
    armedNumber = number;
    calls = 0;
}

int faultCalls() {
    return calls;
}

} // namespace zm::test

// ---- PPS ----

zm::Result<PpsFile> realOpen(const std::string& socket, const std::string& path, int flags, unsigned mode)
    REAL("_ZN2zm7PpsFile4openERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES8_ij");
zm::Result<PpsFile> wrappedOpen(const std::string& socket, const std::string& path, int flags, unsigned mode)
    WRAP("_ZN2zm7PpsFile4openERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES8_ij");
zm::Result<PpsFile> wrappedOpen(const std::string& socket, const std::string& path, int flags,
                                unsigned mode) {
    if (fails(FaultKind::PpsOpen)) {
        return zm::Error{zm::test::InjectedError};
    }
    return realOpen(socket, path, flags, mode);
}

zm::Result<std::string> realRead(PpsFile* file) REAL("_ZN2zm7PpsFile4readB5cxx11Ev");
zm::Result<std::string> wrappedRead(PpsFile* file) WRAP("_ZN2zm7PpsFile4readB5cxx11Ev");
/** Reads that find nothing new are not counted: they come as often as somebody looks. */
bool readFails(PpsFile* file) {
    pollfd news{file->pollFd(), POLLIN, 0};
    return ::poll(&news, 1, 0) > 0 && fails(FaultKind::PpsRead);
}

zm::Result<std::string> wrappedRead(PpsFile* file) {
    if (readFails(file)) {
        return zm::Error{zm::test::InjectedError};
    }
    return realRead(file);
}

zm::Result<zm::PpsChanges> realReadChanges(PpsFile* file) REAL("_ZN2zm7PpsFile11readChangesEv");
zm::Result<zm::PpsChanges> wrappedReadChanges(PpsFile* file) WRAP("_ZN2zm7PpsFile11readChangesEv");
zm::Result<zm::PpsChanges> wrappedReadChanges(PpsFile* file) {
    if (readFails(file)) {
        return zm::Error{zm::test::InjectedError};
    }
    return realReadChanges(file);
}

zm::Status realWrite(PpsFile* file, std::string_view text)
    REAL("_ZN2zm7PpsFile5writeESt17basic_string_viewIcSt11char_traitsIcEE");
zm::Status wrappedWrite(PpsFile* file, std::string_view text)
    WRAP("_ZN2zm7PpsFile5writeESt17basic_string_viewIcSt11char_traitsIcEE");
zm::Status wrappedWrite(PpsFile* file, std::string_view text) {
    if (fails(FaultKind::PpsWrite)) {
        return zm::Error{zm::test::InjectedError};
    }
    return realWrite(file, text);
}

// ---- catalogue ----

extern "C" qdb_hdl_t* __real_qdb_connect(const char* name, int flags);
extern "C" qdb_hdl_t* __wrap_qdb_connect(const char* name, int flags) {
    if (fails(FaultKind::QdbConnect)) {
        errno = EIO;
        return nullptr;
    }
    return __real_qdb_connect(name, flags);
}

extern "C" int __real_qdb_statement(qdb_hdl_t* db, const char* format, ...);
/** The application hands all its statements over as data, with "%s". */
extern "C" int __wrap_qdb_statement(qdb_hdl_t* db, const char* format, const char* text) {
    return fails(FaultKind::QdbStatement) ? failWith(EIO) : __real_qdb_statement(db, format, text);
}

extern "C" qdb_result_t* __real_qdb_getresult(qdb_hdl_t* db);
extern "C" qdb_result_t* __wrap_qdb_getresult(qdb_hdl_t* db) {
    if (fails(FaultKind::QdbResult)) {
        errno = EIO;
        return nullptr;
    }
    return __real_qdb_getresult(db);
}

// ---- system ----

void realStart(std::thread* thread, std::unique_ptr<std::thread::_State> state, void (*depend)())
    REAL("_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE");
void wrappedStart(std::thread* thread, std::unique_ptr<std::thread::_State> state, void (*depend)())
    WRAP("_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE");
void wrappedStart(std::thread* thread, std::unique_ptr<std::thread::_State> state, void (*depend)()) {
    if (fails(FaultKind::ThreadStart)) {
        throw std::system_error(EAGAIN, std::generic_category(), zm::test::InjectedError);
    }
    realStart(thread, std::move(state), depend);
}

extern "C" void* __real_mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset);
extern "C" void* __wrap_mmap(void* address, size_t size, int protection, int flags, int fd, off_t offset) {
    if (fails(FaultKind::MemoryMap)) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    return __real_mmap(address, size, protection, flags, fd, offset);
}

extern "C" int __real_memfd_create(const char* name, unsigned flags);
extern "C" int __wrap_memfd_create(const char* name, unsigned flags) {
    return fails(FaultKind::SharedMemory) ? failWith(EMFILE) : __real_memfd_create(name, flags);
}

extern "C" int __real_socket(int domain, int type, int protocol);
extern "C" int __wrap_socket(int domain, int type, int protocol) {
    return fails(FaultKind::Socket) ? failWith(EMFILE) : __real_socket(domain, type, protocol);
}

extern "C" int __real_socketpair(int domain, int type, int protocol, int ends[2]);
extern "C" int __wrap_socketpair(int domain, int type, int protocol, int ends[2]) {
    return fails(FaultKind::SocketPair) ? failWith(EMFILE) : __real_socketpair(domain, type, protocol, ends);
}

extern "C" int __real_connect(int fd, const sockaddr* address, socklen_t size);
extern "C" int __wrap_connect(int fd, const sockaddr* address, socklen_t size) {
    return fails(FaultKind::Connect) ? failWith(ECONNREFUSED) : __real_connect(fd, address, size);
}

extern "C" int __real_eventfd(unsigned value, int flags);
extern "C" int __wrap_eventfd(unsigned value, int flags) {
    return fails(FaultKind::EventDescriptor) ? failWith(EMFILE) : __real_eventfd(value, flags);
}

extern "C" ssize_t __real_pread(int fd, void* buffer, size_t size, off_t offset);
extern "C" ssize_t __wrap_pread(int fd, void* buffer, size_t size, off_t offset) {
    return fails(FaultKind::DiscRead) ? failWith(EIO) : __real_pread(fd, buffer, size, offset);
}
