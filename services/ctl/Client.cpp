#include "services/ctl/Client.h"

#include "base/JsonMessage.h"
#include "base/Paths.h"
#include "base/Socket.h"
#include "services/ctl/ControlVersion.h"
#include "services/ctl/RunningBenches.h"

#include <nlohmann/json.hpp>

#include <filesystem>

namespace zm::ctl {

namespace {

using Json = nlohmann::json;

std::string request(const std::vector<std::string>& words) {
    std::error_code error;
    const Json message = {
        {"v", ControlVersion}, {"argv", words}, {"cwd", std::filesystem::current_path(error).string()}};
    return jsonText(message);
}

// What whoever found no bench can do.
std::string remedy() {
    const auto benches = runningBenches();
    if (benches.empty()) {
        return "; no other one runs either: \"./dev run\" starts one";
    }
    std::string text = "; others run, name one with --runtime:";
    for (const auto& folder : benches) {
        text += "\n  " + folder;
    }
    return text;
}

// What this version's answers do not have is a mistake of one side; read over, it might be missed.
Status checkMembers(const Json& message) {
    for (const auto& [name, value] : message.items()) {
        if (name != "out" && name != "err" && name != "exit") {
            return Error{"the bench's answer has \"" + name + "\", which version " +
                         std::to_string(ControlVersion) + " of the protocol does not have"};
        }
    }
    return ok();
}

void pass(const Json& message, const char* member, const Client::Print& print) {
    if (auto found = message.find(member); found != message.end() && found->is_string()) {
        print(found->get<std::string>());
    }
}

} // namespace

Client::Client(std::string runtimeDir) : m_runtimeDir(std::move(runtimeDir)) {}

Result<int> Client::run(const std::vector<std::string>& words, const Print& out, const Print& err) const {
    auto fd = connectUnix(ctlSocket(m_runtimeDir));
    if (!fd) {
        return Error{"no bench runs in " + m_runtimeDir + " (" + fd.error() + ")" + remedy()};
    }
    SyncConnection connection(std::move(*fd));
    if (auto sent = connection.send(request(words)); !sent) {
        return sent.failure();
    }
    for (;;) {
        auto received = connection.receive();
        if (!received) {
            return Error{"the bench has gone: " + received.error()};
        }
        const Json message = parseJson(received->text);
        if (!message.is_object()) {
            return Error{"the bench's answer is not understood"};
        }
        if (auto known = checkMembers(message); !known) {
            return known.failure();
        }
        pass(message, "out", out);
        pass(message, "err", err);
        if (auto exit = message.find("exit"); exit != message.end() && exit->is_number_integer()) {
            return exit->get<int>();
        }
    }
}

Answer Client::run(const std::vector<std::string>& words) const {
    Answer answer;
    auto status = run(
        words, [&](const std::string& text) { answer.out += text; },
        [&](const std::string& text) { answer.err += text; });
    if (status) {
        answer.exit = *status;
    } else {
        answer.exit = 1;
        answer.err += "zmctl: " + status.error() + "\n";
    }
    return answer;
}

} // namespace zm::ctl
