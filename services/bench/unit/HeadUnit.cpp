#include "services/bench/unit/HeadUnit.h"

#include "base/Paths.h"
#include "services/bench/unit/VoiceRequest.h"
#include "services/ctl/ShellWords.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace zm::bench::unit {

namespace {

// The application has this long to settle before it is told more.
constexpr std::chrono::milliseconds SettleTime(1000);

constexpr const char* OtherPages = "OTHERS.zmrc_device";

// Where the resource files of all pages lie, with a slash at its end.
std::string resources(const HeadUnitOptions& options) {
    return options.resourceDir.empty() ? options.shareDir + "/rccs/" : options.resourceDir + "/";
}

// What the application is started with: "disc" and the words of `text`, separated as a shell would.
std::vector<std::string> applicationArguments(const std::string& text) {
    std::vector<std::string> arguments{"disc"};
    if (auto words = ctl::shellWords(text)) {
        arguments.insert(arguments.end(), words->begin(), words->end());
    }
    return arguments;
}

// Beside where discs are remembered, as both outlast the same.
std::string volumeFile(const HeadUnitOptions& options) {
    return options.resume.empty() ? options.runtimeDir + "/volume" : options.resume + ".volume";
}

// What the vehicle says when the sound is off.
constexpr int MuteDevice = 6;
constexpr int Muted = 255;
constexpr int TemperatureDevice = 7;
constexpr int BluetoothDevice = 86;

} // namespace

HeadUnit::HeadUnit(EventLoop& loop, HeadUnitOptions options)
    : m_loop(loop), m_options(std::move(options)), m_pps(loop, zm::ppsSocket(m_options.runtimeDir)),
      m_compositor(loop, screenSocket(m_options.runtimeDir), m_options.screen),
      m_video(loop, m_compositor, ppsSocket()), m_shell(loop, shellSocket(m_options.runtimeDir)),
      m_pages(resources(m_options) + OtherPages, m_options.shareDir + "/fonts/", m_options.screen),
      m_launcher(m_options.launcher, m_shell, m_compositor, m_pages), m_vehicle(m_shell),
      m_car(m_vehicle, ppsSocket()),
      m_journey(loop, m_options.clock == ClockMode::Manual ? Journey::Pace::Stepped : Journey::Pace::Real),
      m_drive(loop, ppsSocket()), m_sound(ppsSocket(), volumeFile(m_options)), m_motion(m_options.motion) {
    connectParts();
    makeChildren();
}

HeadUnit::~HeadUnit() {
    m_shell.onGone = nullptr;
    for (Child* each : children()) {
        each->stop();
    }
    // Whatever waits for the service on this thread must be let go before it is destroyed.
    m_pps.stop();
}

std::string HeadUnit::ppsSocket() const {
    return zm::ppsSocket(m_options.runtimeDir);
}

void HeadUnit::connectParts() {
    m_pps.onChange = [this](const std::string& object, const std::string& text) {
        ++m_ppsChanges;
        m_history.add(object, text);
        if (onPpsChange) {
            onPpsChange(object, text);
        }
    };
    m_video.onChildPosted = [this](const std::string&, const std::string& child, unsigned window) {
        m_shell.tell({{"t", "childpost"}, {"name", child}, {"window", window}});
    };
    m_video.onChildWithdrawn = [this](const std::string&, const std::string& child) {
        m_shell.tell({{"t", "childgone"}, {"name", child}});
    };
    m_vehicle.onDevice = [this](int id, std::optional<int> value) {
        if (id == screen::VideoLock::ParkingDevice) {
            m_videoLock.parkingReads(value);
            m_car.publish();
        } else if (id == MuteDevice && value) {
            if (const auto told = m_sound.mute(*value == Muted); !told) {
                std::fprintf(stderr, "zmbench: %s\n", told.error().c_str());
            }
        }
        showCarStatus();
    };
    m_vehicle.onTime = [this] { showCarStatus(); };
    showCarStatus();
    m_car.onTheme = [this](const std::string& theme, ShellServer::Reply reply) {
        setTheme(theme, std::move(reply));
    };
    m_journey.onStep = [this](const JourneyStep& step) {
        // Checked when the file was read.
        (void)m_car.set(step.signal, step.value, [](const auto&) {});
    };
    m_journey.onRuns = [this](bool runs) { m_car.driveRuns(runs); };
    m_videoLock.parkingReads(m_vehicle.device(screen::VideoLock::ParkingDevice));
    m_shell.welcome = [this] { return welcome(); };
    m_shell.onRunning = [this] { applicationRuns(); };
    m_shell.onRequest = [this](const Json& request) { m_launcher.requested(request); };
    m_shell.onGone = [this](bool inOrder) { applicationGone(inOrder); };
    m_launcher.onStatus = [this](AppStatus status) {
        // Shown only, it is silent but in front; all others put something else there.
        m_videoLock.applicationSeen(status == AppStatus::Resume || status == AppStatus::ShowOnly);
    };
    m_launcher.onStartWanted = [this] { startApplication(); };
    m_drive.onInserted = [this] { discInserted(); };
}

