#include "services/bench/mpris/Mpris.h"

#include "services/bench/unit/PpsText.h"

#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace zm::bench::mpris {

namespace {

constexpr const char* BusName = "org.mpris.MediaPlayer2.platen";
constexpr const char* ObjectPath = "/org/mpris/MediaPlayer2";
constexpr const char* PlayerInterface = "org.mpris.MediaPlayer2.Player";
constexpr int RequestTime = 2000;

// Of the disc service's commands, those for which no key of the steering wheel stands.
constexpr int StopCommand = 22;
constexpr int SeekCommand = 185;
constexpr int RepeatCommand = 9;
constexpr int ShuffleCommand = 7;
constexpr int ShuffleOn = 1;
constexpr int ShuffleOff = 4;

constexpr const char* Interfaces = R"(<node>
<interface name="org.mpris.MediaPlayer2">
 <method name="Raise"/><method name="Quit"/>
 <property name="CanQuit" type="b" access="read"/><property name="CanRaise" type="b" access="read"/>
 <property name="HasTrackList" type="b" access="read"/><property name="Identity" type="s" access="read"/>
 <property name="DesktopEntry" type="s" access="read"/>
 <property name="SupportedUriSchemes" type="as" access="read"/>
 <property name="SupportedMimeTypes" type="as" access="read"/>
</interface>
<interface name="org.mpris.MediaPlayer2.Player">
 <method name="Next"/><method name="Previous"/><method name="Pause"/><method name="PlayPause"/>
 <method name="Stop"/><method name="Play"/>
 <method name="Seek"><arg name="Offset" type="x" direction="in"/></method>
 <method name="SetPosition"><arg name="TrackId" type="o" direction="in"/>
  <arg name="Position" type="x" direction="in"/></method>
 <method name="OpenUri"><arg name="Uri" type="s" direction="in"/></method>
 <signal name="Seeked"><arg name="Position" type="x"/></signal>
 <property name="PlaybackStatus" type="s" access="read"/><property name="LoopStatus" type="s" access="readwrite"/>
 <property name="Rate" type="d" access="readwrite"/><property name="Shuffle" type="b" access="readwrite"/>
 <property name="Metadata" type="a{sv}" access="read"/><property name="Volume" type="d" access="readwrite"/>
 <property name="Position" type="x" access="read"/><property name="MinimumRate" type="d" access="read"/>
 <property name="MaximumRate" type="d" access="read"/><property name="CanGoNext" type="b" access="read"/>
 <property name="CanGoPrevious" type="b" access="read"/><property name="CanPlay" type="b" access="read"/>
 <property name="CanPause" type="b" access="read"/><property name="CanSeek" type="b" access="read"/>
 <property name="CanControl" type="b" access="read"/>
</interface>
</node>)";

// Of the player's properties, those whose change is told.
constexpr std::array Told = {"PlaybackStatus", "LoopStatus",    "Shuffle", "Metadata", "Volume",
                             "CanGoNext",      "CanGoPrevious", "CanPlay", "CanPause", "CanSeek"};

// Nothing is started for want of a bus.
bool hasBus() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    return std::getenv("DBUS_SESSION_BUS_ADDRESS") ||
           (runtime && std::filesystem::exists(std::string(runtime) + "/bus"));
}

std::string textOf(GVariant* value) {
    g_variant_ref_sink(value);
    char* text = g_variant_print(value, TRUE);
    std::string result(text);
    g_free(text);
    g_variant_unref(value);
    return result;
}

void onCall(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant* arguments,
            GDBusMethodInvocation* invocation, gpointer self) {
    static_cast<Mpris*>(self)->call(method, arguments);
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

GVariant* onGet(GDBusConnection*, const char*, const char*, const char*, const char* name, GError**,
                gpointer self) {
    return static_cast<Mpris*>(self)->property(name);
}

gboolean onSet(GDBusConnection*, const char*, const char*, const char*, const char* name, GVariant* value,
               GError** error, gpointer self) {
    if (static_cast<Mpris*>(self)->setProperty(name, value)) {
        return TRUE;
    }
    g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS, "%s cannot be set to that", name);
    return FALSE;
}

} // namespace

Mpris::Mpris(EventLoop& loop, Unit unit) : m_loop(loop), m_unit(std::move(unit)) {}

Mpris::~Mpris() {
    for (const unsigned each : m_objects) {
        g_dbus_connection_unregister_object(m_bus, each);
    }
    if (m_bus) {
        g_dbus_connection_flush_sync(m_bus, nullptr, nullptr);
        g_object_unref(m_bus);
    }
}

