#include "services/bench/DiscDrive.h"

#include "services/bench/PpsText.h"
#include "services/bench/ShellServer.h"

namespace zm {

namespace {

constexpr const char* Object = "zelmar/disc/drive";
constexpr int WriteOnlyCreate = 257;

} // namespace

DiscDrive::DiscDrive(EventLoop& loop, std::string ppsSocket) : m_loop(loop), m_socket(std::move(ppsSocket)) {}

Status DiscDrive::start() {
    auto watch = PpsWatch::open(m_loop, m_socket, Object, [this](const std::string& text) {
        for (const auto& delta : ppsDeltas(text)) {
            for (const auto& line : delta) {
                ppsValue(line, "drivestate", m_state);
            }
        }
    });
    if (!watch) {
        return Error{watch.error()};
    }
    m_watch = std::move(*watch);
    auto object = PpsFile::open(m_socket, std::string("/pps/") + Object, WriteOnlyCreate, 0666);
    if (!object) {
        return Error{object.error()};
    }
    m_object = std::make_unique<PpsFile>(std::move(*object));
    return ok();
}

Status DiscDrive::insert(const std::string& path) {
    return ask(jsonText({{"op", "insert"}, {"path", path}}));
}

Status DiscDrive::eject() {
    return ask(jsonText({{"op", "eject"}}));
}

Status DiscDrive::fault(const std::string& kind) {
    return ask(jsonText({{"op", "fault"}, {"kind", kind}}));
}

Status DiscDrive::ask(const std::string& json) {
    return m_object->write("drive:json:" + json + "\n");
}

std::string DiscDrive::state() {
    m_watch->drain();
    return m_state;
}

} // namespace zm
