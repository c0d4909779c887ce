#include "platform/linux/framework/ResourceWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>

namespace zm {

namespace {

bool isResource(const char* name) {
    const auto ending = std::filesystem::path(name).extension();
    return ending == ".zmrc" || ending == ".zmrc_device";
}

} // namespace

ResourceWatch::ResourceWatch(EventLoop& loop, std::function<void()> changed)
    : m_notices(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (m_notices.valid()) {
        m_source = watchFd(loop, m_notices.get(), IoEvent::Readable, [this, changed = std::move(changed)] {
            if (take()) {
                changed();
            }
        });
    }
}

Status ResourceWatch::watch(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        const std::string folder = std::filesystem::path(file).parent_path().string();
        // Editors write anew or rename into place; a folder that is watched already stays watched once.
        if (::inotify_add_watch(m_notices.get(), folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO) < 0) {
            return systemError("resource folder " + folder);
        }
    }
    return ok();
}

bool ResourceWatch::take() {
    bool found = false;
    alignas(inotify_event) std::array<char, 4096> buffer;
    ssize_t size = 0;
    while ((size = ::read(m_notices.get(), buffer.data(), buffer.size())) > 0) {
        for (ssize_t at = 0; at < size;) {
            inotify_event event;
            std::memcpy(&event, &buffer[static_cast<size_t>(at)], sizeof event);
            const char* name = &buffer[static_cast<size_t>(at) + sizeof event];
            found = found || (event.len > 0 && isResource(name));
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    return found;
}

} // namespace zm
