#include "base/Result.h"

#include <cerrno>
#include <cstring>

namespace zm {

Error systemError(const std::string& what) {
    return Error{what + ": " + std::strerror(errno)};
}

} // namespace zm
