#pragma once

#include "services/ctl/Names.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zm::ctl {

/**
 * The words behind a command's name, taken one by one. Options are taken first, wherever they stand; a word
 * that begins with a minus sign and is none of the command's options is a plain argument, so that numbers may
 * be negative. What does not fit makes the whole line wrong: ask `complete` before acting.
 */
class Arguments {
public:
    explicit Arguments(std::vector<std::string> words) : m_words(std::move(words)) {}

    /** Whether `name` was given. */
    bool flag(std::string_view name);
    /** The word behind `name`; nothing if it was not given. */
    std::optional<std::string> option(std::string_view name);
    /** The same as a whole number of at least `least`. */
    std::optional<int> number(std::string_view name, int least);
    /** The same as seconds ("0.5"), in milliseconds. */
    std::optional<int> seconds(std::string_view name);

    bool more() const { return !m_words.empty(); }
    std::string word();
    int number();
    /** A whole number or its name; `what` is said of a name that is none of them: "key". */
    int number(std::string_view what, std::span<const NamedNumber> names);
    /** Everything that is left; at least one word. */
    std::vector<std::string> rest();
    /** The line as a whole is wrong; `why` is a sentence without its end. */
    void refuse(const std::string& why = {});
    /** Why, if more is known than that the words do not fit. */
    const std::string& why() const { return m_why; }
    /** Everything was understood and nothing is left. */
    bool complete() const { return m_good && m_words.empty(); }

private:
    std::vector<std::string> m_words;
    bool m_good = true;
    std::string m_why;
};

} // namespace zm::ctl
