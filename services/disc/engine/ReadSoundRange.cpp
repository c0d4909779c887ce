#include "services/disc/engine/ReadSoundRange.h"

#include "services/disc/engine/Mp3Range.h"
#include "services/disc/engine/Mp4Range.h"

namespace zm::disc::engine {

SoundRange readSoundRange(const ReadBytes& read, uint64_t size) {
    constexpr size_t TypeAt = 4;
    constexpr size_t Looked = 16;
    const std::string begin = read(0, Looked);
    if (begin.compare(0, 3, "ID3") == 0 || begin.compare(0, 1, "\xFF") == 0) {
        return readMp3Range(read, size).value_or(SoundRange{});
    }
    if (begin.size() == Looked && begin.compare(TypeAt, 4, "ftyp") == 0) {
        return readMp4Range(read).value_or(SoundRange{});
    }
    return {};
}

} // namespace zm::disc::engine
