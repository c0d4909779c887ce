#include "services/disc/dvd/Film.h"

#include <algorithm>
#include <utility>

namespace zm::disc::dvd {

Scene Film::show(const Scene& scene) {
    return std::exchange(m_scene, scene);
}

int Film::chaptersOf(int title) const {
    const auto index = static_cast<size_t>(title) - 1;
    return title > 0 && index < m_titles.titles.size() ? m_titles.titles[index].chapters : 0;
}

std::optional<ChapterPlace> Film::next() const {
    if (!inTitle() || !allows(zm::dvd::NoNext)) {
        return std::nullopt;
    }
    if (m_scene.chapter < chaptersOf(m_scene.title)) {
        return ChapterPlace{m_scene.title, m_scene.chapter + 1};
    }
    if (!allows(zm::dvd::NoTitlePlay) || m_scene.title >= titles()) {
        return std::nullopt;
    }
    return ChapterPlace{m_scene.title + 1, 1};
}

std::optional<ChapterPlace> Film::previous() const {
    if (!inTitle() || !allows(zm::dvd::NoPrevious)) {
        return std::nullopt;
    }
    if (m_scene.chapter > 1) {
        return ChapterPlace{m_scene.title, m_scene.chapter - 1};
    }
    const int title = m_scene.title - 1;
    return title > 0 ? ChapterPlace{title, std::max(chaptersOf(title), 1)} : ChapterPlace{1, 1};
}

bool Film::mayPlayChapter(int chapter) const {
    return inTitle() && chapter >= 1 && chapter <= chaptersOf(m_scene.title) &&
           allows(zm::dvd::NoChapterSearch);
}

bool Film::mayPlayTitle(int title) const {
    return title >= 1 && title <= titles() && allows(zm::dvd::NoTitlePlay);
}

bool Film::maySeek(std::chrono::seconds position) const {
    return inTitle() && position.count() >= 0 && position.count() < engine::wholeSeconds(m_scene.length) &&
           allows(zm::dvd::NoTimeSearch);
}

bool Film::mayScan(player::ScanDirection direction) const {
    return inTitle() && m_scene.length > engine::Milliseconds{0} &&
           allows(direction == player::ScanDirection::Forward ? zm::dvd::NoForward : zm::dvd::NoBackward);
}

std::optional<int> Film::nextSound() const {
    const size_t count = m_scene.streams ? m_scene.streams->sounds.size() : 0;
    if (!inTitle() || count < 2 || !allows(zm::dvd::NoSoundChange)) {
        return std::nullopt;
    }
    const auto place = static_cast<size_t>(placeOf(m_scene.streams->sounds, m_scene.sound) + 1) % count;
    return m_scene.streams->sounds[place].logical;
}

std::optional<int> Film::nextSubtitle() const {
    const size_t count = m_scene.streams ? m_scene.streams->subtitles.size() : 0;
    if (!inTitle() || count == 0 || !allows(zm::dvd::NoSubtitleChange)) {
        return std::nullopt;
    }
    const auto place = static_cast<size_t>(placeOf(m_scene.streams->subtitles, m_scene.subtitle) + 1);
    return place < count ? m_scene.streams->subtitles[place].logical : zm::dvd::NoSubtitle;
}

std::optional<int> Film::nextAngle() const {
    if (!inTitle() || m_scene.angles < 2 || !allows(zm::dvd::NoAngleChange)) {
        return std::nullopt;
    }
    return m_scene.angle % m_scene.angles + 1;
}

} // namespace zm::disc::dvd
