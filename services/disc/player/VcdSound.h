#pragma once

#include "services/disc/engine/Streams.h"

namespace zm::disc::player {

/** Which of a VCD's sounds is heard, and which side of it: on such discs each side may be a sound of its own. */
class VcdSound {
public:
    const engine::StreamChoice& choice() const { return m_choice; }
    bool isUsual() const { return m_choice.audio == 0 && m_choice.channel == engine::SoundChannel::Both; }
    /** The film that begins has so many sounds. */
    void fit(size_t sounds) {
        m_sounds = static_cast<int>(sounds);
        m_choice.audio = m_choice.audio < m_sounds ? m_choice.audio : 0;
    }
    bool hasAny() const { return m_sounds > 0; }
    /** Both sides, the left one, the right one, and so on with the next sound. */
    void step() {
        switch (m_choice.channel) {
        case engine::SoundChannel::Both:
            m_choice.channel = engine::SoundChannel::Left;
            break;
        case engine::SoundChannel::Left:
            m_choice.channel = engine::SoundChannel::Right;
            break;
        case engine::SoundChannel::Right:
            m_choice = {(m_choice.audio + 1) % m_sounds};
            break;
        }
    }
    /** As "audiochannel" says it: 1 left, 2 right, 3 both, 4 both of another sound than the first; 0 without any. */
    int published() const {
        if (m_sounds == 0) {
            return 0;
        }
        switch (m_choice.channel) {
        case engine::SoundChannel::Left:
            return 1;
        case engine::SoundChannel::Right:
            return 2;
        default:
            return m_choice.audio == 0 ? 3 : 4;
        }
    }

private:
    engine::StreamChoice m_choice;
    int m_sounds = 0;
};

} // namespace zm::disc::player
