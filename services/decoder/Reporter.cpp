#include "services/decoder/Reporter.h"

#include "base/Mutex.h"
#include "base/Socket.h"
#include "sys/slog.h"

#include <nlohmann/json.hpp>

#include <cstdarg>
#include <cstdio>

namespace zm::decoder {

using namespace zm::disc::engine;
using wire::Json;

namespace {

Json listOf(const std::vector<Stream>& streams) {
    Json list = Json::array();
    for (const Stream& each : streams) {
        list.push_back({{"language", each.language}, {"format", each.format}});
    }
    return list;
}

} // namespace

void say(const Json& message) {
    static Mutex mutex;
    // For ever: threads may still have something to say while the process ends.
    static auto* service = new SyncConnection(UniqueFd(wire::ControlFd));
    MutexLock lock(mutex);
    // Without a service there is nobody to tell; the program ends by its own watch of the socket.
    static_cast<void>(service->send(wire::textOf(message)));
}

void Reporter::engineStreams(const Streams& streams) {
    say({{"is", "streams"},
         {"item", m_item},
         {"audio", listOf(streams.audio)},
         {"subtitles", listOf(streams.subtitles)}});
}

void Reporter::engineStarted(Milliseconds length) {
    say({{"is", "started"}, {"item", m_item}, {"length", length.count()}});
}

void Reporter::engineMoved(Milliseconds position, Milliseconds length) {
    say({{"is", "moved"}, {"item", m_item}, {"position", position.count()}, {"length", length.count()}});
}

void Reporter::engineEnded() {
    say({{"is", "ended"}, {"item", m_item}});
}

void Reporter::engineFollowed(Milliseconds length) {
    say({{"is", "followed"}, {"item", m_item}, {"number", m_next}, {"length", length.count()}});
}

void Reporter::engineScanned(ScanEdge edge) {
    say({{"is", "scanned"}, {"item", m_item}, {"end", edge == ScanEdge::End ? 1 : 0}});
}

void Reporter::engineFailed(const std::string& reason) {
    say({{"is", "failed"}, {"item", m_item}, {"reason", reason}});
}

} // namespace zm::decoder

// The log's file is out of reach; its lines go through the disc service.
extern "C" int slogf(int, int severity, const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    const int size = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    zm::decoder::say({{"is", "log"}, {"severity", severity}, {"text", text}});
    return size;
}
