// Makes one cover for the disc service: decodes a stranger's picture, or draws a tile with letters.
#include "base/About.h"
#include "services/cover/Decoder.h"
#include "services/cover/Letters.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstdio>

namespace {

constexpr const char* usage =
    "usage: zmcover picture SIDE <FILE >PIXELS | letters SIDE RRGGBB TEXT >PIXELS | "
    "--version | --help\n"
    "Makes covers for zmdiscd, which starts it; PIXELS are two numbers of four bytes, "
    "width and height, and four bytes a pixel.\n";

constexpr int LargestSide = 4096;
// Behind everything that plays and everything that is drawn.
constexpr int Niceness = 10;

int sideOf(const std::string& text) {
    int side = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, side);
    return parsed.ec == std::errc() && parsed.ptr == end && side <= LargestSide ? side : 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (zm::answerAbout(words, "zmcover", usage)) {
        return 0;
    }
    const int side = words.size() > 1 ? sideOf(words[1]) : 0;
    const bool picture = words.size() == 2 && words[0] == "picture";
    const bool letters = words.size() == 4 && words[0] == "letters";
    if (side <= 0 || (!picture && !letters)) {
        std::fputs(usage, stderr);
        return 2;
    }
    // Never without the one that waits for it.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::nice(Niceness) < 0) {
        std::fputs("zmcover: runs no less than others\n", stderr);
    }
    const zm::Status done =
        picture ? zm::cover::decode(side) : zm::cover::drawLetters(side, words[2], words[3]);
    if (!done) {
        std::fprintf(stderr, "zmcover: %s\n", done.error().c_str());
        return 1;
    }
    // Nothing is put back: the process ends, and of a jail not all that libraries do at their end is allowed.
    ::_exit(0);
}