Result<std::string> Mpris::start() {
    if (!hasBus()) {
        return std::string("no session bus: the desktop's controls do not reach the player");
    }
    g_main_context_push_thread_default(m_loop.context());
    GError* error = nullptr;
    m_bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    std::string said;
    if (m_bus) {
        g_dbus_connection_set_exit_on_close(m_bus, FALSE);
        own();
    } else {
        said = std::string("the session bus does not answer: ") + error->message;
        g_error_free(error);
    }
    g_main_context_pop_thread_default(m_loop.context());
    for (const char* object : {"zelmar/disc/status", "zelmar/disc/playing", "zelmar/disc/cover"}) {
        if (auto watched = m_bus ? watch(object) : ok(); !watched) {
            return watched.failure();
        }
    }
    return said;
}

void Mpris::own() {
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(Interfaces, nullptr);
    static constexpr GDBusInterfaceVTable table = {onCall, onGet, onSet, {}};
    for (GDBusInterfaceInfo** each = node->interfaces; *each; ++each) {
        m_objects.push_back(
            g_dbus_connection_register_object(m_bus, ObjectPath, *each, &table, this, nullptr, nullptr));
    }
    g_dbus_node_info_unref(node);
    constexpr guint32 DoNotQueue = 4;
    constexpr guint32 Owner = 1;
    for (const std::string& name :
         {std::string(BusName), std::string(BusName) + ".instance" + std::to_string(::getpid())}) {
        GVariant* answer = g_dbus_connection_call_sync(
            m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", name.c_str(), DoNotQueue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE,
            RequestTime, nullptr, nullptr);
        guint32 result = 0;
        if (answer) {
            g_variant_get(answer, "(u)", &result);
            g_variant_unref(answer);
        }
        if (result == Owner) {
            return;
        }
    }
}

Status Mpris::watch(const std::string& object) {
    auto opened = unit::PpsWatch::open(m_loop, m_unit.ppsSocket, object, [this](const std::string& text) {
        bool known = false;
        for (const auto& delta : unit::ppsDeltas(text)) {
            for (const auto& line : delta) {
                known = m_state.take(line) || known;
            }
        }
        if (known) {
            tell();
        }
    });
    if (!opened) {
        return opened.failure();
    }
    m_watches.push_back(std::move(*opened));
    return ok();
}

void Mpris::volumeChanged() {
    if (m_bus) {
        tell();
    }
}

// All that has changed, in one signal.
void Mpris::tell() {
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE("a{sv}"));
    bool any = false;
    std::vector<std::pair<std::string, std::string>> now;
    for (const char* name : Told) {
        now.emplace_back(name, textOf(property(name)));
        if (std::find(m_told.begin(), m_told.end(), now.back()) == m_told.end()) {
            g_variant_builder_add(&changed, "{sv}", name, property(name));
            any = true;
        }
    }
    m_told = std::move(now);
    GVariant* list = g_variant_ref_sink(g_variant_builder_end(&changed));
    if (any) {
        g_dbus_connection_emit_signal(m_bus, nullptr, ObjectPath, "org.freedesktop.DBus.Properties",
                                      "PropertiesChanged",
                                      g_variant_new("(s@a{sv}as)", PlayerInterface, list, nullptr), nullptr);
    }
    g_variant_unref(list);
    if (m_state.jumped()) {
        g_dbus_connection_emit_signal(m_bus, nullptr, ObjectPath, PlayerInterface, "Seeked",
                                      g_variant_new("(x)", m_state.position()), nullptr);
    }
}

// As the application asks, which for these has no key.
void Mpris::send(int command, int first) {
    m_unit.command({"pps", "put", "zelmar/disc/control",
                    "zmcmd:json:{\"cmd\":" + std::to_string(command) +
                        ",\"param1\":" + std::to_string(first) + ",\"param2\":0}"});
}

void Mpris::seek(int64_t position) {
    if (!m_state.hasTimes()) {
        return;
    }
    if (position > m_state.length()) {
        m_unit.command({"key", "next"});
        return;
    }
    send(SeekCommand, static_cast<int>(std::max<int64_t>(position, 0) / PlayerState::SecondMicroseconds));
}

