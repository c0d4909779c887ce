#include "base/About.h"
#include "services/bench/Program.h"

#include <cstdio>

using namespace zm;

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (answerAbout(arguments, "zmbench", bench::Usage)) {
        return 0;
    }
    const auto options = bench::parseOptions(arguments);
    if (!options) {
        std::fprintf(stderr, "zmbench: %s\n%s", options.error().c_str(), bench::Usage);
        return 2;
    }
    EventLoop loop;
    return bench::runBench(loop, "zmbench", *options);
}
