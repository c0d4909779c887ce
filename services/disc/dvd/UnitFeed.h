#pragma once

#include "services/disc/dvd/Pipeline.h"
#include "services/disc/dvd/Timeline.h"
#include "services/dvd/Wire.h"

namespace zm::disc::dvd {

/** What of a unit is wanted. */
enum class Wanted { All, Pictures };

/**
 * Hands the packs of one unit of a film after the other to the decoders, each at its time, and tells them what a
 * unit does not have: what is not there has to be said, else everything would wait for it. One thread.
 */
class UnitFeed {
public:
    explicit UnitFeed(Pipeline& pipeline) : m_pipeline(pipeline) { m_sound.stream = -1; }

    /** All that was pushed is thrown away; the next unit is played at once. */
    void restart();
    /** The unit that `pack` is in front of, behind the one before and not earlier than `earliest`. Of a lost one nothing
     * is pushed: when its packs belong nobody knows. */
    void begin(const NavPack& pack, bool lost, int64_t earliest);
    /** Nothing more comes of the unit. */
    void end();
    /** A piece of the unit. */
    void push(const Fragment& fragment, Wanted wanted);
    /** A pack from before the unit, of the picture that stands where it begins. */
    void pushStandingPicture(std::span<const uint8_t> pack);
    /** While a picture stands the decoder gives it out at once, not when another one comes. */
    void stand(bool stands);
    /** While a picture stands none comes. */
    bool stands() const { return m_stands; }
    /** Lets go who waits for the next picture, or also for the next sound: none comes for now. */
    void passPicture(int64_t now) { m_pipeline.silence(Pad::Video, now, now); }
    void passSound(int64_t now);
    /** Nothing of the unit can be decoded. */
    void giveUp();

    /** Which sound and subtitle of the disc are pushed from now on. */
    void choose(const zm::dvd::SoundEvent& sound) { m_sound = sound; }
    void choose(const zm::dvd::SubtitleEvent& subtitle);
    /** Their logical numbers; -1 none. */
    int sound() const { return m_sound.stream < 0 ? -1 : m_sound.logical; }
    int subtitle() const { return m_subtitle.visible ? m_subtitle.logical : -1; }

    /** There was a unit since the last `restart`. */
    bool begun() const { return m_begun; }
    /** Where the last one is played. */
    const Timeline::Span& unit() const { return m_unit; }

private:
    Pipeline& m_pipeline;
    Timeline m_timeline;
    Timeline::Span m_unit;
    bool m_begun = false;
    bool m_lost = false;
    bool m_hasSound = false;
    bool m_hasPicture = false;
    bool m_stands = false; ///< the decoder was told that no picture follows for now
    zm::dvd::SoundEvent m_sound;
    zm::dvd::SubtitleEvent m_subtitle;
};

} // namespace zm::disc::dvd
