#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace zm::ctl {

/** The lines of an output, without their ends. */
std::vector<std::string> outputLines(const std::string& output);

/** The data in the output of `screen`. Here and below: other text gives a discarded value, or less data. */
nlohmann::json screenData(const std::string& output);
/** Output of `pps get`: an object of the attributes; one with encoding "json" as its value,
 * others as text. */
nlohmann::json ppsData(const std::string& output);
/** Output of `requests`: a list. */
nlohmann::json requestsData(const std::string& output);
/** Output of `ps`: {"app":{"pid":123,"state":"running","deaths":0}}, pid 0 if it does not run. */
nlohmann::json processesData(const std::string& output);

} // namespace zm::ctl