void HeadUnit::makeChildren() {
    if (m_options.programDir.empty()) {
        return;
    }
    std::vector<std::pair<std::string, std::string>> environment = {
        {"ZM_RUNTIME", m_options.runtimeDir},
        {"ZM_SCREEN", m_options.screen.text()},
        {"ZM_CATALOGUE", m_options.catalogue},
        {"ZM_RESUME", m_options.resume},
        {"ZM_RCC_PATH", resources(m_options)},
        {"ZM_FONT_PATH", m_options.shareDir + "/fonts/"},
        {"ZM_WATCH_RESOURCES", m_options.resourceDir.empty() ? "" : "1"},
    };
    if (!std::getenv("XDG_RUNTIME_DIR") && !std::getenv("PULSE_RUNTIME_PATH")) {
        // Else ALSA's library, which looks for a sound server, leaves a folder of its own in the temporary folder.
        environment.emplace_back("PULSE_RUNTIME_PATH", m_options.runtimeDir);
    }
    if (!m_options.audioDevice.empty()) {
        environment.emplace_back("ZM_AUDIO_DEVICE", m_options.audioDevice);
    }
    m_application =
        std::make_unique<Child>(m_loop, ChildSetup{"app", m_options.programDir + "/Platen",
                                                   applicationArguments(m_options.appArgs), environment});
    m_application->onDown = [this] { applicationDown(); };
    if (m_options.discService) {
        std::vector<std::string> arguments;
        if (!m_options.disc.empty()) {
            arguments = {"--disc", m_options.disc};
        }
        if (!m_options.drive.empty()) {
            arguments.insert(arguments.end(), {"--drive", m_options.drive});
        }
        m_discService = std::make_unique<Child>(
            m_loop, ChildSetup{"disc", m_options.programDir + "/zmdiscd", arguments, environment});
        m_discService->onStart = [this] { m_drive.forgetFault(); };
    }
}

Status HeadUnit::start() {
    if (!m_options.disc.empty() && ::access(m_options.disc.c_str(), R_OK) != 0) {
        return systemError(m_options.disc);
    }
    for (const auto& step : {std::function<Status()>([this] { return m_pps.start(); }),
                             std::function<Status()>([this] { return m_compositor.start(); }),
                             std::function<Status()>([this] { return m_video.start(); }),
                             std::function<Status()>([this] { return m_shell.start(); }),
                             std::function<Status()>([this] { return m_sound.start(); }),
                             std::function<Status()>([this] { return m_car.start(); }),
                             std::function<Status()>([this] { return m_drive.start(); })}) {
        if (auto done = step(); !done) {
            return done;
        }
    }
    for (Child* each : children()) {
        each->start();
    }
    return ok();
}

Json HeadUnit::welcome() const {
    Json start = {{"manualClock", m_options.clock == ClockMode::Manual},
                  {"language", m_language},
                  {"theme", m_theme},
                  {"motion", m_motion ? "on" : "off"}};
    m_vehicle.describe(start);
    return start;
}

void HeadUnit::applicationRuns() {
    const auto becomeReady = [this](const Result<Json>&) {
        if (!m_shell.running()) {
            return;
        }
        m_ready = true;
        if (onReady) {
            onReady();
        }
    };
    // The launcher is slower than the application's own start: by the first resume it knows the present state
    // of all objects, so that what the resume does never depends on which of two threads was faster.
    m_shell.ask({{"t", "settle"}, {"timeout", SettleTime.count()}}, [this, becomeReady](const Result<Json>&) {
        if (m_launcher.discInFront()) {
            m_launcher.send(AppStatus::Resume, becomeReady);
        } else {
            becomeReady(Json());
        }
    });
}

void HeadUnit::applicationGone(bool inOrder) {
    m_ready = false;
    m_video.applicationGone();
    m_videoLock.applicationSeen(false); // until it comes back with a resume
    // One that this bench started is watched as a process; of any other only its farewell is known.
    if (inOrder && !m_application) {
        m_launcher.applicationEnded();
    }
}

// What ends may have asked for it just before a disc came: then it is wanted again.
void HeadUnit::applicationDown() {
    const bool missesDisc = m_launcher.quitsByItsWish() && m_drive.holdsDisc();
    const bool wanted = std::exchange(m_startAgain, false) || missesDisc;
    m_launcher.applicationEnded();
    if (wanted && discComesToFront()) {
        startApplication();
    }
}

bool HeadUnit::discComesToFront() const {
    return m_options.discToFront && m_launcher.mode() == LauncherMode::Active;
}

