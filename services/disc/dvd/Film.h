#pragma once

#include "services/disc/dvd/Listener.h"
#include "services/disc/player/ScanSpeed.h"

#include <chrono>
#include <optional>

namespace zm::disc::dvd {

/** A chapter of a title; both count from 1. */
struct ChapterPlace {
    int title;
    int chapter;
};

/** What there is on a DVD, what of it is on the screen, and where the disc lets one go from there. */
class Film {
public:
    void open(const Titles& titles) { m_titles = titles; }
    /** Returns what was on the screen before. */
    Scene show(const Scene& scene);

    const Scene& scene() const { return m_scene; }
    bool inTitle() const { return m_scene.title > 0; }
    int titles() const { return static_cast<int>(m_titles.titles.size()); }
    int chaptersOf(int title) const;
    /** Whether none of the bits of dvd::Prohibition is set. */
    bool allows(uint32_t prohibition) const { return (m_scene.prohibited & prohibition) == 0; }

    /** The neighbours of the chapter on the screen, behind the last one the next title; nothing where there is none. */
    std::optional<ChapterPlace> next() const;
    std::optional<ChapterPlace> previous() const;
    bool mayPlayChapter(int chapter) const;
    bool mayPlayTitle(int title) const;
    bool maySeek(std::chrono::seconds position) const;
    bool mayScan(player::ScanDirection direction) const;
    bool mayRepeatPassage() const { return inTitle() && allows(zm::dvd::NoTimeSearch); }
    bool mayCallMenu() const { return allows(inTitle() ? zm::dvd::NoRootMenu : zm::dvd::NoResume); }

    /** Logical number of the sound after the one that is heard; nothing where there is no other. */
    std::optional<int> nextSound() const;
    /** The same for subtitles, dvd::NoSubtitle behind the last one. */
    std::optional<int> nextSubtitle() const;
    std::optional<int> nextAngle() const;

private:
    Titles m_titles;
    Scene m_scene;
};

/** Place among `streams` of the one with the logical number `logical`; -1 if there is none. */
template <class Streams>
int placeOf(const Streams& streams, int logical) {
    for (size_t i = 0; i < streams.size(); ++i) {
        if (streams[i].logical == logical) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

} // namespace zm::disc::dvd
