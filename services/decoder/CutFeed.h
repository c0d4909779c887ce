#pragma once

#include "base/Mutex.h"
#include "services/disc/engine/ByteFeed.h"

#include <sndfile.h>

#include <memory>
#include <optional>

namespace zm::decoder {

/**
 * A part of an encoded file, decoded: to the player it is a WAV file, whose every sample is where it stands in the file. Times
 * are counted in sectors of a CD, 75 a second.
 */
class CutFeed : public disc::engine::ByteFeed {
public:
    /** `count` sectors of `file` from `first` on, or all behind it; then `silence` of them. */
    CutFeed(std::shared_ptr<disc::engine::ByteFeed> file, int64_t first, std::optional<int64_t> count,
            int64_t silence);
    Result<uint64_t> open() override;
    void cancel() override { m_file->cancel(); }
    std::string failure() const override;

protected:
    std::vector<char> fetch(uint64_t offset) override;

private:
    void openSound();
    int64_t frames(int64_t sectors) const;
    bool decode(int64_t frame, int64_t count, char* bytes);
    void fail(const std::string& why);

    static sf_count_t sizeOf(void* self);
    static sf_count_t seekTo(sf_count_t offset, int whence, void* self);
    static sf_count_t readInto(void* bytes, sf_count_t count, void* self);
    static sf_count_t placeOf(void* self);

    std::shared_ptr<disc::engine::ByteFeed> m_file;
    int64_t m_firstSector;
    std::optional<int64_t> m_sectors;
    int64_t m_silentSectors;

    uint64_t m_fileSize = 0;
    uint64_t m_filePlace = 0; ///< where the library reads next
    std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> m_sound{nullptr, ::sf_close};
    SF_INFO m_info{};
    int64_t m_bytesPerSample = 0;
    int64_t m_begin = 0; ///< in the file, in frames
    int64_t m_count = 0;
    int64_t m_silence = 0; ///< in frames
    int64_t m_next = 0;    ///< the frame that is decoded next without a seek
    int64_t m_lost = 0;    ///< frames in a row that could not be decoded
    int64_t m_lostEnd = 0; ///< the one behind them
    std::string m_header;
    mutable Mutex m_mutex;
    std::string m_failure ZM_GUARDED_BY(m_mutex);
};

} // namespace zm::decoder
