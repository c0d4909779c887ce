#pragma once

#include <string>

namespace zm {

/** The application's name in what is told from now on. Any thread. */
void setLogName(const std::string& name);
/** Tells of a failure in the system log and on standard error. Any thread. */
void reportFailure(const std::string& text);
/** The same for news that is not a failure. Any thread. */
void reportNews(const std::string& text);

} // namespace zm
