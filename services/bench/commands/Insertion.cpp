#include "services/bench/commands/Insertion.h"

#include "base/JsonMessage.h"
#include "services/bench/unit/DiscDrive.h"
#include "services/bench/unit/PpsText.h"

#include <nlohmann/json.hpp>

namespace zm::bench::commands {

namespace {

constexpr std::chrono::seconds TakeTime(5);
constexpr std::chrono::seconds PlayTime(60);

constexpr const char* StatusObject = "zelmar/disc/status";
constexpr const char* Playing = "2"; // "discstate"

// Calls `handle` with each new value of the attribute `name`.
template <class Handle>
void forEachValue(const std::string& text, const char* name, Handle handle) {
    for (const auto& delta : unit::ppsDeltas(text)) {
        for (const auto& line : delta) {
            std::string value;
            if (unit::ppsValue(line, name, value)) {
                handle(value);
            }
        }
    }
}

} // namespace

void Insertion::start(Call& call, const std::string& path, Inserted until) {
    auto& loop = call.unit.loop();
    auto self = std::make_shared<Insertion>(call, path, until);
    if (const auto followed = self->follow(loop, call.unit.ppsSocket()); !followed) {
        call.run->fail(followed.error());
        return;
    }
    self->m_asked = true;
    self->m_limit = afterDelay(loop, until == Inserted::Taken ? TakeTime : PlayTime,
                               [raw = self.get()] { raw->timeIsUp(); });
    // The command may end from inside its own watch: that goes in a turn of its own.
    call.run->onEnd = [self, &loop] {
        self->m_asked = false;
        loop.post([self] {
            self->m_drive.reset();
            self->m_status.reset();
            self->m_limit.reset();
        });
    };
    if (const auto asked = call.unit.drive().insert(path); !asked) {
        call.run->fail(asked.error());
    }
}

Insertion::Insertion(Call& call, std::string path, Inserted until)
    : m_run(call.run), m_unit(call.unit), m_path(std::move(path)), m_until(until) {}

Status Insertion::follow(EventLoop& loop, const std::string& ppsSocket) {
    auto status = unit::PpsWatch::open(loop, ppsSocket, StatusObject,
                                       [this](const std::string& text) { playStateChanged(text); });
    if (!status) {
        return Error{status.error()};
    }
    m_status = std::move(*status);
    auto drive = unit::PpsWatch::open(loop, ppsSocket, unit::DiscDrive::Object,
                                      [this](const std::string& text) { driveChanged(text); });
    if (!drive) {
        return Error{drive.error()};
    }
    m_drive = std::move(*drive);
    m_drive->drain();
    return ok();
}

void Insertion::driveChanged(const std::string& text) {
    forEachValue(text, "tray", [this](const std::string& tray) { trayChanged(tray); });
    forEachValue(text, "drivestate", [this](const std::string& state) {
        if (m_asked) {
            stateChanged(state);
        }
    });
}

void Insertion::trayChanged(const std::string& tray) {
    const Json json = jsonObject(tray);
    m_source = json.value("source", false);
    if (m_asked && m_until == Inserted::Taken && json.value("path", "") == m_path) {
        m_run->finish();
    }
    lookWhetherDone();
}

void Insertion::stateChanged(const std::string& state) {
    const Json json = jsonObject(state);
    const std::string name = json.value("state", "");
    if (m_read && (name == "ejecting" || name == "empty")) {
        m_run->fail(m_path + ": it was taken out again");
    }
    if (json.value("path", "") != m_path) {
        return;
    }
    if (name == "error") {
        m_run->fail(json.value("text", m_path)); // it names the disc
    }
    m_read = m_read || name == "reading";
    if (m_read && name == "loaded") {
        // What was written before is known here: it is not the state of the disc before this one.
        m_status->drain();
        m_loaded = true;
        lookWhetherDone();
    }
}

void Insertion::playStateChanged(const std::string& text) {
    forEachValue(text, "discstate", [this](const std::string& state) { m_playState = state; });
    lookWhetherDone();
}

void Insertion::lookWhetherDone() {
    if (m_loaded && (m_playState == Playing || (!m_source && !m_unit.discComesToFront()))) {
        m_run->finish();
    }
}

void Insertion::timeIsUp() {
    m_run->fail(m_loaded ? m_path + ": has been read, but does not play within a minute"
                : m_until == Inserted::Taken
                    ? "the drive does not answer; \"zmctl ps\" says whether the disc service runs"
                    : "the drive has not taken the disc within a minute");
}

} // namespace zm::bench::commands
