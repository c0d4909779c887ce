#include "tests/views/OsdView.h"

#include <utility>

namespace zm::test {

namespace {

bool refusesControl = false;

} // namespace

UnitOptions withoutOverlayControl() {
    refusesControl = true;
    return {};
}

} // namespace zm::test

// The linker leads the start-up's call here first.
extern "C" void __real__ZN11DiscOsdView13AttachControlEP18DiscViewController(DiscOsdView* view,
                                                                             DiscViewController* controller);
extern "C" void __wrap__ZN11DiscOsdView13AttachControlEP18DiscViewController(DiscOsdView* view,
                                                                             DiscViewController* controller) {
    if (!std::exchange(zm::test::refusesControl, false)) {
        __real__ZN11DiscOsdView13AttachControlEP18DiscViewController(view, controller);
    }
}
