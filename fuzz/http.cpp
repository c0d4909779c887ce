// What the page's server gets from the network. The first line chooses: "body" a command's body, "page" a
// message of a page, "headers" four header lines (host, origin, cookie, authorization).
#include "base/JsonMessage.h"
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Scratch.h"
#include "services/bench/commands/Request.h"
#include "services/bench/screen/Compositor.h"
#include "services/bench/web/Guard.h"
#include "services/bench/web/Screen.h"

#include <nlohmann/json.hpp>

using namespace zm;
using namespace zm::fuzz;

namespace {

void body(std::string_view text) {
    if (const auto request = bench::commands::parseRequest(text)) {
        const auto again =
            bench::commands::parseRequest(jsonText({{"argv", request->words}, {"cwd", request->cwd}}));
        check(again && again->words.size() == request->words.size(), "a request can be passed on");
    }
}

void page(std::string_view text) {
    const Json message = parseMessage(text);
    if (!message.is_object()) {
        return;
    }
    const auto words = bench::web::pageCommand(message);
    check(words.empty() || words.size() == 3 || words.size() == 5, "a command has all its words");
    if (!words.empty()) {
        const int x = std::stoi(words[1]);
        const int y = std::stoi(words[2]);
        check(ScreenSize().area().contains(x, y), "touches are on the screen");
    }
}

void headers(std::string_view text) {
    static bench::web::Guard guard(scratchFolder() + "/token");
    bench::web::Guard::Caller caller;
    for (auto* header : {&caller.host, &caller.origin, &caller.cookie, &caller.authorization}) {
        *header = takePart(text, '\n');
    }
    check(!guard.knownCaller(caller), "nobody guesses the token");
    if (guard.knownPlace(caller)) {
        const std::string name = caller.host.substr(0, caller.host.find_last_of(':'));
        check(caller.host == "[::1]" || name == "[::1]" || name == "127.0.0.1" || name == "localhost",
              "only loopback hosts are known");
        check(caller.origin.empty() || caller.origin == "http://" + caller.host, "no foreign page is known");
    }
    const std::string cookie = guard.cookieHeader();
    caller.cookie += ";" + cookie.substr(0, cookie.find(';'));
    check(guard.knownCaller(caller), "the token opens whatever stands before it");
}

struct Kind {
    std::string_view name;
    void (*run)(std::string_view text);
};
constexpr Kind Kinds[] = {{"body", body}, {"page", page}, {"headers", headers}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto text = asText(data, size);
    const auto name = takePart(text, '\n');
    for (const auto& kind : Kinds) {
        if (kind.name == name) {
            kind.run(text);
        }
    }
    return 0;
}
