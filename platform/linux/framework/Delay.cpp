#include "sys/delay.h"

#include <cerrno>
#include <ctime>

unsigned int delay(unsigned int milliseconds) {
    timespec left{static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000};
    // A signal that is handled meanwhile must not shorten the wait.
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
    return 0;
}
