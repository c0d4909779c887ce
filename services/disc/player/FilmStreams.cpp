#include "services/disc/player/FilmStreams.h"

namespace zm::disc::player {

namespace {

// "cursubtitlenum" of the first subtitle, less one; smaller numbers stand for no subtitle.
constexpr int SubtitleOffset = 80;

} // namespace

void FilmStreams::begin(const engine::Streams& streams) {
    m_streams = streams;
    if (m_vcd) {
        m_sound.fit(streams.audio.size());
        m_choice = m_sound.choice();
        if (!m_sound.isUsual()) {
            m_engine.choose(m_choice);
        }
        m_state.audioChannel(m_sound.published());
    }
    publish();
}

void FilmStreams::forget() {
    if (!m_streams.audio.empty() || !m_streams.subtitles.empty()) {
        m_streams = {};
        m_choice = {};
        publish();
    }
}

bool FilmStreams::nextSound() {
    if (m_vcd && !m_streams.audio.empty()) {
        m_sound.step();
        use(m_sound.choice());
        m_state.audioChannel(m_sound.published());
        return true;
    }
    const int count = static_cast<int>(m_streams.audio.size());
    if (count < 2) {
        return false;
    }
    use({(m_choice.audio + 1) % count, m_choice.subtitle});
    return true;
}

bool FilmStreams::nextSubtitle() {
    if (m_streams.subtitles.empty()) {
        return false;
    }
    const int last = static_cast<int>(m_streams.subtitles.size()) - 1;
    const bool off = m_choice.subtitle == last;
    use({m_choice.audio, off ? engine::StreamChoice::NoSubtitle : m_choice.subtitle + 1});
    return true;
}

void FilmStreams::use(const engine::StreamChoice& choice) {
    m_choice = choice;
    m_engine.choose(choice);
    publish();
}

void FilmStreams::publish() {
    model::DvdDetail detail;
    detail.audios = static_cast<int>(m_streams.audio.size());
    if (detail.audios > 0) {
        const auto& heard = m_streams.audio[static_cast<size_t>(m_choice.audio)];
        detail.audio = m_choice.audio + 1;
        detail.audioType = heard.format;
        detail.audioLanguage = heard.language;
    }
    detail.subtitles = static_cast<int>(m_streams.subtitles.size());
    if (m_choice.subtitle != engine::StreamChoice::NoSubtitle) {
        detail.subtitle = SubtitleOffset + m_choice.subtitle + 1;
        detail.subtitleLanguage = m_streams.subtitles[static_cast<size_t>(m_choice.subtitle)].language;
    }
    m_state.dvd(detail);
}

} // namespace zm::disc::player
