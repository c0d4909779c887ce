#pragma once

#include "base/EventLoop.h"
#include "platform/linux/pps/PpsFile.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zm::bench::unit {

/** Follows one PPS object and hands each delta to `onText`. On the loop's thread, the service being on
 * another one. */
class PpsWatch {
public:
    using Callback = std::function<void(const std::string& text)>;

    /** `object` without "/pps/"; it is made if there is none. The present state comes first. */
    static Result<std::unique_ptr<PpsWatch>> open(EventLoop& loop, const std::string& socket,
                                                  const std::string& object, Callback onText);
    /** Hands over now what has arrived. Must not be destroyed from inside its own callback. */
    void drain();

private:
    PpsWatch(EventLoop& loop, PpsFile file, Callback onText);
    void arm();

    EventLoop& m_loop;
    PpsFile m_file;
    Callback m_onText;
    SourceHandle m_source;
};

} // namespace zm::bench::unit
