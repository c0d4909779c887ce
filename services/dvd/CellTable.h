#pragma once

#include <dvdread/ifo_read.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zm::dvd {

/**
 * What the disc's tables say of the cells of a title. The library that navigates does not tell it, or not rightly: it
 * adds the first angle's time to that of the others, as if one were shown after the other.
 */
class CellTable {
public:
    /** `path`: as for Navigator. */
    explicit CellTable(std::string path) : m_path(std::move(path)) {}

    /** In the title, 90 kHz; nothing if the tables do not say. Numbers count from 1; `chain` is that of programs. */
    std::optional<int64_t> begin(int titleSet, int chain, int cell);
    /** The same for its last sector, counted in the title set's film. */
    std::optional<uint32_t> lastSector(int titleSet, int chain, int cell);

private:
    struct Close {
        void operator()(dvd_reader_t* disc) const { DVDClose(disc); }
        void operator()(ifo_handle_t* tables) const { ifoClose(tables); }
    };
    /** The chain if it has that cell. */
    const pgc_t* find(int titleSet, int chain, int cell);

    std::string m_path;
    std::unique_ptr<dvd_reader_t, Close> m_disc;
    std::unique_ptr<ifo_handle_t, Close> m_tables;
    int m_titleSet = 0; ///< of the tables
};

} // namespace zm::dvd
