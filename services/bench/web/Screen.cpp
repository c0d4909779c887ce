#include "services/bench/web/Screen.h"

#include "services/bench/screen/Compositor.h"
#include "services/bench/screen/PixelCodec.h"
#include "services/bench/web/WebSocketClient.h"

#include <nlohmann/json.hpp>

#include <cstring>

namespace zm::bench::web {

namespace {

constexpr size_t MaxScreenPages = 16;
constexpr uint32_t MaxFramesInFlight = 2;
// A large change while the decoder's picture is on the screen is taken for a moving picture.
constexpr int MovingPicturePixels = 200 * 200;
enum class PictureFormat : uint8_t { Jpeg = 1, Png = 2 };

/** One picture on the wire: sequence number, place, format, padded to 16 bytes, then the encoded bytes. */
std::string framed(uint32_t sequence, Rect area, PictureFormat format, const std::string& bytes) {
    const uint16_t place[4] = {static_cast<uint16_t>(area.x), static_cast<uint16_t>(area.y),
                               static_cast<uint16_t>(area.w), static_cast<uint16_t>(area.h)};
    std::string message(16, '\0');
    std::memcpy(message.data(), &sequence, sizeof sequence);
    std::memcpy(message.data() + 4, place, sizeof place);
    message[12] = static_cast<char>(format);
    return message + bytes;
}

/** A number of the message, limited to the screen; absent or of another type counts as 0. */
std::string coordinate(const nlohmann::json& message, const char* name, int limit) {
    const auto value = message.find(name);
    const bool number = value != message.end() && value->is_number();
    return std::to_string(number ? static_cast<int>(std::clamp(value->get<double>(), 0.0, limit - 1.0)) : 0);
}

} // namespace

std::vector<std::string> pageCommand(const nlohmann::json& message, ScreenSize screen) {
    const auto kind = message.find("t");
    if (kind == message.end() || !kind->is_string()) {
        return {};
    }
    const auto name = kind->get<std::string>();
    const auto x = coordinate(message, "x", screen.width);
    const auto y = coordinate(message, "y", screen.height);
    if (name == "touch") {
        return {name, x, y, "--hold", coordinate(message, "hold", 60000)};
    }
    const bool step = name == "press" || name == "move" || name == "release";
    return step ? std::vector<std::string>{name, x, y} : std::vector<std::string>();
}

struct Screen::Page {
    Page(SoupWebsocketConnection* connection, Rect screen) : client(connection), damage(screen) {}
    WebSocketClient client;
    Rect damage;
    uint32_t sent = 0;
    uint32_t acknowledged = 0;
    // Where the finger is while it is down.
    bool pressed = false;
    std::string x;
    std::string y;
};

Screen::Screen(screen::Compositor& compositor, std::function<void(std::vector<std::string>)> command)
    : m_compositor(compositor), m_command(std::move(command)) {}

Screen::~Screen() = default;

void Screen::add(SoupWebsocketConnection* connection) {
    auto owned = std::make_unique<Page>(connection, m_compositor.size().area());
    if (m_pages.size() >= MaxScreenPages) {
        owned->client.close("too many pages");
        return;
    }
    Page& page = *m_pages.emplace_back(std::move(owned));
    page.client.onMessage = [this, &page](const nlohmann::json& message) {
        if (const auto ack = message.find("ack"); ack != message.end() && ack->is_number_unsigned()) {
            // Only what was sent can be acknowledged, and never backwards.
            page.acknowledged = std::clamp(ack->get<uint32_t>(), page.acknowledged, page.sent);
            serve(page);
            return;
        }
        auto words = pageCommand(message, m_compositor.size());
        if (words.empty()) {
            return;
        }
        if (words[0] != "touch") {
            page.pressed = words[0] != "release";
            page.x = words[1];
            page.y = words[2];
        }
        m_command(std::move(words));
    };
    page.client.onClosed = [this, &page] {
        if (page.pressed) {
            m_command({"release", page.x, page.y});
        }
        m_pages.remove_if([&](const auto& other) { return other.get() == &page; });
    };
    const ScreenSize& size = m_compositor.size();
    page.client.sendText(nlohmann::json{{"width", size.width}, {"height", size.height}}.dump());
    serve(page);
}

void Screen::damaged(Rect area) {
    if (m_pages.empty()) {
        return;
    }
    // Composed at once, so that the compositor goes on reporting changes while every page is still busy.
    m_compositor.compose();
    for (auto& page : m_pages) {
        page->damage = page->damage.united(area);
    }
    for (auto& page : m_pages) {
        serve(*page);
    }
}

void Screen::serve(Page& page) {
    if (page.damage.empty() || page.sent - page.acknowledged >= MaxFramesInFlight) {
        return;
    }
    const Image& frame = m_compositor.compose();
    const Rect area = page.damage.intersected({0, 0, frame.width, frame.height});
    page.damage = {};
    if (area.empty()) {
        return;
    }
    const auto video = m_compositor.videoState();
    const bool moving = video.value("posted", false) && video.value("visible", false) &&
                        !video.value("locked", false) && area.w * area.h >= MovingPicturePixels;
    const screen::PixelView view{frame.pixels.data(), frame.stride, area};
    const auto bytes = moving ? screen::encodeJpeg(view) : screen::encodePng(view);
    if (bytes) {
        page.client.sendBinary(
            framed(++page.sent, area, moving ? PictureFormat::Jpeg : PictureFormat::Png, *bytes));
    }
}

} // namespace zm::bench::web
