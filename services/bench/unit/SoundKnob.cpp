#include "services/bench/unit/SoundKnob.h"

#include <glib.h>

#include <algorithm>
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
    const std::string text = std::to_string(m_volume) + "\n";
    GError* error = nullptr;
    if (g_file_set_contents(m_file.c_str(), text.c_str(), static_cast<gssize>(text.size()), &error)) {
        return ok();
    }
    Error result{error->message};
    g_error_free(error);
    return result;
}

} // namespace zm::bench::unit
