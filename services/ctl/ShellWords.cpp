#include "services/ctl/ShellWords.h"

#include <glib.h>

namespace zm::ctl {

namespace {

constexpr const char* PlainCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                        "-_./:,=+@%";

} // namespace

Result<std::vector<std::string>> shellWords(const std::string& line) {
    int count = 0;
    char** words = nullptr;
    GError* error = nullptr;
    std::vector<std::string> result;
    if (g_shell_parse_argv(line.c_str(), &count, &words, &error)) {
        result.assign(words, words + count);
        g_strfreev(words);
        return result;
    }
    const bool empty = g_error_matches(error, G_SHELL_ERROR, G_SHELL_ERROR_EMPTY_STRING);
    const std::string why = error->message;
    g_error_free(error);
    if (empty) {
        return result;
    }
    return Error{why};
}

std::string shellLine(const std::vector<std::string>& words) {
    std::string line;
    for (const auto& word : words) {
        line += line.empty() ? "" : " ";
        if (!word.empty() && word.find_first_not_of(PlainCharacters) == std::string::npos) {
            line += word;
        } else {
            char* quoted = g_shell_quote(word.c_str());
            line += quoted;
            g_free(quoted);
        }
    }
    return line;
}

} // namespace zm::ctl
