#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"
#include "base/UniqueFd.h"

#include <functional>
#include <string>
#include <vector>

namespace zm {

/**
 * Tells when a resource file is written or put in place, once for what happens together. Everything belongs
 * to the loop's thread.
 */
class ResourceWatch {
public:
    ResourceWatch(EventLoop& loop, std::function<void()> changed);

    /** Watches the folders of those files, too, for every file that is a resource by its name. */
    Status watch(const std::vector<std::string>& files);

private:
    /** Takes what has happened; whether a resource file was among it. */
    bool take();

    UniqueFd m_notices;
    SourceHandle m_source;
};

} // namespace zm
