#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace zm::bench::mpris {

/** What the disc service publishes of what plays, in the desktop's terms. Fed with the objects' lines. */
class PlayerState {
public:
    /** Takes one line of a published object; false if it says nothing that is known here. */
    bool take(const std::string& line);

    bool hasItem() const { return m_items > 0; }
    bool plays() const;
    /** "Playing", "Paused" or "Stopped". */
    const char* status() const;
    /** "None", "Track" or "Playlist". */
    const char* loop() const;
    bool shuffle() const { return m_shuffle != 0; }
    bool hasTimes() const { return hasItem() && m_length > 0; }
    int64_t length() const { return int64_t{m_length} * SecondMicroseconds; }
    /** Microseconds; goes on between two published seconds. */
    int64_t position() const;
    /** A path on the bus that only this item of the disc has. */
    std::string track() const;
    int number() const { return m_number; }
    const std::string& title() const { return m_title; }
    const std::string& artist() const { return m_artist; }
    const std::string& album() const { return m_album; }
    /** Path of the cover's picture; empty while there is none. */
    const std::string& cover() const { return m_cover; }
    /** Since the last call the position has gone elsewhere than time does. */
    bool jumped();

    static constexpr int64_t SecondMicroseconds = 1'000'000;

private:
    void takeTime(int elapsed);

    int m_discState = 0;
    int m_items = 0;
    int m_number = 0;
    int m_folder = 0;
    int m_elapsed = 0;
    int m_length = 0;
    int m_repeat = 0;
    int m_shuffle = 0;
    bool m_jumped = false;
    std::chrono::steady_clock::time_point m_since;
    std::string m_title;
    std::string m_artist;
    std::string m_album;
    std::string m_cover;
};

} // namespace zm::bench::mpris
