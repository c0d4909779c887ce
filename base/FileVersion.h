#pragma once

#include <string_view>

namespace zm {

/** The name of a file without the version that files have on discs and some programs copy with them: "VIDEO_TS.IFO;1"
 * is "VIDEO_TS.IFO". A name without one is as it was. */
constexpr std::string_view withoutVersion(std::string_view name) {
    const size_t mark = name.rfind(';');
    const bool isVersion = mark != std::string_view::npos && mark > 0 && mark + 1 < name.size() &&
                           name.find_first_not_of("0123456789", mark + 1) == std::string_view::npos;
    return isVersion ? name.substr(0, mark) : name;
}

} // namespace zm
