#pragma once

#include <map>
#include <string>

namespace Oro::ZMCAR {

/**
 * Long parameters: "--key=value" and "--key value"; a value may stand in single or double quotes; a later
 * value of the same key wins; "--key" before another "--" or at the end has the empty value; anything else is
 * skipped.
 */
class ArgvDecode {
public:
    /** Reads the arguments from argv[1] on; the map is cleared first.
     * Returns the number of keys in the map. */
    static int GetOpt_LongParams(int argc, char** argv, std::map<std::string, std::string>& params);
    /** The same for one text whose words are separated by blanks outside quotes. */
    static int GetOpt_LongParams(const std::string& text, std::map<std::string, std::string>& params);
};

} // namespace Oro::ZMCAR
