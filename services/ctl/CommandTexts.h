#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zm::ctl {

/** Who carries a command out. */
enum class CommandPlace {
    Bench,   ///< the bench
    Script,  ///< zmctl itself, in scripts too
    Terminal ///< zmctl itself, but not in scripts
};

/** How a command is written and what it is for. */
struct CommandText {
    std::string_view name;
    std::string_view usage; ///< a line for each form
    std::string_view help;  ///< a summary in its first line, then more, then an example
    CommandPlace place = CommandPlace::Bench;
};

/** All commands, grouped by subject. */
std::span<const CommandText> commandTexts();
/** That of one command; null if there is none. */
const CommandText* findCommandText(std::string_view name);
/** "usage: zmctl touch X Y [--hold MS]", a line for each form. */
std::string usageText(const CommandText& text);
/** The list of all commands with their summaries. */
std::string overviewText();

} // namespace zm::ctl
