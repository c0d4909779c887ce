#include "services/ctl/AnswerData.h"

#include "base/JsonMessage.h"
#include "services/ctl/Numbers.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace zm::ctl {

using Json = nlohmann::json;

namespace {

constexpr std::string_view DeathsMark = " (deaths: ";

// What stands before `mark`, which is taken away with it.
std::string takeUntil(std::string& text, std::string_view mark) {
    const size_t at = text.find(mark);
    std::string result = text.substr(0, at);
    text.erase(0, at == std::string::npos ? at : at + mark.size());
    return result;
}

} // namespace

std::vector<std::string> outputLines(const std::string& output) {
    std::vector<std::string> result;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);) {
        result.push_back(line);
    }
    return result;
}

Json screenData(const std::string& output) {
    return parseJson(output);
}

Json ppsData(const std::string& output) {
    Json result = Json::object();
    for (std::string line : outputLines(output)) {
        const std::string name = takeUntil(line, ":");
        const std::string encoding = takeUntil(line, ":");
        result[name] = encoding == "json" ? parseJson(line) : Json(line);
    }
    return result;
}

Json requestsData(const std::string& output) {
    Json result = Json::array();
    for (const auto& line : outputLines(output)) {
        result.push_back(parseJson(line));
    }
    return result;
}

Json processesData(const std::string& output) {
    Json result = Json::object();
    for (std::string line : outputLines(output)) {
        const std::string name = takeUntil(line, " ");
        const std::string pid = takeUntil(line, " ");
        const std::string state = takeUntil(line, DeathsMark);
        result[name] = {{"pid", parseNumber<int>(pid).value_or(0)},
                        {"state", state},
                        {"deaths", parseNumber<int>(takeUntil(line, ")")).value_or(0)}};
    }
    return result;
}

} // namespace zm::ctl
