// What libraries take while they are loaded is theirs: GLib leaves the first table of its names behind when there are more
// than it had room for, as all that plays a DVD brings with it, because others may be reading it.

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>

namespace {

void leaveOutLeaks() {
    __lsan_disable();
}

// Before the first and behind the last library's beginning.
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeLibraries)() = leaveOutLeaks;
[[gnu::constructor(101)]] void countLeaks() {
    __lsan_enable();
}

} // namespace
#endif
