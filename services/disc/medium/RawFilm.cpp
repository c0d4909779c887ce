#include "services/disc/medium/RawFilm.h"

#include "services/disc/medium/RawImage.h"
#include "services/disc/medium/SectorReader.h"

namespace zm::disc::medium {

std::unique_ptr<ByteReader> withoutSectors(std::unique_ptr<ByteReader> file) {
    constexpr int FilmMode = 2;
    if (sectorModeAt(*file, 0) != FilmMode || sectorModeAt(*file, image::SoundSectorBytes) != FilmMode) {
        return file;
    }
    return std::make_unique<SectorReader>(std::move(file), *image::trackFormat("MODE2/2352"),
                                          FilmSectorBytes);
}

} // namespace zm::disc::medium
