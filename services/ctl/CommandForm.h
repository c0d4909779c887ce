#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zm::ctl {

/**
 * One form of a command as its usage writes it: "touch X Y [--hold MS]". Words in small letters stand for themselves,
 * "a|b" for one of several; a word in capitals for anything of its kind, "[...]" may be left out, "..." repeats.
 */
class CommandForm {
public:
    explicit CommandForm(std::string_view usage);

    /** What may come behind some words. */
    struct Place {
        bool fits = false;              ///< the words before it fit this form at all
        std::vector<std::string> words; ///< that may stand there, options too
        std::vector<std::string> kinds; ///< kinds of words that may: "X", "FILE"
        bool mayEnd = false;            ///< the command may be complete without it
    };
    /** The place behind `words`, which begin with the command's name. */
    Place behind(const std::vector<std::string>& words) const;

    /** The forms of all commands. */
    static const std::vector<CommandForm>& all();

private:
    struct Part {
        std::vector<std::string> alternatives;
        bool optional = false;
        bool repeats = false;
    };
    struct Option {
        std::string name;
        std::vector<std::string> value; ///< empty: it has none
    };

    std::vector<Part> m_parts;
    std::vector<Option> m_options;
};

/** What may come behind `words` in any form of any command. */
CommandForm::Place placeBehind(const std::vector<std::string>& words);

/** Why `words`, which begin with a command's name, fit no form: a sentence without its end. Empty if they fit one. */
std::string whyUnfit(const std::vector<std::string>& words);

/** What is said of a name that no command has. */
std::string unknownCommandText(const std::string& name);

/** What is printed about a line that is not a command: `why`, or if that is empty why it fits no form, and the usage. */
std::string wrongUsageText(const std::vector<std::string>& words, const std::string& why);

} // namespace zm::ctl
