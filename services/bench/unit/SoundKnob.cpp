#include "services/bench/unit/SoundKnob.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace zm::bench::unit {

namespace {

constexpr const char* VolumeObject = "/pps/zelmar/audio/volume";

} // namespace

SoundKnob::SoundKnob(std::string ppsSocket, std::string file)
    : m_socket(std::move(ppsSocket)), m_file(std::move(file)) {
    int kept = 0;
    if (std::ifstream(m_file) >> kept) {
        m_volume = std::clamp(kept, 0, Loudest);
    }
}

Status SoundKnob::start() {
    auto object = PpsFile::open(m_socket, VolumeObject, PpsWriteOnlyCreate, 0666);
    if (!object) {
        return object.failure();
    }
    m_object = std::make_unique<PpsFile>(std::move(*object));
    return publish();
}

Status SoundKnob::turn(int volume) {
    m_volume = std::clamp(volume, 0, Loudest);
    const auto published = publish();
    const auto kept = keep();
    if (onTurned) {
        onTurned();
    }
    return published ? kept : published;
}

Status SoundKnob::mute(bool muted) {
    m_muted = muted;
    return publish();
}

Status SoundKnob::publish() {
    return m_object ? m_object->write("volume::" + std::to_string(m_volume) +
                                      "\nmute::" + (m_muted ? "1" : "0") + "\n")
                    : ok();
}

// Whole or not at all, whenever the power goes.
Status SoundKnob::keep() const {
    const std::string fresh = m_file + ".new";
    std::ofstream(fresh) << m_volume << '\n';
    return std::rename(fresh.c_str(), m_file.c_str()) == 0 ? ok() : systemError(m_file);
}

} // namespace zm::bench::unit
