#pragma once

#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

namespace zm::test {

// Root: 1 and 2; folder 2 "a": 1, 2, 3; all short tones of different titles.
inline void makeDisc(const TempFolder& disc, int seconds = 30) {
    place(toneFile("mp3", seconds, "Root one", "Ann", "First", 1), disc / "1.mp3");
    place(toneFile("ogg", seconds, "Root two", "Ann", "First", 2), disc / "2.ogg");
    place(toneFile("flac", seconds, "A one", "Bob", "Second", 1), disc / "a/01.flac");
    place(toneFile("m4a", seconds, "A two", "Bob", "Second", 2), disc / "a/02.m4a");
    place(toneFile("mp3", seconds, "A three", "Bob", "Second", 3), disc / "a/03.mp3");
}

class DiscService : public testing::Test {
protected:
    void SetUp() override { makeDisc(m_disc); }

    void play() { m_unit.play(m_disc.path().string()); }

    // The next "trackinfo" of file `file` in folder `folder`.
    Published nextTrack(int folder, int file) {
        return m_unit.next("trackinfo", [=](const Published& each) {
            return each.json()["parentFolder"] == folder && each.json()["curmediaid"] == file;
        });
    }
    Published nextTitle(const std::string& title) {
        return m_unit.next("ID3", [=](const Published& each) { return each.json()["title"] == title; });
    }
    Published nextTime(int from, int to, std::chrono::milliseconds timeout = std::chrono::seconds(15)) {
        return m_unit.next(
            "playtime",
            [=](const Published& each) { return each.json()["time"] >= from && each.json()["time"] <= to; },
            timeout);
    }
    void nextTip(int tip) { m_unit.next("msgtip", std::to_string(tip)); }

    TempFolder m_disc;
    DiscUnit m_unit;
};

} // namespace zm::test
