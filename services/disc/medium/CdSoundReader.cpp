#include "services/disc/medium/CdSoundReader.h"

#include "services/disc/image/TrackFormat.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>

#include <algorithm>

namespace zm::disc::medium {

namespace {

constexpr uint64_t CdSectorBytes = image::SoundSectorBytes;
// Read at once: a third of a second. The system allows 75.
constexpr uint64_t CdSectorsAtOnce = 25;

} // namespace

CdSoundReader::CdSoundReader(UniqueFd drive, uint64_t first, uint64_t count, std::string name)
    : m_drive(std::move(drive)), m_first(first), m_count(count), m_name(std::move(name)) {}

uint64_t CdSoundReader::size() const {
    return m_count * CdSectorBytes;
}

Result<size_t> CdSoundReader::readAt(uint64_t offset, std::span<char> buffer) {
    const size_t wanted =
        offset < size() ? static_cast<size_t>(std::min<uint64_t>(buffer.size(), size() - offset)) : 0;
    size_t done = 0;
    while (done < wanted) {
        const uint64_t at = offset + done;
        if (const auto found = find(at / CdSectorBytes); !found) {
            return found.failure();
        }
        const uint64_t skip = at - m_begin * CdSectorBytes;
        const auto part = static_cast<size_t>(std::min<uint64_t>(m_window.size() - skip, wanted - done));
        std::copy_n(m_window.begin() + static_cast<std::ptrdiff_t>(skip), part,
                    buffer.begin() + static_cast<std::ptrdiff_t>(done));
        done += part;
    }
    return done;
}

// Sees to it that the window holds `sector`.
Status CdSoundReader::find(uint64_t sector) {
    if (sector >= m_begin && sector < m_begin + m_window.size() / CdSectorBytes) {
        return ok();
    }
    if (m_bad.contains(sector)) {
        return Error{m_name + ": sector " + std::to_string(m_first + sector) + " cannot be read"};
    }
    const bool careful = sector >= m_carefulFrom && sector < m_carefulUntil;
    const uint64_t count = careful ? 1 : std::min(CdSectorsAtOnce, m_count - sector);
    if (!careful && read(sector, count)) {
        return ok();
    }
    m_carefulFrom = careful ? m_carefulFrom : sector;
    m_carefulUntil = careful ? m_carefulUntil : sector + count;
    auto alone = read(sector, 1);
    if (!alone) {
        alone = read(sector, 1);
    }
    if (!alone) {
        m_bad.insert(sector);
    }
    return alone;
}

Status CdSoundReader::read(uint64_t sector, uint64_t count) {
    m_begin = sector;
    m_window.resize(count * CdSectorBytes);
    cdrom_read_audio request{};
    request.addr.lba = static_cast<int>(m_first + sector);
    request.addr_format = CDROM_LBA;
    request.nframes = static_cast<int>(count);
    request.buf = reinterpret_cast<__u8*>(m_window.data());
    if (::ioctl(m_drive.get(), CDROMREADAUDIO, &request) == 0) {
        return ok();
    }
    m_window.clear();
    return systemError(m_name + ": sector " + std::to_string(m_first + sector));
}

Result<std::unique_ptr<ByteReader>> openCdSound(const std::string& path, uint64_t first, uint64_t count,
                                                const std::string& name) {
    // A disc without files cannot be opened otherwise.
    UniqueFd drive(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!drive.valid()) {
        return systemError(path);
    }
    return std::unique_ptr<ByteReader>(std::make_unique<CdSoundReader>(std::move(drive), first, count, name));
}

} // namespace zm::disc::medium
