#include "services/bench/commands/Processor.h"
#include "services/bench/screen/SeenItems.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace zm::bench::commands {

namespace {

// Sends what a finger does; what it was lifted from may open the lock of the video.
void finger(Call& call, Json message) {
    unit::HeadUnit& unit = call.unit;
    if (message["t"] != "move" && message["t"] != "release") {
        unit.videoLock().fingerDown();
    }
    const auto ended = [&unit, occasion = unit.videoLock().fingerOccasion(),
                        end = endWith(call.run)](Result<Json> reply) {
        if (reply) {
            unit.videoLock().fingerLifted(*reply, occasion);
        }
        end(std::move(reply));
    };
    unit.shell().ask(std::move(message), ended);
}

// What a film shows of it: a finger that leaves the screen is not seen any more.
void show(film::Film& film, const Json& message) {
    const std::string kind = message["t"];
    const auto at = [&](const char* name) { return message[name].get<int>(); };
    if (kind == "touch") {
        film.dragged(at("x"), at("y"), at("x"), at("y"));
    } else if (kind == "drag") {
        film.dragged(at("x1"), at("y1"), at("x2"), at("y2"));
    } else if (kind == "press") {
        film.pressed(at("x"), at("y"));
    } else if (kind == "move") {
        film.moved(at("x"), at("y"));
    } else if (kind == "release") {
        film.released(at("x"), at("y"));
    }
}

// Input belongs to the application in front; a plain page knows the end of a touch only.
bool input(Call& call, Json message, std::optional<std::pair<int, int>> releasedAt) {
    if (!call.arguments.complete()) {
        return false;
    }
    show(call.processor.film(), message);
    if (call.unit.launcher().discInFront()) {
        message["t"] == "key" ? forward(call, std::move(message)) : finger(call, std::move(message));
        return true;
    }
    if (releasedAt) {
        call.unit.launcher().released(releasedAt->first, releasedAt->second);
    }
    call.run->finish();
    return true;
}

// Whether a finger can come down there; ends the command if not. Once down it may leave the screen.
bool onScreen(Call& call, int x, int y) {
    const ScreenSize& size = call.unit.compositor().size();
    if (!call.arguments.complete() || size.area().contains(x, y)) {
        return true;
    }
    const auto nearest = [](int value, int end) { return std::to_string(std::clamp(value, 0, end - 1)); };
    call.run->fail(std::to_string(x) + " " + std::to_string(y) + " is not on the screen, which has " +
                   std::to_string(size.width) + " x " + std::to_string(size.height) +
                   " pixels; the nearest place is " + nearest(x, size.width) + " " + nearest(y, size.height));
    return false;
}

bool key(Call& call) {
    const int code = call.arguments.number("key", ctl::hardKeys());
    if (call.arguments.complete() && !ctl::findNumber(ctl::hardKeys(), code)) {
        // No failure: what becomes of a code that it does not know is the application's business.
        call.run->out(ctl::unknownNumber("key", code, ctl::hardKeys()) +
                      "; the application got it all the same\n");
    }
    return input(call, {{"t", "key"}, {"code", code}}, std::nullopt);
}

bool touch(Call& call) {
    const int hold = call.arguments.number("--hold", 0).value_or(0);
    const int x = call.arguments.number();
    const int y = call.arguments.number();
    return !onScreen(call, x, y) ||
           input(call, {{"t", "touch"}, {"x", x}, {"y", y}, {"hold", hold}}, std::pair(x, y));
}

bool tap(Call& call) {
    const int hold = call.arguments.number("--hold", 0).value_or(0);
    const std::string name = call.arguments.word();
    if (name.empty()) {
        call.arguments.refuse("an empty text is on every item");
    }
    if (!call.arguments.complete()) {
        return false;
    }
    if (!call.unit.launcher().discInFront()) {
        call.run->fail("another application is in front (" + call.unit.launcher().front() +
                       "); \"zmctl app resume\" brings the disc player back");
        return true;
    }
    call.unit.shell().ask({{"t", "seen"}}, [call, name, hold](const Result<Json>& reply) mutable {
        const auto found = reply ? screen::findSeen(screen::seenItems(*reply), name)
                                 : Result<screen::SeenItem>(Error{reply.error()});
        if (!found) {
            call.run->fail(found.error());
            return;
        }
        const Json touch = {{"t", "touch"}, {"x", found->x}, {"y", found->y}, {"hold", hold}};
        show(call.processor.film(), touch);
        finger(call, touch);
    });
    return true;
}

bool drag(Call& call) {
    const int x1 = call.arguments.number();
    const int y1 = call.arguments.number();
    const int x2 = call.arguments.number();
    const int y2 = call.arguments.number();
    return !onScreen(call, x1, y1) ||
           input(call, {{"t", "drag"}, {"x1", x1}, {"y1", y1}, {"x2", x2}, {"y2", y2}}, std::nullopt);
}

bool step(Call& call) {
    const std::string kind = call.run->words()[0];
    const int x = call.arguments.number();
    const int y = call.arguments.number();
    return (kind == "press" && !onScreen(call, x, y)) ||
           input(call, {{"t", kind}, {"x", x}, {"y", y}},
                 kind == "release" ? std::optional(std::pair(x, y)) : std::nullopt);
}

bool click(Call& call) {
    const std::string view = call.arguments.word();
    const int window = call.arguments.number();
    const int control = call.arguments.number();
    const int state = call.arguments.number();
    if (!call.arguments.complete() || (view != "main" && view != "osd")) {
        return false;
    }
    Json message = {
        {"t", "click"}, {"view", view}, {"window", window}, {"control", control}, {"state", state}};
    // Nobody can touch what lies behind another application.
    call.unit.launcher().discInFront() ? finger(call, std::move(message)) : forward(call, std::move(message));
    return true;
}

constexpr std::array InputCommands = {
    Row{"key", key},    Row{"touch", touch}, Row{"tap", tap},      Row{"drag", drag},
    Row{"press", step}, Row{"move", step},   Row{"release", step}, Row{"click", click},
};

} // namespace

std::span<const Row> inputRows() {
    return InputCommands;
}

} // namespace zm::bench::commands
