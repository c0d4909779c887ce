#pragma once

#include <cstdint>

/** The framework's message record: four 32-bit words. */
struct APP_MSG_S {
    int32_t word[4];
};
