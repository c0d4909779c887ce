#include "services/disc/medium/DriveToc.h"

#include "base/UniqueFd.h"

#include <fcntl.h>
#include <linux/cdrom.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>

namespace zm::disc::medium {

namespace {

constexpr unsigned char ReadTableCommand = 0x43;
constexpr unsigned char TextsFormat = 5;
constexpr unsigned TextsTime = 5000; // ms
// In front of the texts: how many bytes follow the first two.
constexpr size_t TextHeaderBytes = 4;
constexpr size_t TextLengthBytes = 2;

UniqueFd openDrive(const std::string& path) {
    // A disc without files cannot be opened otherwise.
    return UniqueFd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

std::optional<DriveToc::Track> entryOf(int drive, int number) {
    cdrom_tocentry entry{};
    entry.cdte_track = static_cast<__u8>(number);
    entry.cdte_format = CDROM_LBA;
    if (::ioctl(drive, CDROMREADTOCENTRY, &entry) != 0) {
        return std::nullopt;
    }
    return DriveToc::Track{number, (entry.cdte_ctrl & CDROM_DATA_TRACK) != 0, entry.cdte_addr.lba};
}

// The first bytes of the texts, as many as fit into `size`; fewer, or none, where the drive has none.
std::string textBytes(int drive, uint16_t size) {
    std::string bytes(size, '\0');
    std::array<unsigned char, 10> command{ReadTableCommand,
                                          0,
                                          TextsFormat,
                                          0,
                                          0,
                                          0,
                                          0,
                                          static_cast<unsigned char>(size >> 8),
                                          static_cast<unsigned char>(size & 0xFF),
                                          0};
    sg_io_hdr request{};
    request.interface_id = 'S';
    request.dxfer_direction = SG_DXFER_FROM_DEV;
    request.cmd_len = command.size();
    request.cmdp = command.data();
    request.dxfer_len = size;
    request.dxferp = bytes.data();
    request.timeout = TextsTime;
    if (::ioctl(drive, SG_IO, &request) != 0 || request.status != 0 || request.host_status != 0) {
        return {};
    }
    bytes.resize(size - std::clamp<size_t>(static_cast<size_t>(std::max(request.resid, 0)), 0, size));
    return bytes;
}

} // namespace

std::optional<DriveToc> readDriveToc(const std::string& path) {
    const UniqueFd drive = openDrive(path);
    cdrom_tochdr header{};
    if (!drive.valid() || ::ioctl(drive.get(), CDROMREADTOCHDR, &header) != 0) {
        return std::nullopt;
    }
    DriveToc toc;
    for (int number = header.cdth_trk0; number <= header.cdth_trk1; ++number) {
        const auto track = entryOf(drive.get(), number);
        if (!track) {
            return std::nullopt;
        }
        toc.tracks.push_back(*track);
    }
    const auto end = entryOf(drive.get(), CDROM_LEADOUT);
    if (!end) {
        return std::nullopt;
    }
    toc.end = end->begin;
    cdrom_multisession session{};
    session.addr_format = CDROM_LBA;
    if (::ioctl(drive.get(), CDROMMULTISESSION, &session) == 0 && session.xa_flag != 0) {
        toc.laterSession = session.addr.lba;
    }
    return toc;
}

std::string readDriveTexts(const std::string& path) {
    const UniqueFd drive = openDrive(path);
    if (!drive.valid()) {
        return {};
    }
    const std::string header = textBytes(drive.get(), TextHeaderBytes);
    if (header.size() < TextHeaderBytes) {
        return {};
    }
    const int length = static_cast<unsigned char>(header[0]) << 8 | static_cast<unsigned char>(header[1]);
    const auto all = static_cast<size_t>(length) + TextLengthBytes;
    if (all <= TextHeaderBytes || all > UINT16_MAX) {
        return {};
    }
    const std::string bytes = textBytes(drive.get(), static_cast<uint16_t>(all));
    return bytes.size() < all ? std::string() : bytes;
}

} // namespace zm::disc::medium