void HeadUnit::discInserted() {
    if (!discComesToFront()) {
        return;
    }
    const bool running = m_ready || applicationExpected();
    if (running && m_launcher.quitting()) {
        m_startAgain = true;
    } else if (m_ready) {
        if (!m_launcher.resumed()) {
            m_launcher.send(AppStatus::Resume, [](const auto&) {});
        }
    } else if (running) {
        m_launcher.bringToFront(); // its first resume follows
    } else {
        startApplication();
    }
}

bool HeadUnit::applicationExpected() const {
    return !m_ready && (m_shell.connected() || (m_application && m_application->expected()));
}

bool HeadUnit::startApplication() {
    if (!m_application) {
        return false;
    }
    if (m_application->state() != Child::State::Running) {
        m_launcher.bringToFront();
        m_application->start();
    }
    return true;
}

void HeadUnit::showCarStatus() {
    const ClockSetting& time = m_vehicle.time();
    m_pages.setStatus({.hour = time.hour,
                       .minute = time.minute,
                       .twelveHours = time.format == 1,
                       .bluetooth = m_vehicle.device(BluetoothDevice).value_or(0),
                       .muted = m_vehicle.device(MuteDevice) == Muted,
                       .temperature = m_vehicle.device(TemperatureDevice)});
    m_launcher.pagesChanged();
}

void HeadUnit::setLanguage(const std::string& code, ShellServer::Reply reply) {
    m_language = code;
    m_pages.setLanguage(code);
    m_launcher.pagesChanged();
    m_shell.inform({{"t", "language"}, {"code", code}}, std::move(reply));
}

void HeadUnit::setTheme(const std::string& name, ShellServer::Reply reply) {
    m_theme = name;
    m_car.themeIs(name);
    m_pages.setTheme(name);
    m_launcher.pagesChanged();
    m_shell.inform({{"t", "theme"}, {"name", name}}, std::move(reply));
}

void HeadUnit::setMotion(bool on, ShellServer::Reply reply) {
    m_motion = on;
    m_shell.inform({{"t", "motion"}, {"wish", on ? "on" : "off"}}, std::move(reply));
}

void HeadUnit::sendApplicationData(const std::string& text, ShellServer::Reply reply) {
    const bool voice = m_discService && isVoiceRequest(text);
    if (!voice) {
        m_shell.ask({{"t", "appdata"}, {"text", text}}, std::move(reply));
        return;
    }
    // The application first, and what it does about it: then it takes the music for what it waits for.
    m_shell.ask({{"t", "appdata"}, {"text", text}}, [this, reply](const Result<Json>& taken) {
        if (!taken) {
            reply(taken);
            return;
        }
        m_shell.ask({{"t", "settle"}, {"timeout", SettleTime.count()}}, [this, reply](const Result<Json>&) {
            const auto told = requestMusic(ppsSocket());
            reply(told ? Result<Json>(Json()) : Error{told.error()});
        });
    });
}

std::vector<Child*> HeadUnit::children() {
    std::vector<Child*> result;
    // The disc service first: it opens the catalogue that the application reads.
    for (Child* each : {m_discService.get(), m_application.get()}) {
        if (each) {
            result.push_back(each);
        }
    }
    return result;
}

Child* HeadUnit::child(const std::string& name) {
    for (Child* each : children()) {
        if (each->name() == name) {
            return each;
        }
    }
    return nullptr;
}

Json HeadUnit::state() {
    Json result = {{"running", m_shell.running()},
                   {"language", m_language},
                   {"theme", m_theme},
                   {"motion", m_motion ? "on" : "off"},
                   {"launcher", m_options.launcher == LauncherMode::Active ? "active" : "passive"},
                   {"front", m_launcher.front()},
                   {"drive", m_drive.state()},
                   {"fault", m_drive.activeFault()},
                   {"volume", m_sound.volume()},
                   {"clock", m_options.clock == ClockMode::Manual ? "manual" : "real"},
                   // Differs after each message, so that a value that went there and back is shown again too.
                   {"revision", m_shell.messagesSent()},
                   {"children", Json::array()}};
    m_vehicle.describe(result);
    m_car.describe(result);
    for (Child* each : children()) {
        result["children"].push_back({{"name", each->name()},
                                      {"pid", each->pid() > 0 ? Json(each->pid()) : Json()},
                                      {"state", each->describeState()},
                                      {"starts", each->starts()}});
    }
    return result;
}

void HeadUnit::follow(const void* owner, std::function<void()> drain) {
    m_followers[owner] = std::move(drain);
}

void HeadUnit::unfollow(const void* owner) {
    m_followers.erase(owner);
}

void HeadUnit::drainFollowers() {
    // Copies, because draining may end a command and with it take it off the list.
    const auto followers = m_followers;
    for (const auto& [owner, drain] : followers) {
        if (m_followers.count(owner)) {
            drain();
        }
    }
}

} // namespace zm::bench::unit
