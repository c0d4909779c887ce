#pragma once

#include <string>

namespace zm::test {

/** A call to the system or to a platform service that can be made to fail. */
enum class FaultKind {
    PpsOpen,
    PpsRead,
    PpsWrite,
    QdbConnect,
    QdbStatement,
    QdbResult,
    ThreadStart,
    MemoryMap,
    SharedMemory,
    Socket,
    SocketPair,
    Connect,
    EventDescriptor,
    DiscRead,
    Count
};

/** What a call that was made to fail says. */
inline constexpr const char* InjectedError = "made to fail";

/**
 * Has the `number`-th call (from 1) of that kind fail, in this process and from now on; 0: none, calls are
 * only counted. Before any thread exists.
 */
void armFault(FaultKind kind, int number);
/** Calls of the armed kind so far; the one that failed counts. Any thread. */
int faultCalls();

} // namespace zm::test
