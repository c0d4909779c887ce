#pragma once

#include "base/ScreenSize.h"
#include "platform/linux/framework/TouchInput.h"
#include "platform/linux/screen/ScreenClient.h"

#include <cmath>
#include <optional>

namespace zm {

/** Between the pixels that the application counts in and those that the screen has. */
struct ScreenMap {
    ScreenSize own;    ///< what the application was told to fill
    ScreenSize screen; ///< what there is

    Point toOwn(Point at) const {
        return {at.x * own.width / screen.width, at.y * own.height / screen.height};
    }
    /** A place that the application has asked for. */
    WindowProps toScreen(WindowProps props) const {
        const auto scale = [](std::optional<int>& value, int to, int from) {
            if (value) {
                value = static_cast<int>(std::lround(static_cast<double>(*value) * to / from));
            }
        };
        scale(props.x, screen.width, own.width);
        scale(props.width, screen.width, own.width);
        scale(props.y, screen.height, own.height);
        scale(props.height, screen.height, own.height);
        return props;
    }
};

} // namespace zm
