#include "services/bench/CommandProcessor.h"
#include "services/bench/PixelCodec.h"

#include <array>
#include <fstream>

namespace zm {

namespace {

bool screen(CommandCall& call) {
    Json message = {{"t", "screen"}};
    auto& arguments = call.arguments;
    if (const auto& words = call.run->words();
        words.size() > 1 && (words[1] == "main" || words[1] == "osd")) {
        message["view"] = arguments.word();
    }
    if (arguments.more()) {
        message["window"] = arguments.number();
    }
    if (!arguments.complete()) {
        return false;
    }
    call.unit.shell().ask(std::move(message), [run = call.run, &unit = call.unit](Result<Json> reply) {
        if (!reply) {
            run->fail(reply.error());
            return;
        }
        Json result = std::move(*reply);
        result["video"] = unit.compositor().videoState();
        run->out(jsonText(result) + "\n");
        run->finish();
    });
    return true;
}

bool shot(CommandCall& call) {
    const std::string file = call.arguments.word();
    if (!call.arguments.complete()) {
        return false;
    }
    const Image& frame = call.unit.compositor().compose();
    const auto png = encodePng({frame.pixels.data(), frame.stride, {0, 0, frame.width, frame.height}});
    if (!png) {
        call.run->fail(png.error());
        return true;
    }
    const std::string path = call.run->absolute(file);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << *png;
    stream.close();
    endWith(call.run, stream ? ok() : Status(systemError(path)));
    return true;
}

constexpr std::array Rows = {
    CommandRow{"screen", screen},
    CommandRow{"shot", shot},
};

} // namespace

std::span<const CommandRow> screenCommandRows() {
    return Rows;
}

} // namespace zm
