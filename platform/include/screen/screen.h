#pragma once

/* The part of the window system's interface that an application uses to place a window. */

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _screen_window* screen_window_t;

enum {
    SCREEN_PROPERTY_POSITION = 35, /* two ints: x, y in pixels */
    SCREEN_PROPERTY_SIZE = 40      /* two ints: width, height in pixels */
};

/* Sets a property; it shows at the next flush. 0, or -1 with errno EINVAL for a null window or an unknown
 * property. */
int screen_set_window_property_iv(screen_window_t win, int pname, const int* param);
int screen_get_window_property_iv(screen_window_t win, int pname, int* param);

#ifdef __cplusplus
}
#endif
