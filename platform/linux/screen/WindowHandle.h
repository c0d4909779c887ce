#pragma once

#include "platform/linux/screen/ScreenClient.h"
#include "screen/screen.h"

/**
 * What a screen_window_t points to: the geometry that the application set, and which part of it has not been
 * sent to the compositor yet. Lives as long as its owner keeps it; event thread only.
 */
struct _screen_window {
    int position[2] = {0, 0};
    int size[2] = {0, 0};
    /** What was set since the last flush; the flush takes it away. */
    zm::WindowProps pending;
};
