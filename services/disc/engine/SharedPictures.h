#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"

#include <cstdint>

namespace zm::disc::engine {

/** The memory through which a decoder's pictures go from one process to the other. */
class SharedPictures {
public:
    /** New memory, whose size can no longer be changed. */
    static Result<UniqueFd> make();
    explicit SharedPictures(int fd);
    ~SharedPictures();
    SharedPictures(const SharedPictures&) = delete;
    SharedPictures& operator=(const SharedPictures&) = delete;

    /** Null when the memory could not be mapped. */
    uint8_t* slot(uint64_t number) const;

private:
    void* m_memory;
};

} // namespace zm::disc::engine
