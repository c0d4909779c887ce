#pragma once

#include <dvdread/dvd_reader.h>
#include <dvdread/nav_types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zm::dvd {

/** The picture that stands in a unit of the film that holds nothing but sound: it came before. */
class EarlierPicture {
public:
    /** `path`: as for Navigator. */
    explicit EarlierPicture(std::string path) : m_path(std::move(path)) {}

    /** The packs from the picture's navigation pack to its end; none if `unit` has a picture itself, or it cannot be read. */
    std::vector<uint8_t> read(int titleSet, const dsi_t& unit);

private:
    struct Close {
        void operator()(dvd_reader_t* disc) const { DVDClose(disc); }
        void operator()(dvd_file_t* film) const { DVDCloseFile(film); }
    };
    std::vector<uint8_t> blocks(uint32_t first, size_t count);

    std::string m_path;
    std::unique_ptr<dvd_reader_t, Close> m_disc;
    std::unique_ptr<dvd_file_t, Close> m_film;
    int m_titleSet = 0; ///< of the film
};

} // namespace zm::dvd