void Mpris::call(const std::string& method, GVariant* arguments) {
    if (!m_state.hasItem()) {
        return;
    }
    if (method == "Next") {
        m_unit.command({"key", "next"});
    } else if (method == "Previous") {
        m_unit.command({"key", "previous"});
    } else if (method == "Play" || (method == "PlayPause" && !m_state.plays())) {
        m_unit.command({"key", "play"});
    } else if (method == "Pause" || method == "PlayPause") {
        m_unit.command({"key", "pause"});
    } else if (method == "Stop") {
        send(StopCommand, 0);
    } else if (method == "Seek") {
        gint64 offset = 0;
        g_variant_get(arguments, "(x)", &offset);
        // Farther than any item is long, it must not turn over.
        constexpr gint64 Farthest = gint64{1} << 60;
        seek(m_state.position() + std::clamp(offset, -Farthest, Farthest));
    } else if (method == "SetPosition") {
        const char* track = nullptr;
        gint64 position = 0;
        g_variant_get(arguments, "(&ox)", &track, &position);
        // Of another item than is meant, or outside of it, it would be wrong.
        if (m_state.track() == track && position >= 0 && position <= m_state.length()) {
            seek(position);
        }
    }
}

GVariant* Mpris::metadata() const {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
    if (m_state.hasItem()) {
        const auto add = [&](const char* name, GVariant* value) {
            g_variant_builder_add(&builder, "{sv}", name, value);
        };
        add("mpris:trackid", g_variant_new_object_path(m_state.track().c_str()));
        add("xesam:trackNumber", g_variant_new_int32(m_state.number()));
        if (m_state.hasTimes()) {
            add("mpris:length", g_variant_new_int64(m_state.length()));
        }
        if (!m_state.title().empty()) {
            add("xesam:title", g_variant_new_string(m_state.title().c_str()));
        }
        if (!m_state.artist().empty()) {
            const char* const artists[] = {m_state.artist().c_str()};
            add("xesam:artist", g_variant_new_strv(artists, 1));
        }
        if (!m_state.album().empty()) {
            add("xesam:album", g_variant_new_string(m_state.album().c_str()));
        }
        if (char* address = g_filename_to_uri(m_state.cover().c_str(), nullptr, nullptr)) {
            add("mpris:artUrl", g_variant_new_take_string(address));
        }
    }
    return g_variant_builder_end(&builder);
}

GVariant* Mpris::property(const std::string& name) const {
    const std::string_view can(name);
    if (name == "Identity" || name == "DesktopEntry") {
        return g_variant_new_string(name == "Identity" ? "Platen" : "org.platen.unit");
    }
    if (can.starts_with("Supported")) {
        return g_variant_new_strv(nullptr, 0);
    }
    if (name == "PlaybackStatus" || name == "LoopStatus") {
        return g_variant_new_string(name == "LoopStatus" ? m_state.loop() : m_state.status());
    }
    if (name == "Metadata") {
        return metadata();
    }
    if (name == "Position") {
        return g_variant_new_int64(m_state.position());
    }
    if (name == "Volume") {
        return g_variant_new_double(m_unit.volume() / 100.0);
    }
    if (can.ends_with("Rate")) {
        return g_variant_new_double(1);
    }
    const bool truth = name == "Shuffle"                                                ? m_state.shuffle()
                       : name == "CanControl"                                           ? true
                       : name == "CanSeek"                                              ? m_state.hasTimes()
                       : can == "CanQuit" || can == "CanRaise" || can == "HasTrackList" ? false
                                                                                        : m_state.hasItem();
    return g_variant_new_boolean(truth);
}

bool Mpris::setProperty(const std::string& name, GVariant* value) {
    if (name == "Volume") {
        const double wanted = std::clamp(g_variant_get_double(value), 0.0, 1.0);
        if (std::isnan(wanted)) {
            return false;
        }
        m_unit.command({"volume", std::to_string(std::lround(wanted * 100))});
        return true;
    }
    if (name == "LoopStatus") {
        const std::string wanted = g_variant_get_string(value, nullptr);
        const int mode = wanted == "None" ? 1 : wanted == "Playlist" ? 2 : wanted == "Track" ? 8 : 0;
        if (mode != 0) {
            send(RepeatCommand, mode);
        }
        return mode != 0;
    }
    if (name == "Shuffle") {
        send(ShuffleCommand, g_variant_get_boolean(value) ? ShuffleOn : ShuffleOff);
        return true;
    }
    return name == "Rate" && g_variant_get_double(value) == 1;
}

} // namespace zm::bench::mpris
