#include "platform/linux/framework/ShellCommands.h"
#include "platform/linux/framework/ViewImpl.h"

#include <nlohmann/json.hpp>

namespace zm {

using json = nlohmann::json;

namespace {

// Answers once what was posted before has been handled.
void notify(Application& application, const Reply& reply, Monitor monitor, AppMessage kind, int first,
            int second) {
    if (application.headUnit().monitored(monitor)) {
        application.post(kind, first, second);
    }
    replyFromEvent(application, reply, [] { return json::object(); });
}

void appStatus(Application& application, const json& message, const Reply& reply) {
    const int status = message.at("status").get<int>();
    application.events().post([&application] { application.touch().letGo(); });
    notify(application, reply, Monitor::Launcher, AppMessage::AppStatus, status, 0);
}

void appData(Application& application, const json& message, const Reply& reply) {
    const int index = application.headUnit().addAppData(message.at("text").get<std::string>());
    notify(application, reply, Monitor::Launcher, AppMessage::Data, index, 0);
}

void device(Application& application, const json& message, const Reply& reply) {
    const int id = message.at("device").get<int>();
    const json& value = message.at("value");
    const std::optional<int> read = value.is_null() ? std::nullopt : std::optional(value.get<int>());
    application.headUnit().setDevice(id, read);
    // Before anything that the application does about it.
    application.events().post([&application] { application.followMotion(); }, Counted::No);
    if (message.value("notify", false)) {
        notify(application, reply, Monitor::Device, AppMessage::Device, id, read.value_or(0));
    } else {
        reply.done();
    }
}

void time(Application& application, const json& message, const Reply& reply) {
    application.headUnit().setTime(message.at("hour").get<int>(), message.at("minute").get<int>(),
                                   message.at("format").get<int>());
    notify(application, reply, Monitor::Clock, AppMessage::Time, 0, 0);
}

void language(Application& application, const json& message, const Reply& reply) {
    replyFromEvent(application, reply, [&application, code = message.at("code").get<std::string>()] {
        application.setLanguage(code);
        return json::object();
    });
}

void theme(Application& application, const json& message, const Reply& reply) {
    replyFromEvent(application, reply, [&application, name = message.at("name").get<std::string>()] {
        application.setTheme(name);
        return json::object();
    });
}

void motion(Application& application, const json& message, const Reply& reply) {
    replyFromEvent(application, reply, [&application, wish = message.at("wish").get<std::string>()] {
        application.setMotion(wish);
        return json::object();
    });
}

void childPost(Application& application, const json& message, const Reply& reply) {
    replyFromEvent(application, reply, [&application, name = message.at("name").get<std::string>()] {
        application.children().post(name);
        application.childPosted(name);
        return json::object();
    });
}

void childGone(Application& application, const json& message, const Reply& reply) {
    replyFromEvent(application, reply, [&application, name = message.at("name").get<std::string>()] {
        application.children().withdraw(name);
        return json::object();
    });
}

constexpr ShellCommand VehicleInputs[] = {
    {"app", appStatus}, {"appdata", appData},     {"device", device},
    {"time", time},     {"language", language},   {"theme", theme},
    {"motion", motion}, {"childpost", childPost}, {"childgone", childGone},
};

} // namespace

std::span<const ShellCommand> vehicleCommands() {
    return VehicleInputs;
}

} // namespace zm
