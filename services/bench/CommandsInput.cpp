#include "services/bench/CommandProcessor.h"

#include <array>

namespace zm {

namespace {

// Input belongs to the application in front; a plain page knows the end of a touch only.
bool input(CommandCall& call, Json message, std::optional<std::pair<int, int>> releasedAt) {
    if (!call.arguments.complete()) {
        return false;
    }
    if (call.unit.launcher().discInFront()) {
        forward(call, std::move(message));
        return true;
    }
    if (releasedAt) {
        call.unit.launcher().released(releasedAt->first, releasedAt->second);
    }
    call.run->finish();
    return true;
}

bool key(CommandCall& call) {
    const int code = call.arguments.number();
    return input(call, {{"t", "key"}, {"code", code}}, std::nullopt);
}

bool touch(CommandCall& call) {
    const int hold = call.arguments.number("--hold", 0).value_or(0);
    const int x = call.arguments.number();
    const int y = call.arguments.number();
    return input(call, {{"t", "touch"}, {"x", x}, {"y", y}, {"hold", hold}}, std::pair(x, y));
}

bool drag(CommandCall& call) {
    const int x1 = call.arguments.number();
    const int y1 = call.arguments.number();
    const int x2 = call.arguments.number();
    const int y2 = call.arguments.number();
    return input(call, {{"t", "drag"}, {"x1", x1}, {"y1", y1}, {"x2", x2}, {"y2", y2}}, std::nullopt);
}

bool step(CommandCall& call) {
    const std::string kind = call.run->words()[0];
    const int x = call.arguments.number();
    const int y = call.arguments.number();
    return input(call, {{"t", kind}, {"x", x}, {"y", y}},
                 kind == "release" ? std::optional(std::pair(x, y)) : std::nullopt);
}

bool click(CommandCall& call) {
    const std::string view = call.arguments.word();
    const int window = call.arguments.number();
    const int control = call.arguments.number();
    const int state = call.arguments.number();
    if (!call.arguments.complete() || (view != "main" && view != "osd")) {
        return false;
    }
    forward(call,
            {{"t", "click"}, {"view", view}, {"window", window}, {"control", control}, {"state", state}});
    return true;
}

constexpr std::array Rows = {
    CommandRow{"key", key},     CommandRow{"touch", touch}, CommandRow{"drag", drag},
    CommandRow{"press", step},  CommandRow{"move", step},   CommandRow{"release", step},
    CommandRow{"click", click},
};

} // namespace

std::span<const CommandRow> inputCommandRows() {
    return Rows;
}

} // namespace zm
