// Long parameters, from a command line (the input's lines) and from one text as the launcher sends it.
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "zmcar/ArgvDecode.h"

#include <vector>

using namespace zm::fuzz;

namespace {

using Params = std::map<std::string, std::string>;

void checkParams(int count, const Params& params) {
    check(count == static_cast<int>(params.size()), "the result is the number of parameters");
    check(!params.contains(""), "every parameter has a name");
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        lines.emplace_back(takePart(text, '\n'));
    }
    return lines;
}

// What can be written between double quotes comes back as it was.
void roundTrip(const Params& params) {
    std::string text;
    Params expected;
    for (const auto& [key, value] : params) {
        if (key.find_first_of("= \t\r\n\"'") == key.npos && value.find('"') == value.npos) {
            text += " --" + key + "=\"" + value + "\"";
            expected[key] = value;
        }
    }
    Params again;
    Oro::ZMCAR::ArgvDecode::GetOpt_LongParams(text, again);
    check(again == expected, "quoted values come back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Params params;
    checkParams(Oro::ZMCAR::ArgvDecode::GetOpt_LongParams(std::string(asText(data, size)), params), params);
    roundTrip(params);

    auto lines = linesOf(asText(data, size));
    std::vector<char*> words;
    for (auto& line : lines) {
        words.push_back(line.data());
    }
    const int count = static_cast<int>(words.size());
    words.push_back(nullptr);
    checkParams(Oro::ZMCAR::ArgvDecode::GetOpt_LongParams(count, words.data(), params), params);
    return 0;
}
