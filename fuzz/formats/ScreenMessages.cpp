#include "fuzz/formats/ScreenMessages.h"

#include "fuzz/formats/JsonText.h"

#include <array>
#include <cstdlib>
#include <optional>

namespace zm::fuzz {

namespace {

constexpr long Buffers = 3;

constexpr std::array<std::string_view, 9> messages{
    R"({"t":"hello","role":"video","pid":2})",
    R"({"t":"window","window":1,"name":"a","width":20,"height":10,"stride":80,"order":1,"alpha":true,"visible":true})",
    R"({"t":"window","window":2,"name":"b","width":8,"height":8,"stride":32,"order":2,"visible":true})",
    R"({"t":"commit","window":1,"buffer":1,"seq":1,"damage":[[0,0,20,10]]})",
    R"({"t":"commit","window":2,"buffer":2,"seq":3})",
    R"({"t":"props","window":1,"order":0,"x":5,"y":-5,"width":50,"height":40,"alpha":true,"visible":true})",
    R"({"t":"props","name":"zmdisc_video_win","x":0,"y":0,"width":800,"height":480,"visible":true})",
    R"({"t":"sync","id":1})",
    R"({"t":"close","window":1})"};

struct Number {
    size_t begin;
    size_t end;
    long value;
};

std::optional<Number> number(const std::string& message, const std::string& name) {
    const size_t found = message.find("\"" + name + "\":");
    if (found == std::string::npos) {
        return std::nullopt;
    }
    const size_t begin = found + name.size() + 3;
    return Number{begin, std::min(message.find_first_of(",}", begin), message.size()),
                  std::strtol(message.c_str() + begin, nullptr, 10)};
}

// In front of the message: the memory that goes with it.
size_t memoryEnd(const std::string& line) {
    return line.starts_with('@') ? std::min(line.find('{'), line.size()) : 0;
}

/** A message that makes a window comes with memory that is large enough. */
std::string withMemory(const std::string& line) {
    constexpr long MostPixels = 1 << 12;
    std::string message = line.substr(memoryEnd(line));
    const auto width = number(message, "width");
    const auto height = number(message, "height");
    const auto stride = number(message, "stride");
    if (message.find("\"window\"") == std::string::npos || !width || !height || !stride ||
        width->value <= 0 || height->value <= 0 || width->value > MostPixels || height->value > MostPixels) {
        return line;
    }
    const long bytes = width->value * 4;
    message.replace(stride->begin, stride->end - stride->begin, std::to_string(bytes));
    return "@" + std::to_string(bytes * height->value * Buffers) + " 7 " + message;
}

class ScreenMessages : public Format {
public:
    Pieces split(std::string_view input) const override { return splitLines(input, "\n"); }

    void change(Pieces& pieces, size_t at, Random& random) const override {
        std::string& line = pieces[at];
        switch (random.below(4)) {
        case 0:
            line = withMemory(std::string(random.pick(messages)) + "\n");
            break;
        case 1:
            line += withMemory(std::string(random.pick(messages)) + "\n");
            break;
        default: {
            const size_t end = memoryEnd(line);
            line = line.substr(0, end) + withChangedValue(line.substr(end), random);
            line = random.oneIn(4) ? line : withMemory(line);
            break;
        }
        }
    }

    void mend(Pieces& pieces) const override { endLines(pieces, "\n"); }
};

} // namespace

const Format& screenMessages() {
    static const ScreenMessages format;
    return format;
}

} // namespace zm::fuzz
