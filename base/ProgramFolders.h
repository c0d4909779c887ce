#pragma once

#include <string>

namespace zm {

/** Where what belongs together lies: in a build, or in an installation below any prefix. */
struct ProgramFolders {
    std::string
        programs; ///< of the programs that nobody starts by hand: Platen, zmdiscd and those that it starts
    std::string share;              ///< has the folders rccs, fonts and web
    std::string demonstration;      ///< the demonstration disc; what makes it is `demonstrationMaker`
    std::string demonstrationMaker; ///< a command line
};

/** Of the running program, one that users start. */
ProgramFolders programFolders();

/** Of the programs that users start from `folder`; an absolute path. */
ProgramFolders programFolders(const std::string& folder);

} // namespace zm
