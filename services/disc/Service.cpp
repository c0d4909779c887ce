#include "services/disc/Service.h"

#include "base/JsonMessage.h"
#include "base/Paths.h"
#include "services/disc/engine/SoundLevel.h"
#include "services/disc/log/Log.h"
#include "services/disc/player/Commands.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <optional>

namespace zm::disc {

using Json = nlohmann::json;

namespace {

constexpr const char* controlPath = "/pps/zelmar/disc/control?delta";
// How loud the head unit wants its sound: "volume" 0 to 100 and "mute".
constexpr const char* soundPath = "/pps/zelmar/audio/volume?delta";
// Flags of the target: read, create.
constexpr int ControlFlags = 256;
constexpr unsigned ControlMode = 0666;

// In the runtime folder: the covers of the disc inside.
constexpr const char* CoverFolder = "/covers";

constexpr std::string_view DevicePrefix = "/dev/";

constexpr int EjectCommand = 13;
constexpr int SourceCommand = 187;

int integer(const Json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_number_integer() ? member->get<int>() : 0;
}

std::string string(const Json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>() : std::string();
}

bool flag(const Json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_boolean() && member->get<bool>();
}

// Calls `handle` with each JSON value of the attribute `name` in an object's text.
template <class Handle>
void forEachJson(const std::string& text, const char* name, Handle handle) {
    for (const auto& line : attributesOf(text)) {
        if (line.name == name && line.encoding == "json") {
            handle(line.value);
        }
    }
}

// What an earlier run has left in the drive's object.
std::optional<model::Tray> trayOf(const std::string& driveObject) {
    std::optional<model::Tray> tray;
    forEachJson(driveObject, "tray", [&](const std::string& value) {
        const Json json = jsonObject(value);
        tray = model::Tray{string(json, "path"), flag(json, "source")};
    });
    return tray;
}

} // namespace

Result<std::unique_ptr<Service>>
Service::start(EventLoop& loop, const std::string& runtime, const std::string& catalogueFile,
               const std::string& resumeFile, const std::string& disc, const EngineMaker& makeEngine,
               const dvd::EngineMaker& makeDvdEngine, const std::string& drive) {
    auto catalogue = library::Catalogue::open(catalogueFile);
    if (!catalogue) {
        return catalogue.failure();
    }
    auto state = model::DiscState::open(ppsSocket(runtime));
    if (!state) {
        return state.failure();
    }
    auto control = PpsFile::open(ppsSocket(runtime), controlPath, ControlFlags, ControlMode);
    if (!control) {
        return control.failure();
    }
    auto sound = PpsFile::open(ppsSocket(runtime), soundPath, ControlFlags, ControlMode);
    if (!sound) {
        return sound.failure();
    }
    std::unique_ptr<Service> service(new Service(
        loop, std::move(*state), std::shared_ptr<library::Catalogue>(std::move(*catalogue)), resumeFile,
        runtime + CoverFolder, std::move(*control), std::move(*sound), makeEngine, makeDvdEngine));
    if (auto begun = service->begin(disc, drive); !begun) {
        return begun.failure();
    }
    return service;
}

Service::Service(EventLoop& loop, std::unique_ptr<model::DiscState> state,
                 std::shared_ptr<library::Catalogue> catalogue, const std::string& resumeFile,
                 const std::string& coverFolder, PpsFile control, PpsFile sound,
                 const EngineMaker& makeEngine, const dvd::EngineMaker& makeDvdEngine)
    : m_loop(loop), m_state(std::move(state)), m_memory(resumeFile), m_engine(makeEngine(loop)),
      m_drive(loop, *m_state, m_modes, *m_engine, makeDvdEngine, std::move(catalogue), m_memory, coverFolder),
      m_control(std::move(control)), m_sound(std::move(sound)), m_mailbox(std::make_shared<Mailbox>(loop)) {}

Service::~Service() {
    m_inbox.reset();
    m_mailbox->close();
}

Status Service::begin(const std::string& disc, const std::string& drive) {
    if (!drive.empty()) {
        m_link = std::make_unique<DriveLink>(m_loop, m_drive, drive);
    }
    // What was asked before this run began is over; only what the drive remembers counts.
    for (PpsFile* file : {&m_control, &m_state->statusFile()}) {
        if (auto old = file->read(); !old) {
            logWarning("%s\n", old.error().c_str());
        }
    }
    if (const auto sound = m_sound.read()) {
        soundText(*sound);
    }
    // A service that was started again finds the disc (or the empty tray) that the one before it left.
    const auto left = m_state->driveFile().read();
    const std::string driveObject = left ? *left : std::string();
    const auto remembered = trayOf(driveObject);
    const model::Tray tray = remembered.value_or(model::Tray{});
    m_drive.start(tray);
    std::string path = remembered ? tray.path : disc;
    if (m_link && path.starts_with(DevicePrefix)) {
        path.clear(); // that drive tells by itself what is in it
    }
    if (!path.empty()) {
        m_drive.insert(path);
    } else if (remembered) {
        m_drive.announceEmpty(); // the run before may have ended while a disc was on its way out
    }
    if (m_link) {
        m_link->start();
    }
    driveText(driveObject); // a request that nobody was there to see to
    m_inbox = std::make_unique<PpsInbox>(
        std::vector<PpsInbox::Watch>{
            {&m_control, [this](const std::string& text) { controlText(text); }},
            {&m_state->driveFile(), [this](const std::string& text) { driveText(text); }},
            {&m_sound, [this](const std::string& text) { soundText(text); }},
            {&m_state->statusFile(), [this](const std::string& text) { statusText(text); },
             [this] { publishAgain(); }},
        },
        m_mailbox);
    return m_inbox->start();
}

void Service::controlText(const std::string& text) {
    // In the order of writing: what the application asks for once music plays comes behind the voice.
    for (const auto& line : attributesOf(text)) {
        if (line.name == "zmcmd" && line.encoding == "json") {
            command(line.value);
        } else if (line.name == "zmasr" && line.encoding == "json") {
            voice(line.value);
        }
    }
}

void Service::driveText(const std::string& text) {
    forEachJson(text, "drive", [this](const std::string& value) { driveRequest(value); });
}

// What is missing or makes no sense stays as it was.
void Service::soundText(const std::string& text) {
    for (const auto& line : attributesOf(text)) {
        int number = 0;
        const char* end = line.value.data() + line.value.size();
        const auto parsed = std::from_chars(line.value.data(), end, number);
        if (parsed.ec != std::errc() || parsed.ptr != end) {
            continue;
        }
        if (line.name == "volume") {
            m_loudness.volume = number;
        } else if (line.name == "mute") {
            m_loudness.muted = number != 0;
        }
    }
    // A DVD's sound is played here, that of all else in the decoder.
    engine::setLoudness(m_loudness);
    m_engine->loudness(m_loudness);
}

// A text that sets nothing says that somebody has removed the object.
void Service::statusText(const std::string& text) {
    if (attributesOf(text).empty()) {
        publishAgain();
    }
}

void Service::publishAgain() {
    logInfo("published objects were lost: published again\n");
    m_state->publishAll();
}

void Service::command(const std::string& value) {
    const Json json = jsonObject(value);
    const int number = integer(json, "cmd");
    const int first = integer(json, "param1");
    const int second = integer(json, "param2");
    if (number == EjectCommand) {
        // The application waits for what follows, also where there is nothing to give out.
        m_drive.announceEmpty();
        m_drive.eject();
        return;
    }
    if (number == SourceCommand) {
        m_drive.source(first != 0);
        return;
    }
    player::Transport* transport = m_drive.transport();
    if (number == player::BrowseCommand && !transport) {
        m_drive.browse(first, second);
        return;
    }
    if (!transport || !player::carryOut(*transport, number, first, second)) {
        logInfo("command not carried out: %s\n", value.c_str());
    }
}

void Service::voice(const std::string& value) {
    if (string(jsonObject(value), "play") == "music") {
        m_drive.playMusic();
    } else {
        logWarning("unknown request of the voice assistant: %s\n", value.c_str());
    }
}

void Service::driveRequest(const std::string& value) {
    const Json json = jsonObject(value);
    const std::string op = string(json, "op");
    m_state->requestDone();
    if (op == "insert") {
        m_drive.insert(string(json, "path"));
    } else if (op == "eject") {
        m_drive.eject();
    } else if (op != "fault" || !m_drive.fault(string(json, "kind"))) {
        logWarning("unknown request to the drive: %s\n", value.c_str());
    }
}

} // namespace zm::disc
