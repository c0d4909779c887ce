#include "services/dvd/CellTimes.h"

#include "services/dvd/DiscTime.h"

namespace zm::dvd {

namespace {

bool isFurtherAngle(const cell_playback_t& cell) {
    return cell.block_type == BLOCK_TYPE_ANGLE_BLOCK && cell.block_mode != BLOCK_MODE_FIRST_CELL;
}

} // namespace

const pgc_t* CellTimes::find(int titleSet, int chain) {
    if (!m_disc) {
        m_disc.reset(DVDOpen(m_path.c_str()));
    }
    if (m_disc && m_titleSet != titleSet) {
        m_tables.reset(ifoOpen(m_disc.get(), titleSet));
        m_titleSet = titleSet;
    }
    const pgcit_t* chains = m_tables ? m_tables->vts_pgcit : nullptr;
    return chains && chain >= 1 && chain <= chains->nr_of_pgci_srp ? chains->pgci_srp[chain - 1].pgc
                                                                   : nullptr;
}

std::optional<int64_t> CellTimes::begin(int titleSet, int chain, int cell) {
    const pgc_t* programs = find(titleSet, chain);
    if (!programs || !programs->cell_playback || cell < 1 || cell > programs->nr_of_cells) {
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

} // namespace zm::dvd
