#include "services/bench/mpris/PlayerState.h"

#include "base/JsonMessage.h"
#include "services/bench/unit/PpsText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace zm::bench::mpris {

namespace {

constexpr int StatePlaying = 2;
constexpr int StatePaused = 6;
constexpr int StateForward = 10;
constexpr int StateBackward = 11;
constexpr int RepeatAll = 2;
constexpr int RepeatFolder = 4;
constexpr int RepeatOne = 8;
// Published seconds are whole and come late by some of one.
constexpr int JumpSeconds = 2;

int numberIn(const nlohmann::json& object, const char* name) {
    const auto found = object.find(name);
    return found != object.end() && found->is_number_integer() ? found->get<int>() : 0;
}

std::string wordIn(const nlohmann::json& object, const char* name) {
    const auto found = object.find(name);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

} // namespace

bool PlayerState::take(const std::string& line) {
    std::string value;
    if (unit::ppsValue(line, "discstate", value)) {
        m_elapsed = static_cast<int>(position() / SecondMicroseconds);
        m_since = std::chrono::steady_clock::now();
        m_discState = std::atoi(value.c_str());
    } else if (unit::ppsValue(line, "trackinfo", value)) {
        const auto json = jsonObject(value);
        m_items = numberIn(json, "mediaids");
        m_number = numberIn(json, "mediaid");
        m_folder = numberIn(json, "parentFolder");
    } else if (unit::ppsValue(line, "ID3", value)) {
        const auto json = jsonObject(value);
        m_title = wordIn(json, "title");
        m_artist = wordIn(json, "artist");
        m_album = wordIn(json, "album");
    } else if (unit::ppsValue(line, "cover", value)) {
        m_cover = wordIn(jsonObject(value), "path");
    } else if (unit::ppsValue(line, "playtime", value)) {
        const auto json = jsonObject(value);
        m_length = numberIn(json, "tracktime");
        takeTime(numberIn(json, "time"));
    } else if (unit::ppsValue(line, "playstate", value)) {
        const auto json = jsonObject(value);
        m_repeat = numberIn(json, "repeat");
        m_shuffle = numberIn(json, "shuffle");
    } else {
        return false;
    }
    return true;
}

void PlayerState::takeTime(int elapsed) {
    const auto expected = static_cast<int>(position() / SecondMicroseconds);
    m_jumped = m_jumped || std::abs(elapsed - expected) >= JumpSeconds;
    if (elapsed != m_elapsed) {
        m_since = std::chrono::steady_clock::now();
    }
    m_elapsed = elapsed;
}

bool PlayerState::jumped() {
    return std::exchange(m_jumped, false);
}

bool PlayerState::plays() const {
    return m_discState == StatePlaying || m_discState == StateForward || m_discState == StateBackward;
}

const char* PlayerState::status() const {
    return plays() ? "Playing" : m_discState == StatePaused ? "Paused" : "Stopped";
}

const char* PlayerState::loop() const {
    return m_repeat == RepeatOne                               ? "Track"
           : m_repeat == RepeatAll || m_repeat == RepeatFolder ? "Playlist"
                                                               : "None";
}

int64_t PlayerState::position() const {
    int64_t time = m_elapsed * SecondMicroseconds;
    if (m_discState == StatePlaying) {
        const auto since = std::chrono::steady_clock::now() - m_since;
        const int64_t more = std::chrono::duration_cast<std::chrono::microseconds>(since).count();
        time += std::min(more, SecondMicroseconds);
    }
    return m_length > 0 ? std::min(time, length()) : time;
}

std::string PlayerState::track() const {
    return "/org/platen/disc/" + std::to_string(m_folder) + "/" + std::to_string(m_number);
}

} // namespace zm::bench::mpris
