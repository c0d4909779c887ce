#include "services/disc/library/InflateLimit.h"

#include <dlfcn.h>
#include <zlib.h>

#include <algorithm>
#include <limits>

namespace {

constexpr uint64_t NoLimit = std::numeric_limits<uint64_t>::max();
thread_local uint64_t left = NoLimit;

} // namespace

namespace zm::disc::library {

InflateLimit::InflateLimit(uint64_t bytes) {
    left = bytes;
}

InflateLimit::~InflateLimit() {
    left = NoLimit;
}

} // namespace zm::disc::library

// Libraries offer no such limit; they call this one, as the program's names come before those of its libraries.
extern "C" int inflate(z_streamp stream, int flush) {
    using Inflate = int (*)(z_streamp, int);
    static const auto zlibs = reinterpret_cast<Inflate>(::dlsym(RTLD_NEXT, "inflate"));
    if (left == NoLimit) {
        return zlibs(stream, flush);
    }
    if (left == 0) {
        return Z_MEM_ERROR;
    }
    const uLong before = stream->total_out;
    const int result = zlibs(stream, flush);
    left -= std::min<uint64_t>(left, stream->total_out - before);
    return result;
}
