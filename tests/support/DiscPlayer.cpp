#include "tests/support/DiscPlayer.h"

#include "tests/support/Harness.h"

#include <nlohmann/json.hpp>

namespace zm::test {

namespace {

constexpr const char* Status = "zelmar/disc/status";
constexpr const char* Device = "zelmar/disc/device";
constexpr const char* Playing = "zelmar/disc/playing";

std::string plain(const std::string& name, int value) {
    return name + "::" + std::to_string(value);
}

std::string json(const std::string& name, const nlohmann::ordered_json& value) {
    return name + ":json:" + value.dump();
}

// Bits of "mixedtype" by media type; other types have none.
int mixedBit(int mediaType) {
    constexpr int Bits[] = {0, 0, 2, 4, 8, 0};
    return mediaType >= 0 && mediaType < 6 ? Bits[mediaType] : 0;
}

} // namespace

void DiscPlayer::status(const std::string& line) {
    m_unit.pps(Status, line);
}

void DiscPlayer::device(const std::string& line) {
    m_unit.pps(Device, line);
}

void DiscPlayer::playing(const std::string& line) {
    m_unit.pps(Playing, line);
}

void DiscPlayer::insert(int type, int mask) {
    presence(1);
    state(1);
    mixedType(mask ? mask : mixedBit(type));
    mediaType(type);
    if (type == 0 || type == 3 || type == 5) {
        videoMode(1);
    }
    state(2);
}

void DiscPlayer::eject() {
    state(20);
    presence(0);
    state(0);
}

void DiscPlayer::presence(int value) {
    device(plain("disc", value));
}

void DiscPlayer::mediaType(int value) {
    device(plain("mediatype", value));
}

void DiscPlayer::mixedType(int mask) {
    device(plain("mixedtype", mask));
}

void DiscPlayer::mixedSwitching(int value) {
    device(plain("mixedswitching", value));
}

void DiscPlayer::error(int status) {
    device(plain("errorstatus", status));
}

void DiscPlayer::videoMode(int mode) {
    device(plain("videomode", mode));
}

void DiscPlayer::state(int value) {
    status(plain("discstate", value));
}

void DiscPlayer::playState(int repeat, int shuffle, int scan) {
    status(json("playstate", {{"repeat", repeat}, {"shuffle", shuffle}, {"scan", scan}}));
}

void DiscPlayer::rootMenu(bool shown) {
    status(std::string("rootmenu::") + (shown ? "true" : "false"));
}

void DiscPlayer::updateDb(int state) {
    status(plain("updatedb", state));
}

void DiscPlayer::dvd(const DvdState& state) {
    status(json("dvdstate", {{"audiotype", state.audioType},
                             {"audiochannel", state.audioChannel},
                             {"curaudiolan", state.audioLanguage},
                             {"curaudiomode", state.audio},
                             {"totalaudiomode", state.audios},
                             {"cursubtitlelan", state.subtitleLanguage},
                             {"cursubtitlenum", state.subtitle},
                             {"totalsubtitle", state.subtitles},
                             {"curangle", state.angle},
                             {"totalangle", state.angles}}));
}

void DiscPlayer::audioChannel(int value) {
    status(plain("audiochannel", value));
}

void DiscPlayer::playSpeed(int value) {
    status(plain("playspeed", value));
}

void DiscPlayer::keyInvalid() {
    status("keyinvalid::1");
}

void DiscPlayer::tip(int code) {
    status(plain("msgtip", code));
}

void DiscPlayer::track(const Track& track) {
    playing(json("trackinfo", {{"curmediaid", track.curMediaId},
                               {"curmediaids", track.curMediaIds},
                               {"mediaid", track.mediaId},
                               {"mediaids", track.mediaIds},
                               {"chapter", track.chapter},
                               {"chapters", track.chapters},
                               {"title", track.title},
                               {"titles", track.titles},
                               {"parentFolder", track.parentFolder}}));
}

void DiscPlayer::playTime(int time, int trackTime, int times) {
    playing(json("playtime", {{"time", time}, {"tracktime", trackTime}, {"times", times}}));
}

void DiscPlayer::id3(const std::string& title, const std::string& artist, const std::string& album) {
    playing(json("ID3", {{"title", title}, {"artist", artist}, {"album", album}}));
}

void DiscPlayer::version(const std::string& text) {
    m_unit.pps("zelmar/disc/mpeginfo", "version::" + text);
}

} // namespace zm::test
