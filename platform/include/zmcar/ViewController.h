#pragma once

struct APP_MSG_S;

namespace Oro::ZMCAR {

class IViewMessage;

/** Sends view messages for a controller. */
class ViewController {
public:
    explicit ViewController(IViewMessage* view) : m_pView(view) {}
    virtual ~ViewController() = default;

    /** Hands a copy of `message` to the views; false without a view. Any thread;
     * keeps the order of sending. */
    bool SendViewMessage(const APP_MSG_S& message);

private:
    IViewMessage* m_pView;
};

} // namespace Oro::ZMCAR
