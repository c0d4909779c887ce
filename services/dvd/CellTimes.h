#pragma once

#include <dvdread/ifo_read.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zm::dvd {

/**
 * When the cells of a title begin, where it has angles: the library that navigates adds the first angle's time to that of
 * the others, as if one were shown after the other.
 */
class CellTimes {
public:
    /** `path`: as for Navigator. */
    explicit CellTimes(std::string path) : m_path(std::move(path)) {}

    /** In the title, 90 kHz; nothing if the tables do not say. Numbers count from 1; `chain` is that of programs. */
    std::optional<int64_t> begin(int titleSet, int chain, int cell);

private:
    struct Close {
        void operator()(dvd_reader_t* disc) const { DVDClose(disc); }
        void operator()(ifo_handle_t* tables) const { ifoClose(tables); }
    };
    const pgc_t* find(int titleSet, int chain);

    std::string m_path;
    std::unique_ptr<dvd_reader_t, Close> m_disc;
    std::unique_ptr<ifo_handle_t, Close> m_tables;
    int m_titleSet = 0; ///< of the tables
};

} // namespace zm::dvd
