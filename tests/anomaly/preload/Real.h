#pragma once

#include <dlfcn.h>

/** The function of that name behind the one that stands in this library. */
#define REAL(name)                                                                                           \
    ([] {                                                                                                    \
        static const auto behind = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name));             \
        return behind;                                                                                       \
    }())
