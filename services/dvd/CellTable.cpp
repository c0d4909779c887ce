#include "services/dvd/CellTable.h"

#include "services/dvd/DiscTime.h"

namespace zm::dvd {

namespace {

bool isFurtherAngle(const cell_playback_t& cell) {
    return cell.block_type == BLOCK_TYPE_ANGLE_BLOCK && cell.block_mode != BLOCK_MODE_FIRST_CELL;
}

} // namespace

const pgc_t* CellTable::find(int titleSet, int chain, int cell) {
    if (!m_disc) {
        m_disc.reset(DVDOpen(m_path.c_str()));
    }
    if (m_disc && m_titleSet != titleSet) {
        m_tables.reset(ifoOpen(m_disc.get(), titleSet));
        m_titleSet = titleSet;
    }
    const pgcit_t* chains = m_tables ? m_tables->vts_pgcit : nullptr;
    if (!chains || chain < 1 || chain > chains->nr_of_pgci_srp) {
        return nullptr;
    }
    const pgc_t* programs = chains->pgci_srp[chain - 1].pgc;
    return programs && programs->cell_playback && cell >= 1 && cell <= programs->nr_of_cells ? programs
                                                                                             : nullptr;
}

std::optional<int64_t> CellTable::begin(int titleSet, int chain, int cell) {
    const pgc_t* programs = find(titleSet, chain, cell);
    if (!programs) {
        return std::nullopt;
    }
    // All angles begin where the first of them does.
    int first = cell - 1;
    while (first > 0 && isFurtherAngle(programs->cell_playback[first])) {
        --first;
    }
    int64_t time = 0;
    for (int i = 0; i < first; ++i) {
        time +=
            isFurtherAngle(programs->cell_playback[i]) ? 0 : ticks(programs->cell_playback[i].playback_time);
    }
    return time;
}

std::optional<uint32_t> CellTable::lastSector(int titleSet, int chain, int cell) {
    const pgc_t* programs = find(titleSet, chain, cell);
    return programs ? std::optional(uint32_t{programs->cell_playback[cell - 1].last_sector}) : std::nullopt;
}

} // namespace zm::dvd
