#include "services/cover/Output.h"

#include <unistd.h>

#include <cerrno>
#include <string>

namespace zm::cover {

Status writePicture(uint32_t width, uint32_t height, const uint8_t* pixels) {
    const uint32_t sides[] = {width, height};
    std::string all(reinterpret_cast<const char*>(sides), sizeof sides);
    all.append(reinterpret_cast<const char*>(pixels), size_t{width} * height * 4);
    for (size_t done = 0; done < all.size();) {
        const ssize_t written = ::write(STDOUT_FILENO, all.data() + done, all.size() - done);
        if (written < 0 && errno != EINTR) {
            return systemError("output");
        }
        done += static_cast<size_t>(written < 0 ? 0 : written);
    }
    return ok();
}

} // namespace zm::cover
