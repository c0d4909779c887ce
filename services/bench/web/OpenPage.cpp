#include "services/bench/web/OpenPage.h"

#include "base/UniqueFd.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

namespace zm::bench::web {

namespace {

Status writeLeadingFile(const std::string& file, const std::string& url) {
    const std::string text = "<!DOCTYPE html><meta charset=\"utf-8\"><title>The bench</title>"
                             "<meta name=\"referrer\" content=\"no-referrer\">"
                             "<meta http-equiv=\"refresh\" content=\"0;url=" +
                             url + "\"><a href=\"" + url + "\">The bench's page</a>\n";
    ::unlink(file.c_str());
    const UniqueFd fd(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!fd.valid() || ::write(fd.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        return systemError(file);
    }
    return ok();
}

} // namespace

Status openPage(const std::string& url, const std::string& folder) {
    const std::string file = folder + "/open.html";
    if (auto written = writeLeadingFile(file, url); !written) {
        return written;
    }
    const char* const words[] = {"xdg-open", file.c_str(), nullptr};
    GError* error = nullptr;
    // A browser that says something does not say it on the bench's standard output.
    const auto flags = GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL);
    if (g_spawn_async(nullptr, const_cast<char**>(words), nullptr, flags, nullptr, nullptr, nullptr,
                      &error)) {
        return ok();
    }
    const std::string why = error->message;
    g_error_free(error);
    return Error{why};
}

} // namespace zm::bench::web
