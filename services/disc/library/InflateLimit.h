#pragma once

#include <cstdint>

namespace zm::disc::library {

/**
 * While it lives, what libraries inflate on this thread (by zlib's `inflate`) comes to at most `bytes` altogether; beyond
 * that they get Z_MEM_ERROR. A compressed text of some kilobytes may claim to be gigabytes.
 */
class InflateLimit {
public:
    explicit InflateLimit(uint64_t bytes);
    ~InflateLimit();
    InflateLimit(const InflateLimit&) = delete;
    InflateLimit& operator=(const InflateLimit&) = delete;
};

} // namespace zm::disc::library
