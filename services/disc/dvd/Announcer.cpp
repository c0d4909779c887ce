#include "services/disc/dvd/Announcer.h"

#include <algorithm>

namespace zm::disc::dvd {

namespace {

// "cursubtitlenum" of the first subtitle, less one; smaller numbers stand for no subtitle.
constexpr int SubtitleOffset = 80;

std::string languageText(uint32_t code) {
    const auto letter = [](uint32_t value) { return std::string(1, static_cast<char>(value & 0x7f)); };
    const std::string text = code ? letter(code >> 8) + letter(code) : "";
    return std::all_of(text.begin(), text.end(), [](char each) { return each >= 'a' && each <= 'z'; })
               ? text
               : std::string();
}

std::string soundText(zm::dvd::SoundKind kind) {
    switch (kind) {
    case zm::dvd::SoundKind::Ac3:
        return "AC-3";
    case zm::dvd::SoundKind::Mpeg:
        return "MPEG";
    case zm::dvd::SoundKind::Lpcm:
        return "LPCM";
    case zm::dvd::SoundKind::Dts:
        return "DTS";
    default:
        return "";
    }
}

// The sixth channel is the one for effects.
std::string channelText(int channels) {
    return channels <= 0   ? ""
           : channels >= 6 ? std::to_string(channels - 1) + ".1"
                           : std::to_string(channels) + ".0";
}

} // namespace

void Announcer::scene(const Scene& before, const Film& film) {
    const Scene& now = film.scene();
    m_state.rootMenu(now.buttons);
    if (before.title != now.title || before.chapter != now.chapter) {
        track(film);
    }
    if (before.sound != now.sound || before.subtitle != now.subtitle || before.angle != now.angle ||
        before.angles != now.angles || before.streams != now.streams || before.title != now.title) {
        detail(film);
    }
    time(film);
}

void Announcer::track(const Film& film) {
    model::TrackInfo info;
    info.title = film.scene().title;
    info.titles = film.titles();
    info.chapter = film.scene().chapter;
    info.chapters = film.chaptersOf(info.title);
    m_state.track(info);
}

void Announcer::time(const Film& film) {
    const int length = engine::wholeSeconds(film.scene().length);
    const int elapsed = engine::wholeSeconds(film.scene().position);
    m_state.time({length > 0 ? std::min(elapsed, length) : elapsed, length, length});
}

void Announcer::detail(const Film& film) {
    const Scene& scene = film.scene();
    model::DvdDetail detail;
    if (scene.streams && film.inTitle()) {
        const auto& streams = *scene.streams;
        detail.audios = static_cast<int>(streams.sounds.size());
        detail.subtitles = static_cast<int>(streams.subtitles.size());
        if (const int place = placeOf(streams.sounds, scene.sound); place >= 0) {
            const auto& sound = streams.sounds[static_cast<size_t>(place)];
            detail.audio = place + 1;
            detail.audioType = soundText(sound.kind);
            detail.audioChannel = channelText(sound.channels);
            detail.audioLanguage = languageText(sound.language);
        }
        if (const int place = placeOf(streams.subtitles, scene.subtitle); place >= 0) {
            detail.subtitle = SubtitleOffset + place + 1;
            detail.subtitleLanguage = languageText(streams.subtitles[static_cast<size_t>(place)].language);
        }
    }
    detail.angle = film.inTitle() ? scene.angle : 0;
    detail.angles = film.inTitle() ? scene.angles : 0;
    m_state.dvd(detail);
}

} // namespace zm::disc::dvd
