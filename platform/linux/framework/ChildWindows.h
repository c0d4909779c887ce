#pragma once

#include "platform/linux/framework/ScreenMap.h"
#include "platform/linux/screen/WindowHandle.h"

#include <map>
#include <memory>
#include <string>

namespace zm {

/**
 * The child windows that others posted into the application's window group. A handle that was given out stays
 * valid until `clear`, also when its child is withdrawn meanwhile. Event thread only.
 */
class ChildWindows {
public:
    void post(const std::string& name);
    void withdraw(const std::string& name);
    void clear() { m_children.clear(); }

    /** Null if no such child is posted. */
    screen_window_t find(const std::string& name) const;
    /** Sends what was set since the last flush. */
    Status flush(ScreenClient& screen, const ScreenMap& map);

private:
    struct Child {
        std::unique_ptr<_screen_window> handle;
        bool posted = false;
    };
    std::map<std::string, Child> m_children;
};

} // namespace zm
