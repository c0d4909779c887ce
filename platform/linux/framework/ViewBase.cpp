#include "zmcar/ViewBase.h"

#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/ShellCommands.h"
#include "platform/linux/framework/Signals.h"
#include "platform/linux/framework/ViewImpl.h"
#include "zmcar/ViewUI.h"

#include <atomic>
#include <memory>

namespace Oro::ZMCAR {

namespace {

zm::Application& theApplication() {
    return zm::Application::instance();
}

bool told(const zm::Status& status) {
    if (!status) {
        zm::reportFailure(status.error());
    }
    return static_cast<bool>(status);
}

} // namespace

ViewBase::ViewBase() : m_pImpl(std::make_unique<ViewImpl>(*this, theApplication())) {}

ViewBase::~ViewBase() {
    ViewBase::Close();
}

bool ViewBase::MaskSignals() {
    return told(zm::blockEndSignals());
}

bool ViewBase::Init(std::string rccPath, std::string viewName, std::string resourceFile,
                    std::string windowGroup, std::string fontPath, int width, int height) {
    ViewImpl& view = *m_pImpl;
    zm::Application& application = theApplication();
    if (application.mainView()) {
        return told(zm::Error{"view " + viewName + ": there is a main view already"});
    }
    view.name = view.spec.name = viewName;
    view.windowGroup = windowGroup;
    view.spec.alpha = true; // the video lies below: a page without background lets it through
    const bool good = told(application.open(view, windowGroup)) &&
                      told(view.load(rccPath + resourceFile, fontPath, width, height)) &&
                      told(application.addView(view)) && told(application.serve(zm::handleShellMessage));
    if (!good) {
        application.close();
    }
    return good;
}

bool ViewBase::JoinView(ViewUI* child, std::string name, int order) {
    ViewImpl& view = *m_pImpl;
    if (!child || !view.isMain()) {
        return told(zm::Error{"view " + name + ": joined to no main view"});
    }
    ViewImpl& joined = *child->m_pImpl;
    if (!joined.scene || joined.window || theApplication().joinedView(name)) {
        return told(zm::Error{"view " + name + ": not initialised, or joined before"});
    }
    joined.name = joined.spec.name = name;
    joined.spec.order = order;
    joined.spec.visible = false;
    // Stays true while joining is only queued.
    const auto good = std::make_shared<std::atomic<bool>>(true);
    const bool taken = theApplication().perform(
        view, [&application = theApplication(), &joined, good] { *good = told(application.join(joined)); });
    return taken && *good;
}

bool ViewBase::StartEventLoop() {
    if (!m_pImpl->isMain()) {
        return told(zm::Error{"the event loop belongs to the main view"});
    }
    return told(theApplication().run());
}

bool ViewBase::WaitforSignals() {
    return told(theApplication().waitForEnd());
}

bool ViewBase::Close() {
    zm::Application& application = theApplication();
    if (application.mainView() == m_pImpl.get()) {
        application.close();
    } else {
        application.leave(*m_pImpl);
    }
    return true;
}

bool ViewBase::SendViewMessage(const APP_MSG_S& message) {
    zm::Application& application = theApplication();
    if (application.events().stopped()) {
        return false;
    }
    application.events().post([&application, message] {
        // A copy each: a view may change what it is given, and the list of views.
        for (ViewImpl* view : std::vector(application.views())) {
            APP_MSG_S copy = message;
            view->view.OnUserMessage(&copy);
        }
    });
    return true;
}

ViewUI* ViewBase::GetViewUI(const std::string& name) {
    ViewImpl* view = theApplication().joinedView(name);
    return view ? dynamic_cast<ViewUI*>(&view->view) : nullptr;
}

bool ViewBase::SetVisible(const std::string& name, bool show) {
    if (ViewImpl* view = theApplication().joinedView(name)) {
        view->setVisible(show);
        return true;
    }
    const screen_window_t child = theApplication().children().find(name);
    if (child) {
        child->pending.visible = show;
    }
    return child != nullptr;
}

bool ViewBase::SetZOrder(const std::string& name, int order) {
    if (ViewImpl* view = theApplication().joinedView(name)) {
        view->setOrder(order);
        return true;
    }
    const screen_window_t child = theApplication().children().find(name);
    if (child) {
        child->pending.order = order;
    }
    return child != nullptr;
}

bool ViewBase::FlushContext() {
    zm::Application& application = theApplication();
    if (!application.screen()) {
        return false;
    }
    application.flushFrames(); // first: a window that comes has nothing old in it
    application.flushProps();
    return !application.screen()->broken();
}

std::string ViewBase::GetWinGroupName() {
    return m_pImpl->windowGroup;
}

bool ViewBase::GetPostScreenWin(const std::string& name, screen_window_t& window) {
    const screen_window_t child = theApplication().children().find(name);
    window = child ? child : window;
    return child != nullptr;
}

// What a view does with events that it does not handle.
int ViewBase::OnUserMessage(APP_MSG_S*) {
    return 0;
}
void ViewBase::OnLanguageChange(int) {}
void ViewBase::OnUIStytleChange(int) {}
bool ViewBase::OnKey(int, int, int) {
    return false;
}
bool ViewBase::OnKeyboard(int) {
    return false;
}
void ViewBase::OnClick(CUIWndMng*, long, long, int) {}
void ViewBase::OnComponent(CUIWndMng*, int, int, int) {}
void ViewBase::OnWindowInitMessage(CUIWndMng*, int) {}
void ViewBase::OnScrollViewMessage(CUIWndMng*, int, int, int) {}
void ViewBase::OnListInfoMessage(CUIWndMng*, int, int, _tagList_Info*) {}
bool ViewBase::OnMouseMove(int, int) {
    return false;
}
bool ViewBase::OnLButtonDown(int, int) {
    return false;
}
bool ViewBase::OnLButtonUp(int, int) {
    return false;
}
void ViewBase::OnShow(int, bool, int) {}
void ViewBase::OnClose() {}
void ViewBase::OnSetFocus() {}
void ViewBase::OnKillFocus() {}
bool ViewBase::OnCreateWindow() {
    return true;
}
int ViewBase::OnChildPost(const char*) {
    return 0;
}
void ViewBase::OnAppsMessage(APP_MSG_S*) {}

} // namespace Oro::ZMCAR
