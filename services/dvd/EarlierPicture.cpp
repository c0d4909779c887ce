#include "services/dvd/EarlierPicture.h"

#include "services/dvd/Wire.h"

#include <dvdread/nav_read.h>

namespace zm::dvd {

namespace {

constexpr uint32_t DistanceMask = 0x3fffffff;
constexpr uint32_t NoUnit = 0x3fffffff;
constexpr size_t Content = 1031; // of a navigation pack: what its second packet says
constexpr uint32_t LargestPicture = 256;

} // namespace

std::vector<uint8_t> EarlierPicture::read(int titleSet, const dsi_t& unit) {
    const uint32_t distance = unit.vobu_sri.prev_video & DistanceMask;
    const uint32_t here = unit.dsi_gi.nv_pck_lbn;
    if (unit.dsi_gi.vobu_1stref_ea != 0 || distance == NoUnit || distance == 0 || distance > here) {
        return {};
    }
    if (!m_disc) {
        m_disc.reset(DVDOpen(m_path.c_str()));
    }
    if (m_disc && (!m_film || m_titleSet != titleSet)) {
        m_film.reset(DVDOpenFile(m_disc.get(), titleSet, DVD_READ_TITLE_VOBS));
        m_titleSet = titleSet;
    }
    std::vector<uint8_t> head = blocks(here - distance, 1);
    if (head.empty()) {
        return {};
    }
    dsi_t before{};
    navRead_DSI(&before, head.data() + Content);
    const uint32_t last = before.dsi_gi.vobu_1stref_ea;
    return last > 0 && last <= LargestPicture ? blocks(here - distance, last + 1) : std::vector<uint8_t>();
}

std::vector<uint8_t> EarlierPicture::blocks(uint32_t first, size_t count) {
    std::vector<uint8_t> read(count * BlockBytes);
    const bool whole = m_film && DVDReadBlocks(m_film.get(), static_cast<int>(first), count, read.data()) ==
                                     static_cast<ssize_t>(count);
    return whole ? read : std::vector<uint8_t>();
}

} // namespace zm::dvd
