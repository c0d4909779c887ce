#include "platform/linux/toolkit/ResourceHint.h"

#include "base/Nearest.h"

#include <algorithm>
#include <array>

namespace zm {

namespace {

constexpr size_t longestToken = 30;

struct Syntax {
    std::string_view reason; ///< part of the parser's message
    const char* found;       ///< null: the token
    const char* expected;
};

/** The first row that fits holds. */
constexpr std::array<Syntax, 12> syntaxes = {{
    {"missing closing '*/'", "a comment without end", "*/ behind it"},
    {"invalid comment", nullptr, "// or /* to begin a comment"},
    {"control character", "a text without its closing quote", "it on the same line"},
    {"forbidden character after backslash", nullptr,
     R"(\\ for a backslash; also known are \" \/ \n \t \uXXXX)"},
    {"ill-formed UTF-8", "bytes that are no UTF-8", "the file in UTF-8"},
    {"number overflow", nullptr, "a smaller number"},
    {"unexpected ']'; expected '['", "]", "a value, or no comma before it"},
    {"; expected ':'", nullptr, R"(":" between a name and its value)"},
    {"object key", nullptr, "a name in double quotes, or no comma before it"},
    {"; expected '}'", nullptr, R"("," or "}")"},
    {"; expected ']'", nullptr, R"("," or "]")"},
    {"; expected end of input", nullptr, "nothing behind the last bracket"},
}};

/** Of everything else. */
constexpr Syntax anyValue = {"", nullptr, "a value: a text in double quotes, a number, true, false, [ or {"};

/** The parser's token without the white space, and what else of the line, it has read before. */
std::string lastPart(std::string token) {
    token.resize(token.find_last_not_of(' ') + 1);
    const bool quoted = token.ends_with('"');
    const size_t quote = quoted ? token.rfind('"', token.size() - 2) : std::string::npos;
    const size_t space = token.find_last_of(" >");
    const std::string part = token.substr(quote != std::string::npos   ? quote
                                          : space != std::string::npos ? space + 1
                                                                       : 0);
    return part.substr(0, longestToken);
}

} // namespace

std::string didYouMean(std::string_view name, const std::vector<std::string>& known) {
    const std::string nearest = nearestWord(name, known);
    return nearest.empty() ? "" : " (did you mean \"" + nearest + "\"?)";
}

std::string syntaxFault(std::string_view reason, const std::string& token) {
    const auto known = std::find_if(syntaxes.begin(), syntaxes.end(), [&](const Syntax& syntax) {
        return reason.find(syntax.reason) != std::string_view::npos;
    });
    const Syntax& syntax = known == syntaxes.end() ? anyValue : *known;
    const bool atEnd = reason.find("unexpected end of input") != std::string_view::npos;
    const std::string found = syntax.found ? syntax.found : atEnd ? "the end of the file" : lastPart(token);
    return "found " + found + ", expected " + syntax.expected;
}

} // namespace zm
