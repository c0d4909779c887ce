// Writes to files: from the chosen one on there is no room, until the tests make some.
#include "tests/anomaly/preload/Control.h"
#include "tests/anomaly/preload/Real.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>

namespace {

/** A file on a disk: not one that lives in memory, nor what the program prints. */
bool isOnDisk(int fd) {
    struct stat about {};
    struct stat folder {};
    return fd > STDERR_FILENO && ::fstat(fd, &about) == 0 && S_ISREG(about.st_mode) && about.st_nlink > 0 &&
           ::stat("/tmp", &folder) == 0 && about.st_dev == folder.st_dev;
}

bool isFull(int fd) {
    using namespace zm::faults;
    if (!armed(Kind::Disk) || !isOnDisk(fd)) {
        return false;
    }
    if (++control()->calls < control()->number) {
        return false;
    }
    noteFault();
    errno = ENOSPC;
    return true;
}

} // namespace

extern "C" ssize_t write(int fd, const void* bytes, size_t size) {
    return isFull(fd) ? -1 : REAL(write)(fd, bytes, size);
}

extern "C" ssize_t writev(int fd, const iovec* parts, int count) {
    return isFull(fd) ? -1 : REAL(writev)(fd, parts, count);
}

extern "C" ssize_t pwrite(int fd, const void* bytes, size_t size, off_t offset) {
    return isFull(fd) ? -1 : REAL(pwrite)(fd, bytes, size, offset);
}

extern "C" ssize_t pwrite64(int fd, const void* bytes, size_t size, off64_t offset) {
    return isFull(fd) ? -1 : REAL(pwrite64)(fd, bytes, size, offset);
}

extern "C" int fallocate(int fd, int mode, off_t offset, off_t size) {
    return isFull(fd) ? -1 : REAL(fallocate)(fd, mode, offset, size);
}

extern "C" int posix_fallocate(int fd, off_t offset, off_t size) {
    return isFull(fd) ? ENOSPC : REAL(posix_fallocate)(fd, offset, size);
}
