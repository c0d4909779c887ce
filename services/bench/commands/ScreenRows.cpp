#include "services/bench/commands/Processor.h"
#include "services/bench/screen/PixelCodec.h"
#include "services/bench/screen/SeenItems.h"

#include "services/ctl/Numbers.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace zm::bench::commands {

namespace {

// Whether any view of the answer has a page in it.
bool hasPage(const Json& views) {
    return std::any_of(views.begin(), views.end(),
                       [](const Json& view) { return !view.at("windows").empty(); });
}

// Ends the command with an error: there is no such page.
void failWithPage(Call& call, const Json& views, int page) {
    std::vector<int> pages;
    for (const auto& view : views) {
        for (const auto& [id, content] : view.at("windows").items()) {
            pages.push_back(ctl::parseNumber<int>(id).value_or(0));
        }
    }
    call.run->fail(ctl::unknownNumber("page", page, pages));
}

bool screenText(Call& call) {
    if (!call.arguments.complete()) {
        return false;
    }
    call.unit.shell().ask({{"t", "seen"}}, [run = call.run](const Result<Json>& reply) {
        if (!reply) {
            run->fail(reply.error());
            return;
        }
        run->out(screen::seenText(screen::seenItems(*reply)));
        run->finish();
    });
    return true;
}

bool screen(Call& call) {
    if (call.arguments.flag("--text")) {
        return screenText(call);
    }
    Json message = {{"t", "screen"}};
    auto& arguments = call.arguments;
    if (const auto& words = call.run->words();
        words.size() > 1 && (words[1] == "main" || words[1] == "osd")) {
        message["view"] = arguments.word();
    }
    Json all = message;
    // 0 is what `screen` itself says when no page is shown: it has nothing in it and is not a mistake.
    int page = 0;
    if (arguments.more()) {
        page = arguments.number();
        message["window"] = page;
    }
    if (!arguments.complete()) {
        return false;
    }
    auto& shell = call.unit.shell();
    shell.ask(std::move(message), [call, all = std::move(all), page](Result<Json> reply) mutable {
        if (!reply) {
            call.run->fail(reply.error());
            return;
        }
        if (page != 0 && !hasPage(*reply)) {
            call.unit.shell().ask(std::move(all), [call, page](const Result<Json>& pages) mutable {
                failWithPage(call, pages ? *pages : Json::object(), page);
            });
            return;
        }
        Json result = std::move(*reply);
        result["video"] = call.unit.compositor().videoState();
        const ScreenSize& size = call.unit.compositor().size();
        result["size"] = {size.width, size.height};
        call.run->out(jsonText(result) + "\n");
        call.run->finish();
    });
    return true;
}

struct ShotFormat {
    std::string_view ending;
    Result<std::string> (*encode)(const screen::PixelView& view);
};

constexpr int ShotQuality = 92;

// A name without an ending says nothing: it gets the one without loss.
constexpr std::array<ShotFormat, 4> ShotFormats = {{
    {"", [](const screen::PixelView& view) { return screen::encodePng(view); }},
    {".png", [](const screen::PixelView& view) { return screen::encodePng(view); }},
    {".jpg", [](const screen::PixelView& view) { return screen::encodeJpeg(view, ShotQuality); }},
    {".jpeg", [](const screen::PixelView& view) { return screen::encodeJpeg(view, ShotQuality); }},
}};

bool drawn(Call& call) {
    if (!call.arguments.complete()) {
        return false;
    }
    call.unit.shell().ask({{"t", "drawn"}}, [run = call.run](Result<Json> reply) {
        if (!reply) {
            run->fail(reply.error());
            return;
        }
        std::string stale;
        for (const auto& [view, text] : reply->items()) {
            stale += (stale.empty() ? "" : "\n") + view + ": " + text.get<std::string>();
        }
        endWith(run, stale.empty() ? ok() : Status(Error{stale}));
    });
    return true;
}

// Of the pixels, whatever format a picture has.
std::string digest(const Image& frame) {
    GChecksum* checksum = g_checksum_new(G_CHECKSUM_SHA256);
    for (int y = 0; y < frame.height; ++y) {
        g_checksum_update(checksum, frame.pixels.data() + static_cast<size_t>(y) * frame.stride,
                          static_cast<gssize>(frame.width) * 4);
    }
    std::string text = g_checksum_get_string(checksum);
    g_checksum_free(checksum);
    return text;
}

// What is to be written of the screen: its digest on standard output, or a picture in a file.
struct Shot {
    std::string file; ///< empty: the digest
    const ShotFormat* format = nullptr;
};

void take(Call& call, const Shot& wanted) {
    const Image& frame = call.unit.compositor().compose();
    if (wanted.file.empty()) {
        call.run->out(digest(frame) + "\n");
        call.run->finish();
        return;
    }
    const auto picture =
        wanted.format->encode({frame.pixels.data(), frame.stride, {0, 0, frame.width, frame.height}});
    if (!picture) {
        call.run->fail(picture.error());
        return;
    }
    const std::string path = call.run->absolute(wanted.file);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << *picture;
    stream.close();
    endWith(call.run, stream ? ok() : Status(systemError(path)));
}

// An application that hangs has its picture taken as it is.
constexpr std::chrono::milliseconds RestLimit(500);

bool shot(Call& call) {
    const bool now = call.arguments.flag("--now");
    Shot wanted;
    if (!call.arguments.flag("--digest")) {
        wanted.file = call.arguments.word();
    }
    if (!call.arguments.complete()) {
        return false;
    }
    const std::string ending = std::filesystem::path(wanted.file).extension();
    wanted.format = std::find_if(ShotFormats.begin(), ShotFormats.end(),
                                 [&](const ShotFormat& each) { return each.ending == ending; });
    if (wanted.format == ShotFormats.end()) {
        call.run->fail(wanted.file + ": pictures end with .png, .jpg or .jpeg");
    } else if (now || !call.unit.shell().running()) {
        take(call, wanted);
    } else {
        call.unit.shell().ask(
            {{"t", "rest"}}, [call, wanted](const Result<Json>&) mutable { take(call, wanted); }, RestLimit);
    }
    return true;
}

constexpr std::array ScreenCommands = {
    Row{"screen", screen},
    Row{"drawn", drawn},
    Row{"shot", shot},
};

} // namespace

std::span<const Row> screenRows() {
    return ScreenCommands;
}

} // namespace zm::bench::commands
