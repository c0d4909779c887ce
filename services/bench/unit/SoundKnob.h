#pragma once

#include "base/Result.h"
#include "platform/linux/pps/PpsFile.h"

#include <functional>
#include <memory>
#include <string>

namespace zm::bench::unit {

/**
 * How loud the head unit is: its volume, which outlasts a restart, and whether it is muted. Publishes both as
 * "zelmar/audio/volume" for the disc service. On the loop's thread.
 */
class SoundKnob {
public:
    static constexpr int Loudest = 100;
    static constexpr int Step = 5; ///< of a key

    /** Somebody has turned it. */
    std::function<void()> onTurned;

    /** `file` keeps the volume; without one it is as loud as can be. */
    SoundKnob(std::string ppsSocket, std::string file);

    /** Publishes; the PPS service runs already. */
    Status start();
    int volume() const { return m_volume; }
    /** As near to `volume` as goes. An error: it is so loud now, but that will not outlast a restart. */
    Status turn(int volume);
    Status mute(bool muted);

private:
    Status publish();
    Status keep() const;

    std::string m_socket;
    std::string m_file;
    std::unique_ptr<PpsFile> m_object;
    int m_volume = Loudest;
    bool m_muted = false;
};

} // namespace zm::bench::unit
