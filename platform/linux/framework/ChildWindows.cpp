#include "platform/linux/framework/ChildWindows.h"

#include <utility>

namespace zm {

void ChildWindows::post(const std::string& name) {
    Child& child = m_children[name];
    if (!child.handle) {
        child.handle = std::make_unique<_screen_window>();
    }
    *child.handle = {};
    child.posted = true;
}

void ChildWindows::withdraw(const std::string& name) {
    if (const auto found = m_children.find(name); found != m_children.end()) {
        found->second.posted = false;
    }
}

screen_window_t ChildWindows::find(const std::string& name) const {
    const auto found = m_children.find(name);
    return found != m_children.end() && found->second.posted ? found->second.handle.get() : nullptr;
}

Status ChildWindows::flush(ScreenClient& screen, const ScreenMap& map) {
    for (auto& [name, child] : m_children) {
        const WindowProps pending = std::exchange(child.handle->pending, {});
        if (child.posted && !pending.empty()) {
            if (auto sent = screen.setProps(name, map.toScreen(pending)); !sent) {
                return sent;
            }
        }
    }
    return ok();
}

} // namespace zm
