#include "services/disc/medium/SliceReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace zm::disc::medium {

Result<size_t> SliceReader::readAt(uint64_t offset, std::span<char> buffer) {
    if (offset >= m_size) {
        return size_t{0};
    }
    const auto wanted = static_cast<size_t>(std::min<uint64_t>(buffer.size(), m_size - offset));
    size_t done = 0;
    while (done < wanted) {
        const ssize_t count = ::pread(m_fd.get(), buffer.data() + done, wanted - done,
                                      static_cast<off_t>(m_base + offset + done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return systemError(m_name);
        }
        if (count == 0) {
            break; // shorter than it was when it was opened
        }
        done += static_cast<size_t>(count);
    }
    return done;
}

Result<std::unique_ptr<ByteReader>> openSlice(const std::string& path, uint64_t offset, uint64_t size,
                                              const std::string& name) {
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid()) {
        return systemError(path);
    }
    return std::unique_ptr<ByteReader>(std::make_unique<SliceReader>(std::move(fd), offset, size, name));
}

} // namespace zm::disc::medium
