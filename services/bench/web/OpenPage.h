#pragma once

#include "base/Result.h"

#include <string>

namespace zm::bench::web {

/**
 * Opens `url` in the desktop's browser. Everybody on this machine can read what a program is started with, and the
 * URL holds the page's token: so the browser is given a file in `folder` that only this user can read and that leads on.
 */
Status openPage(const std::string& url, const std::string& folder);

} // namespace zm::bench::web
