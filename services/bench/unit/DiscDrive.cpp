#include "services/bench/unit/DiscDrive.h"

#include "base/JsonMessage.h"
#include "services/bench/unit/PpsText.h"
#include "services/bench/unit/ShellServer.h"

#include <nlohmann/json.hpp>

namespace zm::bench::unit {

DiscDrive::DiscDrive(EventLoop& loop, std::string ppsSocket) : m_loop(loop), m_socket(std::move(ppsSocket)) {}

Status DiscDrive::start() {
    auto opened = PpsWatch::open(m_loop, m_socket, Object, [this](const std::string& text) {
        for (const auto& delta : ppsDeltas(text)) {
            for (const auto& line : delta) {
                std::string state;
                if (ppsValue(line, "drivestate", state)) {
                    m_state = state;
                    stateChanged();
                }
            }
        }
    });
    if (!opened) {
        return opened.failure();
    }
    m_watch = std::move(*opened);
    auto object = PpsFile::open(m_socket, std::string("/pps/") + Object, PpsWriteOnlyCreate, 0666);
    if (!object) {
        return object.failure();
    }
    m_object = std::make_unique<PpsFile>(std::move(*object));
    return ok();
}

Status DiscDrive::insert(const std::string& path) {
    m_wanted = path;
    return ask(jsonText({{"op", "insert"}, {"path", path}}));
}

Status DiscDrive::eject() {
    m_wanted.clear();
    return ask(jsonText({{"op", "eject"}}));
}

Status DiscDrive::fault(const std::string& kind) {
    m_fault = needsDisc(kind) && m_empty ? NoFault : kind;
    return ask(jsonText({{"op", "fault"}, {"kind", kind}}));
}

Status DiscDrive::ask(const std::string& json) {
    return m_object->write("drive:json:" + json + "\n");
}

namespace {

std::string member(const Json& object, const char* name) {
    const auto found = object.is_object() ? object.find(name) : object.end();
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

} // namespace

void DiscDrive::stateChanged() {
    const Json json = parseJson(m_state);
    const std::string name = member(json, "state");
    m_holdsDisc = name == "reading" || name == "loaded";
    m_empty = name == "empty";
    // A fault ends with the disc, a drive that is gone is back with the next one.
    if (name == "reading" || (m_empty && m_fault != "gone")) {
        forgetFault();
    }
    const bool byHand = json.is_object() && json.value("byHand", false);
    if (byHand && name == "reading" && member(json, "path") != m_taken) {
        m_taken = member(json, "path");
        if (onInserted) {
            onInserted();
        }
    }
    if (m_empty) {
        m_taken.clear();
    }
    if (m_wanted.empty() || member(json, "path") != m_wanted || (name != "reading" && name != "error")) {
        return;
    }
    m_wanted.clear();
    if (m_holdsDisc && onInserted) {
        onInserted();
    }
}

std::string DiscDrive::state() {
    m_watch->drain();
    return m_state;
}

} // namespace zm::bench::unit
