#include "services/ctl/LocalCommand.h"

#include "services/ctl/CommandForm.h"
#include "services/ctl/ExitStatus.h"

#include <algorithm>

namespace zm::ctl {

namespace {

std::vector<std::string> behindName(const std::vector<std::string>& words) {
    return {words.begin() + 1, words.end()};
}

} // namespace

const LocalCommand* findLocalCommand(std::span<const LocalCommand> commands, const std::string& name) {
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const LocalCommand& command) { return command.name == name; });
    return found == commands.end() ? nullptr : &*found;
}

Status checkLocalCommand(const LocalCommand& command, const std::vector<std::string>& words) {
    const auto given = behindName(words);
    return whyUnfit(words).empty() ? command.check(given) : wrongUsage(words[0], given);
}

int runLocalCommand(const LocalCommand& command, const Client& client, const std::vector<std::string>& words,
                    const Client::Print& out, const Client::Print& err) {
    if (auto good = checkLocalCommand(command, words); !good) {
        err(good.error() + "\n");
        return WrongUsage;
    }
    return command.run(client, behindName(words), out, err);
}

Status wrongUsage(std::string_view command, std::vector<std::string> words) {
    words.insert(words.begin(), std::string(command));
    std::string text = wrongUsageText(words, {});
    text.pop_back();
    return Error{text};
}

} // namespace zm::ctl
