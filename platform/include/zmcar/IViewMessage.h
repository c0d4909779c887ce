#pragma once

struct APP_MSG_S;

namespace Oro::ZMCAR {

/** Takes view messages. */
class IViewMessage {
public:
    virtual ~IViewMessage() = default;
    /** Queues a copy of `message` for OnUserMessage of the main view,
     * then of each joined view. Any thread. */
    virtual bool SendViewMessage(const APP_MSG_S& message) = 0;
};

} // namespace Oro::ZMCAR
