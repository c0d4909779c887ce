#pragma once

#include "base/Mutex.h"
#include "services/disc/engine/FrameSink.h"
#include "services/disc/engine/SharedPictures.h"

#include <array>
#include <cstdint>

namespace zm::decoder {

/** Sends pictures to the disc service through the memory that both share. */
class FrameSender : public disc::engine::FrameSink {
public:
    FrameSender();
    /** What the pictures belong to from now on. */
    void begin(uint64_t item);
    void show(const disc::engine::DrawPicture& draw) override;
    /** The disc service knows by itself when there is nothing to be seen. */
    void clear() override {}

private:
    void takeBack() ZM_REQUIRES(m_mutex);

    Mutex m_mutex;
    disc::engine::SharedPictures m_pictures ZM_GUARDED_BY(m_mutex);
    std::array<bool, 3> m_away ZM_GUARDED_BY(m_mutex){}; ///< places that the service has not given back
    uint64_t m_item ZM_GUARDED_BY(m_mutex) = 0;
};

} // namespace zm::decoder
