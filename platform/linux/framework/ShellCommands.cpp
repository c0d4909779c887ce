#include "platform/linux/framework/ShellCommands.h"

#include "platform/linux/framework/FrameworkLog.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace zm {

using json = nlohmann::json;

void Reply::done() const {
    done(json::object());
}

void Reply::done(json data) const {
    if (m_id) {
        m_application.send({{"t", "reply"}, {"id", *m_id}, {"ok", true}, {"data", std::move(data)}});
    }
}

void Reply::failed(const std::string& why) const {
    if (m_id) {
        m_application.send({{"t", "reply"}, {"id", *m_id}, {"ok", false}, {"error", why}});
    } else {
        reportFailure(why);
    }
}

void replyFromEvent(Application& application, const Reply& reply, std::function<json()> task) {
    application.events().post([&application, reply, task = std::move(task)] {
        json data = task();
        application.flushFrames();
        reply.done(std::move(data));
    });
}

void handleShellMessage(Application& application, const json& message) {
    const auto id = message.find("id");
    const bool asks = id != message.end() && id->is_number_integer();
    const Reply reply(application, asks ? std::optional(id->get<int64_t>()) : std::nullopt);
    const std::string kind = message.at("t");
    for (const auto& commands : {vehicleCommands(), inputCommands(), inspectionCommands()}) {
        const auto command = std::find_if(commands.begin(), commands.end(),
                                          [&](const ShellCommand& row) { return kind == row.kind; });
        if (command != commands.end()) {
            try {
                command->handle(application, message, reply);
            } catch (const json::exception& error) {
                reply.failed(kind + ": " + error.what());
            }
            return;
        }
    }
    if (asks) {
        reply.failed(kind + ": unknown");
    }
}

} // namespace zm
