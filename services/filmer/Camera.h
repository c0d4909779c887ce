#pragma once

#include "services/film/SharedScreen.h"
#include "services/film/SharedSound.h"
#include "services/filmer/FilmFile.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace zm::filmer {

/**
 * Looks at the screen thirty times a second and listens, on a thread of its own. Where the encoder does not keep up,
 * or the thread is late, pictures are left out and counted; the one before then stays on.
 */
class Camera {
public:
    struct Film {
        film::Moment length = 0;
        uint64_t frames = 0;
        uint64_t dropped = 0;
        std::string failure; ///< empty: all of it is in the file
    };

    /** `done` is called once, on the camera's thread. */
    Camera(std::unique_ptr<FilmFile> file, film::SharedScreen screen,
           std::unique_ptr<film::SharedSound> sound, std::function<void(const Film&)> done);
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    /** The film ends now; `done` follows. */
    void end();

private:
    void run();
    void shoot(uint64_t number);
    std::shared_ptr<Image> freeImage();

    const std::unique_ptr<FilmFile> m_file;
    film::SharedScreen m_screen;
    std::unique_ptr<film::SharedSound> m_sound;
    const std::function<void(const Film&)> m_done;
    Film m_film;
    std::vector<std::shared_ptr<Image>> m_images; ///< those in use are on their way to the file
    std::shared_ptr<Image> m_latest;
    std::atomic<bool> m_ending{false};
    std::thread m_thread;
};

} // namespace zm::filmer
