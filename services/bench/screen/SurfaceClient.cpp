#include "services/bench/screen/SurfaceClient.h"

#include "base/JsonMessage.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zm::bench::screen {

namespace {

constexpr size_t LargestMessage = 64 * 1024;
constexpr size_t WindowsOfClient = 16;
constexpr size_t RectsOfCommit = 256;
// Far outside any screen, and small enough that sums of coordinates cannot overflow.
constexpr int FarthestPixel = 100000;
// A client that does not read its releases is stuck; they are tiny.
constexpr size_t Backlog = 256 * 1024;
// A connection closed while the client is still sending would lose the reason on its way.
constexpr std::chrono::milliseconds RefusalPause(50);

// The member as a number inside the limits; the nearest limit if it lies outside, `fallback` if it is none.
int integer(const Json& message, const char* name, int fallback, int low = -FarthestPixel,
            int high = FarthestPixel) {
    const auto found = message.find(name);
    if (found == message.end() || !found->is_number()) {
        return fallback;
    }
    return static_cast<int>(std::clamp(found->get<double>(), double(low), double(high)));
}

bool truth(const Json& message, const char* name, bool fallback) {
    const auto found = message.find(name);
    return found != message.end() && found->is_boolean() ? found->get<bool>() : fallback;
}

std::string text(const Json& message, const char* name) {
    const auto found = message.find(name);
    return found != message.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// 0 is none; the numbers from the first child's on are not the client's to give.
int windowNumber(const Json& message) {
    const int number = integer(message, "window", 0, 0, SurfaceScene::FirstChild);
    return number < SurfaceScene::FirstChild ? number : 0;
}

std::vector<Rect> damageRects(const Json& message, const SurfaceSize& size) {
    const Rect whole{0, 0, size.width, size.height};
    const auto found = message.find("damage");
    if (found == message.end() || !found->is_array() || found->size() > RectsOfCommit) {
        return {whole};
    }
    std::vector<Rect> result;
    for (const auto& entry : *found) {
        if (!entry.is_array() || entry.size() != 4) {
            return {whole};
        }
        const auto at = [&](size_t index) { return integer(Json{{"n", entry[index]}}, "n", 0); };
        result.push_back(Rect{at(0), at(1), at(2), at(3)}.intersected(whole));
    }
    return result;
}

} // namespace

struct SurfaceClient::Kind {
    const char* name;
    Status (SurfaceClient::*execute)(const Json&, std::vector<UniqueFd>&);
};

SurfaceClient::SurfaceClient(EventLoop& loop, UniqueFd fd, SurfaceScene& scene, int clientNumber)
    : m_scene(scene), m_number(clientNumber), m_connection(loop, std::move(fd), Backlog), m_loop(loop) {
    m_connection.onMessage = [this](Message message) { received(std::move(message)); };
    m_connection.onClosed = [this] { end(); };
}

SurfaceClient::~SurfaceClient() {
    m_scene.removeClient(m_number);
}

void SurfaceClient::refuse(const std::string& why) {
    m_refused = true;
    m_role = Role::Unknown;
    m_scene.removeClient(m_number);
    onChange();
    m_connection.send(jsonText({{"t", "error"}, {"text", why}}));
    m_end = afterDelay(m_loop, RefusalPause, [this] { end(); });
}

void SurfaceClient::end() {
    // A copy, because the callback destroys this object and with it the member.
    const auto callback = onGone;
    callback();
}

void SurfaceClient::received(Message message) {
    if (m_refused) {
        return;
    }
    if (message.text.size() > LargestMessage) {
        refuse("message too long");
        return;
    }
    const Json json = parseMessage(message.text);
    if (!json.is_object() || text(json, "t").empty()) {
        refuse("a message is a JSON object with the member \"t\"");
        return;
    }
    if (auto done = execute(json, message.fds); !done) {
        refuse(done.error());
        return;
    }
    onChange();
}

Status SurfaceClient::execute(const Json& message, std::vector<UniqueFd>& fds) {
    static constexpr Kind Kinds[] = {
        {"hello", &SurfaceClient::hello},   {"window", &SurfaceClient::window},
        {"commit", &SurfaceClient::commit}, {"props", &SurfaceClient::props},
        {"close", &SurfaceClient::close},   {"sync", &SurfaceClient::sync},
    };
    const std::string name = text(message, "t");
    if (m_role == Role::Unknown && name != "hello") {
        return Error{"the first message has to be \"hello\""};
    }
    const auto kind =
        std::ranges::find_if(Kinds, [&](const Kind& candidate) { return name == candidate.name; });
    return kind == std::end(Kinds) ? ok() : (this->*kind->execute)(message, fds);
}

Status SurfaceClient::hello(const Json& message, std::vector<UniqueFd>&) {
    struct Named {
        const char* name;
        Role role;
    };
    constexpr Named Roles[] = {{"app", Role::Application}, {"video", Role::Decoder}};
    const std::string wanted = text(message, "role");
    for (const auto& named : Roles) {
        if (wanted == named.name && m_role == Role::Unknown) {
            m_role = named.role;
            return ok();
        }
    }
    return Error{"hello: unknown role \"" + wanted + "\" or a second hello"};
}

Status SurfaceClient::window(const Json& message, std::vector<UniqueFd>& fds) {
    const int newNumber = windowNumber(message);
    if (newNumber <= 0 || fds.size() != 1 || m_scene.find(m_number, newNumber) ||
        m_scene.countOf(m_number) >= WindowsOfClient) {
        return Error{"window: needs a new number, one descriptor and a client with fewer windows"};
    }
    const SurfaceSize size{integer(message, "width", 0), integer(message, "height", 0),
                           integer(message, "stride", 0)};
    auto surface = Surface::map(fds.front(), size);
    if (!surface) {
        return surface.failure();
    }
    SurfaceWindow made;
    made.client = m_number;
    made.number = newNumber;
    made.name = text(message, "name");
    made.surface = std::move(*surface);
    made.placement = {{0, 0, size.width, size.height},
                      integer(message, "order", 0),
                      truth(message, "visible", true),
                      truth(message, "alpha", false)};
    made.decoder = m_role == Role::Decoder;
    m_scene.add(std::move(made));
    return ok();
}

Status SurfaceClient::commit(const Json& message, std::vector<UniqueFd>&) {
    auto* target = m_scene.find(m_number, windowNumber(message));
    const int buffer = integer(message, "buffer", -1);
    if (!target || buffer < 0 || buffer >= Surface::Buffers) {
        return Error{"commit: no such window or buffer"};
    }
    const auto sequence = message.find("seq");
    const int64_t seq =
        sequence != message.end() && sequence->is_number_integer() ? sequence->get<int64_t>() : 0;
    const auto replaced = m_scene.commit(*target, buffer, seq, damageRects(message, target->surface.size()));
    if (replaced) {
        m_connection.send(Json{{"t", "release"},
                               {"window", target->number},
                               {"buffer", replaced->first},
                               {"seq", replaced->second}}
                              .dump());
    }
    return ok();
}

Status SurfaceClient::props(const Json& message, std::vector<UniqueFd>&) {
    // A child may be gone already when the application places it: then there is nothing to place.
    SurfacePlacement* current = nullptr;
    if (auto* own = m_scene.find(m_number, windowNumber(message))) {
        current = &own->placement;
    } else if (m_role == Role::Application) {
        const int wanted = integer(message, "window", 0, 0, INT32_MAX);
        auto* child = message.contains("name") ? m_scene.findChild(text(message, "name"))
                                               : m_scene.findChild(static_cast<unsigned>(wanted));
        current = child ? &child->placement : nullptr;
    }
    if (current) {
        SurfacePlacement wanted = *current;
        wanted.rect = {integer(message, "x", wanted.rect.x), integer(message, "y", wanted.rect.y),
                       integer(message, "width", wanted.rect.w, 0),
                       integer(message, "height", wanted.rect.h, 0)};
        wanted.order = integer(message, "order", wanted.order);
        wanted.visible = truth(message, "visible", wanted.visible);
        wanted.alpha = truth(message, "alpha", wanted.alpha);
        m_scene.place(*current, wanted);
    }
    return ok();
}

Status SurfaceClient::close(const Json& message, std::vector<UniqueFd>&) {
    m_scene.remove(m_number, windowNumber(message));
    return ok();
}

Status SurfaceClient::sync(const Json& message, std::vector<UniqueFd>&) {
    const auto id = message.find("id");
    m_connection.send(jsonText({{"t", "synced"}, {"id", id == message.end() ? Json() : *id}}));
    return ok();
}

} // namespace zm::bench::screen
