#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/* Blocks the calling thread for `milliseconds` of real time. Returns 0. */
unsigned int delay(unsigned int milliseconds);

#ifdef __cplusplus
}
#endif
