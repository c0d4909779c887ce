#include "zmcar/ViewController.h"

#include "zmcar/IViewMessage.h"

namespace Oro::ZMCAR {

bool ViewController::SendViewMessage(const APP_MSG_S& message) {
    return m_pView && m_pView->SendViewMessage(message);
}

} // namespace Oro::ZMCAR
