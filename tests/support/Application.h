#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

class DiscView;
class DiscOsdView;
class DiscViewController;

namespace zm::test {

struct ApplicationOptions {
    std::string song = {};   ///< long parameter "song" unless empty
    bool firstResume = true; ///< false: the launcher's first resume is not handed to the view
};

/** The application on threads of this process, started and ended by its own start-up. */
class Application {
public:
    Application();
    /** Ends it if that has not been done. */
    ~Application();

    /** Starts everything up to the shown windows; false if a step failed. */
    bool start(const ApplicationOptions& options = {});
    /** The shut-down sequence; false if a step failed. */
    bool end();

    /** Runs `task` on the view's event thread and waits for it. */
    void onViewThread(std::function<void()> task);
    /** Codes of the view messages that reached the main view, oldest first. */
    std::vector<int> viewMessages() const;

    DiscView& view();
    DiscOsdView& osd();
    DiscViewController& controller();

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace zm::test
