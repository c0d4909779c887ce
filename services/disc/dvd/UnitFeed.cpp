#include "services/disc/dvd/UnitFeed.h"

#include "services/disc/dvd/SoundPad.h"

#include <utility>

namespace zm::disc::dvd {

void UnitFeed::restart() {
    m_pipeline.flush();
    stand(false);
    m_timeline.restart();
    m_unit = {};
    m_begun = false;
}

void UnitFeed::begin(const NavPack& pack, bool lost, int64_t earliest) {
    m_unit = m_timeline.place(pack.begin, pack.end, earliest);
    m_begun = true;
    m_lost = lost;
    m_hasSound = false;
    m_hasPicture = pack.hasPicture;
}

void UnitFeed::end() {
    if (m_begun && !m_hasSound) {
        m_pipeline.silence(padOf(m_sound.kind), m_unit.begin, m_unit.end);
        m_hasSound = true;
    }
    if (m_begun && !m_hasPicture) {
        stand(true);
    }
}

void UnitFeed::push(const Fragment& fragment, Wanted wanted) {
    // The time of packs before the first navigation pack is not known.
    if (!m_begun || m_lost) {
        return;
    }
    const int64_t shift = m_timeline.shift();
    if (fragment.kind == Fragment::Kind::Video) {
        m_hasPicture = true;
        stand(false);
        m_pipeline.push(Pad::Video, fragment, shift);
        return;
    }
    if (!m_hasPicture) {
        stand(true);
    }
    if (fragment.kind == Fragment::Kind::Subtitle) {
        if (fragment.stream == m_subtitle.stream) {
            m_pipeline.push(Pad::Subtitle, fragment, shift);
        }
    } else if (fragment.stream == m_sound.stream && wanted == Wanted::All &&
               (m_sound.kind == zm::dvd::SoundKind::Unknown || m_sound.kind == fragment.sound)) {
        m_sound.kind = fragment.sound;
        m_hasSound = true;
        m_pipeline.push(padOf(fragment.sound), fragment, shift);
    }
}

void UnitFeed::pushStandingPicture(std::span<const uint8_t> pack) {
    if (!m_begun || m_lost || pack.size() < zm::dvd::BlockBytes) {
        return;
    }
    for (auto& each : splitPack(pack.first(zm::dvd::BlockBytes))) {
        if (each.kind == Fragment::Kind::Video && !each.scrambled) {
            const int64_t begin = m_unit.begin - m_timeline.shift();
            each.time = each.time ? std::optional(begin) : std::nullopt;
            each.decodeTime.reset();
            stand(false);
            m_pipeline.push(Pad::Video, each, m_timeline.shift());
        }
    }
}

void UnitFeed::stand(bool stands) {
    if (std::exchange(m_stands, stands) != stands) {
        m_pipeline.still(stands);
    }
}

void UnitFeed::passSound(int64_t now) {
    m_pipeline.silence(padOf(m_sound.kind), now, now);
}

void UnitFeed::giveUp() {
    m_pipeline.silence(Pad::Video, m_unit.begin, m_unit.end);
    m_pipeline.silence(padOf(m_sound.kind), m_unit.begin, m_unit.end); // its stamps may be of another day
}

void UnitFeed::choose(const zm::dvd::SubtitleEvent& subtitle) {
    m_subtitle = subtitle;
    m_pipeline.subtitleStream(subtitle.logical, subtitle.stream, subtitle.visible != 0);
}

} // namespace zm::disc::dvd
