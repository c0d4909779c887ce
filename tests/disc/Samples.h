#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>

namespace zm::test {

/** A folder for discs, removed at the end. */
class TempFolder {
public:
    std::filesystem::path path() const { return m_folder.path(); }
    std::string operator/(const std::string& name) const { return m_folder.path() + "/" + name; }

private:
    TemporaryFolder m_folder;
};

/** Options for a sample: what it is called, how ffmpeg makes it. */
struct SampleRecipe {
    std::string name;      ///< file name in the cache
    std::string arguments; ///< everything between "ffmpeg" and the output file
};

/** The path of a sample file, made once for all tests of a build folder. Throws when it cannot be made. */
std::string sample(const SampleRecipe& recipe);

/** A tone of some seconds in the format of `extension`, with tags. */
std::string toneFile(const std::string& extension, int seconds, const std::string& title = "",
                     const std::string& artist = "", const std::string& album = "", int track = 0);

/** Copies `source` to `target`, making the folders on the way. */
void place(const std::string& source, const std::string& target);
/** The bytes of a file; none if it cannot be read. */
std::string readFile(const std::string& path);
void writeFile(const std::string& target, const std::string& bytes);

} // namespace zm::test
