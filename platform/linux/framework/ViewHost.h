#pragma once

#include "platform/linux/framework/TouchInput.h"

namespace Oro::ZMCAR {
struct ViewImpl;
}

namespace zm {

class ScreenClient;

/** What a view needs of the process that it lives in. Event thread. */
class ViewHost {
public:
    virtual ~ViewHost() = default;
    virtual bool isMain(const Oro::ZMCAR::ViewImpl& view) const = 0;
    /** Null without a connection. */
    virtual ScreenClient* screen() = 0;
    /** A view is about to be told that a finger was lifted from an item of a shown page. */
    virtual void lifted(LiftedFrom item) = 0;
};

} // namespace zm
