#include "services/disc/engine/SharedPictures.h"

#include "services/disc/engine/DecoderWire.h"

#include <fcntl.h>
#include <sys/mman.h>

namespace zm::disc::engine {

Result<UniqueFd> SharedPictures::make() {
    UniqueFd fd(::memfd_create("pictures", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!fd.valid() || ::ftruncate(fd.get(), wire::RingBytes) != 0 ||
        ::fcntl(fd.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return systemError("shared pictures");
    }
    return fd;
}

SharedPictures::SharedPictures(int fd)
    : m_memory(::mmap(nullptr, wire::RingBytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0)) {}

SharedPictures::~SharedPictures() {
    if (m_memory != MAP_FAILED) {
        ::munmap(m_memory, wire::RingBytes);
    }
}

uint8_t* SharedPictures::slot(uint64_t number) const {
    return m_memory == MAP_FAILED ? nullptr : static_cast<uint8_t*>(m_memory) + number * wire::SlotBytes;
}

} // namespace zm::disc::engine
