#include "services/disc/Drive.h"

#include "services/disc/dvd/Player.h"
#include "services/disc/log/Log.h"
#include "services/disc/player/FilePlayer.h"

#include <algorithm>
#include <string_view>

namespace zm::disc {

namespace {

// The mechanism takes a moment to give a disc out.
constexpr engine::Milliseconds EjectTime{800};
// How long a drive of this machine may take for it.
constexpr engine::Milliseconds GiveOutTime{15000};
// Between a disc that is out and the next one.
constexpr engine::Milliseconds ChangeTime{200};
// How long an empty drive says "loading", see announceEmpty: also an application with much to do has seen it.
constexpr engine::Milliseconds LeadTime{2000};

constexpr int RootFolder = 1;

// The region of the world that the unit is made for: 2, Europe, Japan and the Middle East.
constexpr uint8_t UnitRegionBit = 1 << (2 - 1);

struct FaultRow {
    std::string_view name;
    medium::DriveFault fault;
    model::DeviceError error;
};
constexpr FaultRow faults[] = {
    {"none", medium::DriveFault::None, model::DeviceError::None},
    {"read", medium::DriveFault::ReadError, model::DeviceError::None},
    {"noanswer", medium::DriveFault::NoAnswer, model::DeviceError::None},
    {"surface", medium::DriveFault::None, model::DeviceError::Surface},
    {"temperature", medium::DriveFault::None, model::DeviceError::Temperature},
    {"region", medium::DriveFault::None, model::DeviceError::Region},
};

// What the disc is, in words.
std::string kindOf(const model::Contents& contents) {
    if (contents.dvd) {
        return "DVD-Video";
    }
    if (contents.trackType) {
        return contents.trackType == model::MediaType::Vcd ? "VCD" : "audio CD";
    }
    std::string found;
    for (const auto& row : model::kinds) {
        if (!contents.of(row.kind).empty()) {
            found += found.empty() ? "files: " : ", ";
            found += row.name;
        }
    }
    return found.empty() ? "files, none of them playable" : found;
}

} // namespace

Drive::Drive(EventLoop& loop, model::DiscState& state, model::PlayModes& modes, engine::Engine& engine,
             dvd::EngineMaker makeDvdEngine, std::shared_ptr<library::Catalogue> catalogue,
             player::ResumeMemory& memory, const std::string& coverFolder)
    : m_loop(loop), m_state(state), m_modes(modes), m_engine(engine),
      m_makeDvdEngine(std::move(makeDvdEngine)), m_catalogue(std::move(catalogue)), m_memory(memory),
      m_opening(loop), m_covers(loop, state, coverFolder) {}

Drive::~Drive() = default;

void Drive::start(const model::Tray& tray) {
    m_source = tray.source;
    m_state.forgetDisc();
    m_state.playState(model::PlayState::Stopped);
    m_state.modes(m_modes);
    m_state.disc(m_absence);
    report({"empty", "", ""});
}

// A disc on its way out is not found again by a service that is started anew, one on its way in is.
void Drive::rememberTray() {
    const std::string& inside = m_leaving.active() ? std::string() : m_path;
    m_state.tray({m_next ? m_next->path : inside, m_source});
}

void Drive::report(const model::DriveState& report) {
    m_report = report;
    if (m_gate && !report.path.empty()) {
        const auto& description = m_gate->description();
        m_report.form = description.form;
        m_report.catalogNumber = description.catalogNumber;
        if (std::any_of(description.isrcs.begin(), description.isrcs.end(),
                        [](const std::string& each) { return !each.empty(); })) {
            m_report.isrcs = description.isrcs;
        }
    }
    if (m_contents && !report.path.empty()) {
        m_report.kind = kindOf(*m_contents);
    }
    if (m_mechanism.path) {
        const std::string device = m_mechanism.path();
        m_report.device = device.empty() ? "none" : device;
    }
    if (!report.path.empty() && report.path == m_path) {
        m_report.byHand = m_byHand;
        m_report.text = m_report.text.empty() ? m_refusal : m_report.text;
    }
    m_state.drive(m_report);
}

void Drive::insert(const std::string& path) {
    m_opening.open(path, [this, path](const DiscOpening::Opened& medium) { opened(path, medium); });
}

void Drive::opened(const std::string& path, const DiscOpening::Opened& medium) {
    if (!medium) {
        logWarning("%s\n", medium.error().c_str());
        m_state.drive({"error", path, medium.error()});
        if (!m_path.empty()) {
            // What is inside stays there and plays on: the last word is about that.
            m_report.text = medium.error();
            m_state.drive(m_report);
        }
        return;
    }
    insertOpened(path, *medium, false);
}

void Drive::insertOpened(const std::string& path, std::shared_ptr<medium::Medium> medium, bool byHand) {
    Inserted disc{path, std::move(medium), byHand};
    m_awaited = false;
    if (m_path.empty() && !m_leaving.active()) {
        take(disc);
        return;
    }
    m_next = std::move(disc);
    m_absence = model::DiscPresence::None;
    if (m_leaving.active()) {
        rememberTray();
    } else {
        leave();
        giveOut();
    }
}

void Drive::insertFailed(const std::string& path, const std::string& reason) {
    logWarning("%s\n", reason.c_str());
    if (std::exchange(m_awaited, false) && m_path.empty()) {
        report({"error", path, reason});
        m_state.playState(model::PlayState::Error);
    }
}

void Drive::awaitDisc(const std::string& path) {
    if (!m_path.empty() || m_leaving.active() || std::exchange(m_awaited, true)) {
        return;
    }
    m_resting.reset();
    report({"reading", path, "the drive gets ready"});
    m_state.disc(model::DiscPresence::Present);
    m_state.playState(model::PlayState::Loading);
}

void Drive::discIsOut() {
    if (isInMachine() && !m_leaving.active()) {
        logWarning("the disc has left the drive\n");
        leave();
    } else if (m_path.empty() && !m_leaving.active()) {
        m_awaited = false;
        report({"empty", "", ""});
        announceEmpty();
    }
}

void Drive::take(const Inserted& disc) {
    m_resting.reset();
    logInfo("disc inserted: %s\n", disc.path.c_str());
    m_path = disc.path;
    m_byHand = disc.byHand;
    m_absence = model::DiscPresence::None;
    m_gate = std::make_shared<medium::FaultGate>(disc.medium);
    report({"reading", m_path, ""});
    rememberTray();
    library::LoadListener& listener = *this;
    m_load = std::make_unique<library::DiscLoad>(m_loop, listener, m_gate, m_catalogue);
}

void Drive::loadBegun() {
    m_catalogued = 0;
    m_state.disc(model::DiscPresence::Present);
    m_state.playState(model::PlayState::Loading);
}

void Drive::loadScanned(std::shared_ptr<const model::Contents> contents) {
    m_contents = std::move(contents);
    m_state.mixedType(m_contents->mixedMask());
    if (!m_contents->empty()) {
        if (m_contents->dvd) {
            m_state.mediaType(model::MediaType::Dvd);
            return;
        }
        m_resume = std::make_unique<player::DiscResume>(m_memory, m_contents);
        m_state.mediaType(m_contents->mediaType(m_resume->item().kind));
    }
}

void Drive::loadCatalogued(model::MediaKind kind) {
    logInfo("catalogue: %zu files of %s\n", m_contents->of(kind).size(), model::numbersOf(kind).name);
    m_catalogued |= model::numbersOf(kind).mixedBit;
    m_state.catalogue(model::Reading::Complete, RootFolder);
}

void Drive::loadFinished() {
    if (m_contents->empty()) {
        loadFailed("holds nothing that can be played");
        return;
    }
    m_load.reset();
    report({"loaded", m_path, ""});
    m_guard = std::make_unique<library::CatalogueGuard>(
        m_loop, m_catalogue, m_contents, [this] { m_state.catalogue(model::Reading::Complete, RootFolder); });
    if (m_contents->dvd) {
        insertDvd();
        return;
    }
    takeModes(m_resume->modes());
    m_covers.take(m_gate, m_contents);
    // A disc that only has lists of its tracks plays as others do until playback control is asked for.
    if (m_contents->playLists && m_contents->playLists->hasMenu()) {
        playLists(player::ListPlayer::Begin::WhereLeft);
    } else {
        playTracks();
    }
    if (m_source) {
        m_transport->sourceOn();
    }
}

void Drive::playTracks() {
    auto player = std::make_unique<player::FilePlayer>(
        m_loop, m_state, m_modes, m_engine, m_gate, m_contents, *m_resume,
        [this] { reportError("nothing on it can be played"); });
    if (m_contents->playLists) {
        player->setControlSwitch([this] { switchControl(true); });
    }
    player->setItemWatcher(
        [this](model::MediaKind kind, const model::Item& item) { m_covers.show(kind, item); });
    m_transport = std::move(player);
}

void Drive::playLists(player::ListPlayer::Begin begin) {
    m_transport = std::make_unique<player::ListPlayer>(
        m_loop, m_state, m_modes, m_engine, m_gate, m_contents, *m_resume, begin,
        player::ListPlayer::Exits{[this] { switchControl(false); },
                                  [this] { reportError("nothing on it can be played"); }});
}

// Called by the player that goes.
void Drive::switchControl(bool on) {
    m_switch = afterDelay(m_loop, engine::Milliseconds{0}, [this, on] {
        m_transport.reset();
        m_resume->flush();
        m_resume = std::make_unique<player::DiscResume>(m_memory, m_contents);
        if (on) {
            playLists(player::ListPlayer::Begin::FirstList);
        } else {
            playTracks();
        }
        if (m_source) {
            m_transport->sourceOn();
        }
        m_state.tip(on ? model::Tip::PbcOn : model::Tip::PbcOff);
    });
}

void Drive::insertDvd() {
    if (m_contents->dvd->prohibitedRegions & UnitRegionBit) {
        reportError("made for another region of the world");
        m_state.error(model::DeviceError::Region);
        return;
    }
    m_dvdResume = std::make_unique<dvd::DvdResume>(m_memory, m_contents->identity);
    takeModes(m_dvdResume->modes());
    m_engine.rest(); // a DVD opens the sound device itself
    m_transport =
        std::make_unique<dvd::Player>(m_state, m_modes, m_makeDvdEngine(m_loop), *m_dvdResume, m_path,
                                      [this](const std::string& reason) { loadFailed(reason); });
    if (m_source) {
        m_transport->sourceOn();
    }
}

void Drive::takeModes(const std::optional<model::PlayModes>& modes) {
    if (modes) {
        m_modes = *modes;
        m_state.modes(m_modes);
    }
}

void Drive::reportError(const std::string& reason) {
    const std::string text = m_path + ": " + reason;
    logWarning("%s\n", text.c_str());
    report({"error", m_path, text});
}

void Drive::loadFailed(const std::string& reason) {
    m_load.reset();
    reportError(reason);
    m_state.playState(model::PlayState::Error);
}

void Drive::source(bool on) {
    m_source = on;
    rememberTray();
    if (!m_transport) {
        m_state.repeatTypeAndState();
    } else if (on) {
        m_transport->sourceOn();
    } else {
        m_transport->sourceOff();
    }
}

void Drive::playMusic() {
    if (m_transport) {
        m_transport->playMusic();
    }
}

void Drive::browse(int mediaType, int folder) {
    const auto* row = model::kindOfMediaType(mediaType);
    if (m_load && row) {
        const bool complete = (m_catalogued & row->mixedBit) != 0;
        m_state.catalogue(complete ? model::Reading::Complete : model::Reading::Unfinished,
                          std::max(RootFolder, folder));
    }
}

void Drive::eject() {
    m_opening.forget();
    m_next.reset();
    if (m_leaving.active()) {
        rememberTray();
    } else if (!m_path.empty()) {
        leave();
        giveOut();
    } else if (m_mechanism.path && !m_mechanism.path().empty()) {
        // An empty tray comes out, too, and a disc that cannot be read.
        m_mechanism.giveOut([](const Status& out) {
            if (!out) {
                logWarning("%s\n", out.error().c_str());
            }
        });
    }
}

bool Drive::isInMachine() const {
    return m_mechanism.path && !m_path.empty() && m_path == m_mechanism.path();
}

// A drive gives nothing out that somebody still has open.
void Drive::giveOut() {
    if (!isInMachine()) {
        return;
    }
    m_gate.reset();
    m_leaving = afterDelay(m_loop, GiveOutTime, [this] { staysInside("the drive does not answer"); });
    m_mechanism.giveOut([this](const Status& out) {
        if (!m_leaving.active()) {
            return;
        }
        if (out) {
            m_leaving = afterDelay(m_loop, EjectTime, [this] { left(); });
        } else {
            staysInside(out.error());
        }
    });
}

// It plays on where it was stopped.
void Drive::staysInside(const std::string& reason) {
    logWarning("%s\n", reason.c_str());
    m_leaving.reset();
    m_next.reset();
    m_resume.reset();
    m_dvdResume.reset();
    m_contents.reset();
    m_path.clear();
    m_state.forgetDisc();
    m_refusal = reason;
    m_mechanism.takeAgain();
}

void Drive::leave() {
    m_refusal.clear();
    m_state.playState(model::PlayState::Ejecting);
    logInfo("disc ejected: %s\n", m_path.c_str());
    stopReading();
    report({"ejecting", m_path, ""});
    m_leaving = afterDelay(m_loop, EjectTime, [this] { left(); });
    rememberTray();
}

// The disc is out.
void Drive::left() {
    m_resume.reset();
    m_dvdResume.reset();
    m_contents.reset();
    m_gate.reset();
    m_path.clear();
    if (m_next) {
        m_state.disc(m_absence);
    } else {
        announceEmpty();
    }
    m_state.forgetDisc();
    report({"empty", "", ""});
    m_leaving = afterDelay(m_loop, ChangeTime, [this] {
        m_leaving.reset();
        if (const auto next = std::exchange(m_next, std::nullopt)) {
            take(*next);
        } else if (!m_resting.active()) {
            announceEmpty();
        }
    });
}

// An application that shows a disc, its way out or an error takes "no disc" only while it waits for a disc to be
// read, so that it is told "loading" first. It looks at the present value when it gets to it, which is why
// "loading" stays for a while.
void Drive::announceEmpty() {
    if (!m_path.empty()) {
        return;
    }
    m_state.playState(model::PlayState::Loading);
    m_state.disc(m_absence);
    m_resting = afterDelay(m_loop, LeadTime, [this] {
        m_resting.reset();
        m_state.playState(model::PlayState::Stopped);
    });
}

void Drive::stopReading() {
    m_switch.reset();
    m_load.reset();
    m_guard.reset();
    m_transport.reset();
    m_covers.leave();
}

void Drive::loseDrive() {
    m_absence = model::DiscPresence::DriveGone;
    m_awaited = false;
    if (m_path.empty()) {
        report({"empty", "", ""});
        m_state.disc(m_absence);
    } else if (!m_leaving.active()) {
        m_next.reset();
        leave();
    }
}

// With its tray empty: the disc went out when the drive went.
void Drive::driveIsThere() {
    if (m_path.empty()) {
        report({"empty", "", ""});
    }
    if (m_absence == model::DiscPresence::DriveGone) {
        m_absence = model::DiscPresence::None;
        if (m_path.empty()) {
            m_state.disc(m_absence);
        }
    }
}

bool Drive::fault(const std::string& kind) {
    if (kind == "gone") {
        loseDrive();
        return true;
    }
    const auto row = std::find_if(std::begin(faults), std::end(faults),
                                  [&](const FaultRow& each) { return each.name == kind; });
    if (row == std::end(faults)) {
        return false;
    }
    if (row->fault == medium::DriveFault::None && row->error == model::DeviceError::None) {
        driveIsThere();
    }
    if (m_gate) {
        m_gate->set(row->fault);
    }
    if (m_transport) {
        m_transport->driveFault(row->fault);
    }
    m_state.error(row->error);
    return true;
}

} // namespace zm::disc
