#pragma once

#include "platform/linux/framework/Application.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace zm {

/** Carries out one message of the head unit. On the receiving thread. */
void handleShellMessage(Application& application, const nlohmann::json& message);

/** Answers one message, if it asked for an answer. Any thread. */
class Reply {
public:
    Reply(Application& application, std::optional<int64_t> id) : m_application(application), m_id(id) {}
    void done() const;
    void done(nlohmann::json data) const;
    void failed(const std::string& why) const;

private:
    Application& m_application;
    std::optional<int64_t> m_id;
};

/** How one kind of message is carried out: on the receiving thread, without waiting. Bad members throw json
 * errors. */
struct ShellCommand {
    const char* kind;
    void (*handle)(Application& application, const nlohmann::json& message, const Reply& reply);
};

/** Posts `task` to the event thread, draws what it changed and then answers with what it returned. */
void replyFromEvent(Application& application, const Reply& reply, std::function<nlohmann::json()> task);

/** Launcher, vehicle, language and child windows. */
std::span<const ShellCommand> vehicleCommands();
/** Keys and touches. */
std::span<const ShellCommand> inputCommands();
/** For tests: contents, settling, the clock, the held worker. */
std::span<const ShellCommand> inspectionCommands();

} // namespace zm
