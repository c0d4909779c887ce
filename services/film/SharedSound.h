#pragma once

#include "base/Result.h"
#include "services/film/Moment.h"
#include "services/film/SharedMemory.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zm::film {

/** Some sound, 16 bit and stereo, and when its first sample was heard. */
struct HeardSound {
    Moment moment = 0;
    uint32_t rate = 0;
    std::vector<int16_t> samples;
};

/**
 * What is heard, on its way from whoever plays it to whoever films it: about a second of it, in a file of the runtime
 * folder. Nobody waits for anybody, and nothing is written while nobody listens. Players are not trusted: whatever
 * they write, a listener gets at most strange sound.
 */
class SharedSound {
public:
    static std::string pathIn(const std::string& runtimeDir);
    /** A fresh file. */
    static Status make(const std::string& path);
    /** Null if there is none. */
    static std::unique_ptr<SharedSound> open(const std::string& path);

    /** For players: whether somebody listens. */
    bool isListenedTo() const;
    /** For players; any thread. */
    void write(Moment moment, uint32_t rate, std::span<const int16_t> samples);

    /** For listeners, at least once a second: only then something is written. */
    void listen();
    /** For listeners: what comes from now on. */
    uint64_t next() const;
    /** For listeners: the sound number `next`, which then is that of the following one; false if it is not there yet. What
     * was overwritten in the meantime is passed over. */
    bool read(uint64_t& next, HeardSound& sound) const;

private:
    struct Content;
    explicit SharedSound(SharedMemory memory);
    Content& content() const;

    SharedMemory m_memory;
};

} // namespace zm::film
