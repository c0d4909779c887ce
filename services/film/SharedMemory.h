#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"

#include <cstddef>

namespace zm::film {

/** Memory of a fixed size that processes share; unmapped with this object. */
class SharedMemory {
public:
    /** Maps the first `size` bytes of `fd`, which has them. */
    static Result<SharedMemory> map(int fd, size_t size);
    SharedMemory(SharedMemory&& other) noexcept;
    SharedMemory& operator=(SharedMemory&&) = delete;
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory();

    void* bytes() const { return m_bytes; }

private:
    SharedMemory(void* bytes, size_t size) : m_bytes(bytes), m_size(size) {}

    void* m_bytes;
    size_t m_size;
};

} // namespace zm::film
