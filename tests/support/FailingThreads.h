#pragma once

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <string_view>

/** Lets the start of a thread fail. Included by one source of a test program. */
namespace zm::test {

/** How many threads may still be started before the next start fails; negative: all may. */
inline std::atomic<int> threadsLeft{-1};

/** The drawing libraries start threads through GLib, which gives up when it cannot. */
inline bool isCalledByGLib(void* caller) {
    Dl_info library{};
    return dladdr(caller, &library) &&
           std::string_view(library.dli_fname).find("libglib") != std::string::npos;
}

} // namespace zm::test

// Stands before the C library's function, for every thread of this process.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                              void* argument) noexcept {
    using zm::test::threadsLeft;
    static const auto create =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    if (threadsLeft >= 0 && !zm::test::isCalledByGLib(__builtin_return_address(0)) && threadsLeft-- == 0) {
        return EAGAIN;
    }
    return create(thread, attributes, run, argument);
}
