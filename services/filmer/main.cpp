// Films the screen and the sound of a head unit into a file; a process of its own, so that nothing waits for it.
#include "base/About.h"
#include "base/JsonMessage.h"
#include "base/Socket.h"
#include "services/film/Wire.h"
#include "services/filmer/Camera.h"

#include <gst/gst.h>
#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <optional>

using namespace zm;

namespace {

constexpr const char* Usage = "usage: zmfilm SOUND FILE [--overwrite] | --version | --help\n"
                              "Films for zmbench, which starts it; by itself it does nothing.\n";

bool isSocket(int fd) {
    struct stat info {};
    return ::fstat(fd, &info) == 0 && S_ISSOCK(info.st_mode);
}

nlohmann::json messageOf(const filmer::Camera::Film& film) {
    return {{"t", "ended"},
            {"milliseconds", film.length / film::Millisecond},
            {"frames", film.frames},
            {"dropped", film.dropped},
            {"failure", film.failure}};
}

int run(const std::string& sound, const std::string& path, filmer::Existing existing) {
    // A disk that is full, or a file that may not grow, is an error of the writer's; Ctrl-C is for the bench.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);
    EventLoop loop;
    Connection bench(loop, UniqueFd(::fcntl(film::ControlFd, F_DUPFD_CLOEXEC, film::ScreenFd + 1)));
    ::close(film::ControlFd);
    const auto tell = [&](const nlohmann::json& message) { bench.send(jsonText(message)); };

    gst_init(nullptr, nullptr);
    auto screen = film::SharedScreen::open(film::ScreenFd);
    auto file = screen ? filmer::FilmFile::create(path, existing, screen->size())
                       : Result<std::unique_ptr<filmer::FilmFile>>(screen.failure());
    if (!file) {
        tell({{"t", "refused"}, {"why", file.error()}});
        return 1;
    }
    filmer::Camera camera(std::move(*file), std::move(*screen), film::SharedSound::open(sound),
                          [&](const filmer::Camera::Film& made) {
                              loop.post([&, made] {
                                  tell(messageOf(made));
                                  loop.quit();
                              });
                          });
    // Whether it is told to or the bench has gone: what was filmed so far is a film.
    bench.onMessage = [&](const Message&) { camera.end(); };
    bench.onClosed = [&] { camera.end(); };
    const auto onTerm = watchSignal(loop, SIGTERM, [&] { camera.end(); });
    tell({{"t", "begun"}});
    loop.run();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (answerAbout(words, "zmfilm", Usage)) {
        return 0;
    }
    const bool overwrite = words.size() == 3 && words[2] == "--overwrite";
    if ((words.size() != 2 && !overwrite) || !isSocket(film::ControlFd)) {
        std::fputs("zmfilm: started by zmbench only\n", stderr);
        return 2;
    }
    return run(words[0], words[1], overwrite ? filmer::Existing::Overwritten : filmer::Existing::Refused);
}
