#include "zmcar/ViewUI.h"

#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/ViewImpl.h"
#include "zmcar/ViewOsd.h"

namespace Oro::ZMCAR {

ViewUI::ViewUI() = default;

ViewUI::~ViewUI() = default;

CUIWndMng* ViewUI::GetUIWndMgrWrapper() {
    return m_pImpl->scene ? &m_pImpl->scene->wndMng() : nullptr;
}

bool ViewUI::ShowWnd(int wndId, bool show, int flag) {
    ViewImpl& view = *m_pImpl;
    return view.pages.contains(wndId) &&
           zm::Application::instance().perform(view, [&view, wndId, show, flag] {
               const int replaced = show ? 0 : view.scene->replacedBy(wndId);
               view.showWindow(wndId, show, flag);
               if (replaced) {
                   view.showWindow(replaced, true, flag);
               }
           });
}

bool ViewUI::EnableAlphaBlending(bool enable) {
    ViewImpl& view = *m_pImpl;
    return view.scene && zm::Application::instance().perform(view, [&view, enable] {
        view.setAlpha(enable);
        zm::Application::instance().noteScreen(view.flushProps());
    });
}

ViewOsd::ViewOsd() = default;

ViewOsd::~ViewOsd() = default;

bool ViewOsd::Init(std::string viewName, std::string resourcePath, std::string fontPath, int width,
                   int height) {
    ViewImpl& view = *m_pImpl;
    view.name = viewName;
    auto loaded = zm::Application::instance().mainView()
                      ? view.load(resourcePath, fontPath, width, height)
                      : zm::Status(zm::Error{"view " + viewName + ": there is no main view"});
    if (!loaded) {
        zm::reportFailure(loaded.error());
    }
    return static_cast<bool>(loaded);
}

} // namespace Oro::ZMCAR
