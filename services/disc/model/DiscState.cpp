#include "services/disc/model/DiscState.h"

#include "services/disc/log/Log.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zm::disc::model {

using Json = nlohmann::ordered_json;

enum class DiscState::Object { Device, MpegInfo, Playing, Status, Drive, Cover };

// In the order in which everything is published anew: the type of what plays before its state.
enum class DiscState::Attribute {
    MediaType,
    MixedType,
    MixedSwitching,
    ErrorStatus,
    VideoMode,
    Disc,
    Version,
    TrackInfo,
    Id3,
    PlayTime,
    PlayModes,
    RootMenu,
    Parental,
    UpdateDb,
    Dvd,
    AudioChannel,
    PlaySpeed,
    KeyInvalid,
    MsgTip,
    State,
    DriveState,
    Tray,
    Cover
};

namespace {

enum class Kind { Plain, Json, Event };

constexpr const char* version = "1.0";
// Flags of the target: read and write, create.
constexpr int OpenFlags = 258;
constexpr unsigned OpenMode = 0666;

constexpr const char* objectPaths[] = {
    "/pps/zelmar/disc/device?delta", "/pps/zelmar/disc/mpeginfo?delta", "/pps/zelmar/disc/playing?delta",
    "/pps/zelmar/disc/status?delta", "/pps/zelmar/disc/drive?delta",    "/pps/zelmar/disc/cover?delta",
};

std::string truth(bool value) {
    return value ? "true" : "false";
}

std::string text(const TrackInfo& info) {
    return Json{{"curmediaid", info.inFolder}, {"curmediaids", info.filesInFolder},
                {"mediaid", info.onDisc},      {"mediaids", info.filesOnDisc},
                {"chapter", info.chapter},     {"chapters", info.chapters},
                {"title", info.title},         {"titles", info.titles},
                {"parentFolder", info.folder}}
        .dump();
}

std::string text(const PlayTime& time) {
    return Json{{"time", time.elapsed}, {"tracktime", time.track}, {"times", time.all}}.dump();
}

std::string text(const TrackTexts& texts) {
    return Json{{"title", texts.title}, {"artist", texts.artist}, {"album", texts.album}}.dump();
}

std::string text(const PlayModes& modes) {
    return Json{{"repeat", modes.repeat}, {"shuffle", modes.shuffle}, {"scan", modes.scan}}.dump();
}

std::string text(const DvdDetail& detail) {
    return Json{{"audiotype", detail.audioType},
                {"audiochannel", detail.audioChannel},
                {"curaudiolan", detail.audioLanguage},
                {"curaudiomode", detail.audio},
                {"totalaudiomode", detail.audios},
                {"cursubtitlelan", detail.subtitleLanguage},
                {"cursubtitlenum", detail.subtitle},
                {"totalsubtitle", detail.subtitles},
                {"curangle", detail.angle},
                {"totalangle", detail.angles}}
        .dump();
}

std::string text(int number) {
    return std::to_string(number);
}

// Paths come from the command line and may be no UTF-8.
std::string lenient(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

struct DiscState::Row {
    Attribute attribute;
    Object object;
    const char* name;
    Kind kind = Kind::Plain;
};

const DiscState::Row DiscState::table[] = {
    {Attribute::MediaType, Object::Device, "mediatype"},
    {Attribute::MixedType, Object::Device, "mixedtype"},
    {Attribute::MixedSwitching, Object::Device, "mixedswitching"},
    {Attribute::ErrorStatus, Object::Device, "errorstatus"},
    {Attribute::VideoMode, Object::Device, "videomode"},
    {Attribute::Disc, Object::Device, "disc"},
    {Attribute::Version, Object::MpegInfo, "version"},
    {Attribute::TrackInfo, Object::Playing, "trackinfo", Kind::Json},
    {Attribute::Id3, Object::Playing, "ID3", Kind::Json},
    {Attribute::PlayTime, Object::Playing, "playtime", Kind::Json},
    {Attribute::PlayModes, Object::Status, "playstate", Kind::Json},
    {Attribute::RootMenu, Object::Status, "rootmenu"},
    {Attribute::Parental, Object::Status, "parental"},
    {Attribute::UpdateDb, Object::Status, "updatedb"},
    {Attribute::Dvd, Object::Status, "dvdstate", Kind::Json},
    {Attribute::AudioChannel, Object::Status, "audiochannel"},
    {Attribute::PlaySpeed, Object::Status, "playspeed"},
    {Attribute::KeyInvalid, Object::Status, "keyinvalid", Kind::Event},
    {Attribute::MsgTip, Object::Status, "msgtip", Kind::Event},
    {Attribute::State, Object::Status, "discstate"},
    {Attribute::DriveState, Object::Drive, "drivestate", Kind::Json},
    {Attribute::Tray, Object::Drive, "tray", Kind::Json},
    {Attribute::Cover, Object::Cover, "cover", Kind::Json},
};

Result<std::unique_ptr<DiscState>> DiscState::open(const std::string& ppsSocket) {
    std::unique_ptr<DiscState> state(new DiscState);
    for (const char* path : objectPaths) {
        auto file = PpsFile::open(ppsSocket, path, OpenFlags, OpenMode);
        if (!file) {
            return file.failure();
        }
        state->m_files.push_back(std::move(*file));
    }
    return state;
}

PpsFile& DiscState::file(Object object) {
    return m_files[static_cast<size_t>(object)];
}

PpsFile& DiscState::driveFile() {
    return file(Object::Drive);
}

PpsFile& DiscState::statusFile() {
    return file(Object::Status);
}

void DiscState::write(Object object, const std::string& lines) {
    const auto status = file(object).write(lines);
    if (!status && !m_failing) {
        logWarning("publishing: %s", status.error().c_str());
    }
    m_failing = !status;
}

namespace {

std::string line(const char* name, Kind kind, const std::string& value) {
    return std::string(name) + (kind == Kind::Json ? ":json:" : "::") + value + "\n";
}

} // namespace

void DiscState::publish(Attribute attribute, const std::string& value) {
    m_values[attribute] = value;
    const auto& row = *std::find_if(std::begin(table), std::end(table),
                                    [&](const Row& each) { return each.attribute == attribute; });
    write(row.object, line(row.name, row.kind, value));
}

void DiscState::publish(Attribute attribute, int value) {
    publish(attribute, text(value));
}

void DiscState::publishChanged(Attribute attribute, const std::string& value) {
    if (m_values[attribute] != value) {
        publish(attribute, value);
    }
}

void DiscState::publishAll() {
    std::map<Object, std::string> lines;
    for (const auto& row : table) {
        const auto value = m_values.find(row.attribute);
        if (value != m_values.end() && row.kind != Kind::Event) {
            lines[row.object] += line(row.name, row.kind, value->second);
        }
    }
    for (const auto& [object, all] : lines) {
        write(object, all);
    }
}

void DiscState::disc(DiscPresence presence) {
    publish(Attribute::Disc, static_cast<int>(presence));
}
void DiscState::mediaType(MediaType type) {
    publish(Attribute::MediaType, static_cast<int>(type));
}
void DiscState::mixedType(int mask) {
    publish(Attribute::MixedType, mask);
}
void DiscState::mixedSwitching(bool on) {
    publish(Attribute::MixedSwitching, on);
}
void DiscState::error(DeviceError error) {
    publish(Attribute::ErrorStatus, static_cast<int>(error));
}
void DiscState::videoMode(VideoMode mode) {
    publishChanged(Attribute::VideoMode, text(static_cast<int>(mode)));
}
void DiscState::playState(PlayState state) {
    publish(Attribute::State, static_cast<int>(state));
}
void DiscState::repeatTypeAndState() {
    publish(Attribute::MediaType, m_values[Attribute::MediaType]);
    publish(Attribute::State, m_values[Attribute::State]);
}
void DiscState::modes(const PlayModes& modes) {
    publish(Attribute::PlayModes, text(modes));
}
void DiscState::rootMenu(bool shown) {
    publishChanged(Attribute::RootMenu, truth(shown));
}
void DiscState::catalogue(Reading reading, int folder) {
    publish(Attribute::UpdateDb, static_cast<int>(reading) | (folder & 0xFFFF));
}
void DiscState::dvd(const DvdDetail& detail) {
    publish(Attribute::Dvd, text(detail));
}
void DiscState::audioChannel(int channel) {
    publish(Attribute::AudioChannel, channel);
}
void DiscState::playSpeed(int speed) {
    publishChanged(Attribute::PlaySpeed, text(speed));
}
void DiscState::keyInvalid() {
    publish(Attribute::KeyInvalid, 1);
}
void DiscState::tip(Tip tip, int offset) {
    publish(Attribute::MsgTip, static_cast<int>(tip) + offset);
}
void DiscState::track(const TrackInfo& info) {
    publish(Attribute::TrackInfo, text(info));
}
void DiscState::time(const PlayTime& time) {
    publish(Attribute::PlayTime, text(time));
}
void DiscState::texts(const TrackTexts& texts) {
    publish(Attribute::Id3, text(texts));
}
void DiscState::cover(const model::Cover& cover) {
    publishChanged(Attribute::Cover, lenient({{"path", cover.path},
                                              {"kind", cover.kind},
                                              {"color", cover.color},
                                              {"folder", cover.folder},
                                              {"file", cover.file}}));
}
void DiscState::drive(const DriveState& state) {
    nlohmann::json json{{"state", state.state}, {"path", state.path}, {"text", state.text}};
    if (!state.kind.empty()) {
        json["kind"] = state.kind;
    }
    if (!state.form.empty()) {
        json["form"] = state.form;
    }
    if (!state.catalogNumber.empty()) {
        json["catalog"] = state.catalogNumber;
    }
    if (!state.isrcs.empty()) {
        json["isrc"] = state.isrcs;
    }
    if (!state.device.empty()) {
        json["device"] = state.device;
    }
    if (state.byHand) {
        json["byHand"] = true;
    }
    publish(Attribute::DriveState, lenient(json));
}
void DiscState::tray(const Tray& tray) {
    publish(Attribute::Tray, lenient({{"path", tray.path}, {"source", tray.source}}));
}

void DiscState::requestDone() {
    write(Object::Drive, "-drive\n");
}

void DiscState::forgetDisc() {
    publishChanged(Attribute::Version, version);
    publishChanged(Attribute::MediaType, text(static_cast<int>(MediaType::Unknown)));
    publishChanged(Attribute::MixedType, text(0));
    publishChanged(Attribute::MixedSwitching, text(0));
    publishChanged(Attribute::ErrorStatus, text(0));
    videoMode(VideoMode::NoPicture);
    publishChanged(Attribute::TrackInfo, text(TrackInfo{}));
    publishChanged(Attribute::Id3, text(TrackTexts{}));
    publishChanged(Attribute::PlayTime, text(PlayTime{}));
    cover({});
    rootMenu(false);
    publishChanged(Attribute::Parental, truth(false));
    publishChanged(Attribute::UpdateDb, text(0));
    publishChanged(Attribute::Dvd, text(DvdDetail{}));
    publishChanged(Attribute::AudioChannel, text(0));
    playSpeed(1);
}

} // namespace zm::disc::model
