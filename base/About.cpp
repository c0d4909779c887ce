#include "base/About.h"

#include <cstdio>

namespace zm {

const char* const Version = ZM_VERSION;

bool answerAbout(const std::vector<std::string>& arguments, const char* program, const char* usage) {
    if (arguments.size() != 1) {
        return false;
    }
    if (arguments[0] == "--version") {
        std::printf("%s %s\n", program, Version);
        return true;
    }
    if (arguments[0] == "--help" || arguments[0] == "-h") {
        std::printf("%s", usage);
        return true;
    }
    return false;
}

} // namespace zm
