#include "platform/linux/framework/ShellCommands.h"
#include "platform/linux/framework/ViewImpl.h"

#include <nlohmann/json.hpp>

namespace zm {

using json = nlohmann::json;

namespace {

Point point(const json& message, const char* x, const char* y) {
    return {message.at(x).get<int>(), message.at(y).get<int>()};
}

// What the finger was lifted from, for the head unit.
json liftedFrom(TouchInput& input) {
    json data = json::object();
    if (const auto item = input.takeLifted()) {
        data["released"] = {{"view", item->view}, {"window", item->page}, {"control", item->control}};
    }
    return data;
}

// Carries out a step of a finger and answers.
void touchEvent(Application& application, const Reply& reply, std::function<void(TouchInput&)> step) {
    replyFromEvent(application, reply, [&application, step = std::move(step)] {
        step(application.touch());
        return liftedFrom(application.touch());
    });
}

void key(Application& application, const json& message, const Reply& reply) {
    replyFromEvent(application, reply, [&application, code = message.at("code").get<int>()]() -> json {
        return {{"handled", application.mainView()->view.OnKeyboard(code)}};
    });
}

void touch(Application& application, const json& message, const Reply& reply) {
    const Point at = point(message, "x", "y");
    touchEvent(application, reply,
               [at, hold = message.value("hold", 0)](TouchInput& input) { input.touch(at, hold); });
}

void drag(Application& application, const json& message, const Reply& reply) {
    const Point from = point(message, "x1", "y1");
    const Point to = point(message, "x2", "y2");
    touchEvent(application, reply, [from, to](TouchInput& input) { input.drag(from, to); });
}

template <void (TouchInput::*Step)(Point)>
void singleStep(Application& application, const json& message, const Reply& reply) {
    touchEvent(application, reply, [at = point(message, "x", "y")](TouchInput& input) { (input.*Step)(at); });
}

// Straight to the view, whatever it shows.
void click(Application& application, const json& message, const Reply& reply) {
    const auto view = message.at("view").get<std::string>();
    const int window = message.at("window").get<int>();
    const int control = message.at("control").get<int>();
    const int state = message.at("state").get<int>();
    replyFromEvent(application, reply, [=, &application] {
        if (ViewImpl* target = application.viewByRole(view)) {
            target->itemClicked(window, control, state);
        }
        return liftedFrom(application.touch());
    });
}

constexpr ShellCommand Inputs[] = {
    {"key", key},
    {"touch", touch},
    {"drag", drag},
    {"press", singleStep<&TouchInput::press>},
    {"move", singleStep<&TouchInput::move>},
    {"release", singleStep<&TouchInput::release>},
    {"click", click},
};

} // namespace

std::span<const ShellCommand> inputCommands() {
    return Inputs;
}

} // namespace zm
