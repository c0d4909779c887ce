#pragma once

#include "services/disc/engine/Engine.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/VcdSound.h"

namespace zm::disc::player {

/** The sounds and subtitles of a film that plays, and which of them the user has chosen. */
class FilmStreams {
public:
    /** The films of a VCD have sounds with two sides. */
    FilmStreams(model::DiscState& state, engine::Engine& engine, bool vcd)
        : m_state(state), m_engine(engine), m_vcd(vcd) {}

    /** A film begins that has these. */
    void begin(const engine::Streams& streams);
    /** It is over. */
    void forget();
    /** The next one, a VCD's next side; false where there is no other. */
    bool nextSound();
    /** The next one, after the last none; false without any. */
    bool nextSubtitle();

private:
    void use(const engine::StreamChoice& choice);
    void publish();

    model::DiscState& m_state;
    engine::Engine& m_engine;
    bool m_vcd;
    engine::Streams m_streams;
    engine::StreamChoice m_choice;
    VcdSound m_sound; ///< of a VCD
};

} // namespace zm::disc::player
