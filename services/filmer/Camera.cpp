#include "services/filmer/Camera.h"

#include "services/filmer/Fingers.h"
#include "services/filmer/SoundTrack.h"

#include <atomic>

namespace zm::filmer {

using film::Millisecond;
using film::Moment;
using film::Second;

namespace {

constexpr Moment FramesPerSecond = 30;
// What is encoded, and what waits for it.
constexpr size_t Images = 24;
// By then all that was heard has been written by whoever plays it.
constexpr Moment SoundDelay = 300 * Millisecond;

Moment timeOf(uint64_t number) {
    return static_cast<Moment>(number) * Second / FramesPerSecond;
}

void sleepUntil(Moment moment) {
    std::this_thread::sleep_until(std::chrono::steady_clock::time_point(std::chrono::nanoseconds(moment)));
}

} // namespace

Camera::Camera(std::unique_ptr<FilmFile> file, film::SharedScreen screen,
               std::unique_ptr<film::SharedSound> sound, std::function<void(const Film&)> done)
    : m_file(std::move(file)), m_screen(std::move(screen)), m_sound(std::move(sound)),
      m_done(std::move(done)), m_thread([this] { run(); }) {}

Camera::~Camera() {
    end();
    m_thread.join();
}

void Camera::end() {
    m_ending = true;
}

// Null while all are in use.
std::shared_ptr<Image> Camera::freeImage() {
    for (const auto& image : m_images) {
        if (image.use_count() == 1) {
            // Whoever let go of it has done so before.
            std::atomic_thread_fence(std::memory_order_acquire);
            return image;
        }
    }
    if (m_images.size() == Images) {
        return nullptr;
    }
    return m_images.emplace_back(std::make_shared<Image>(m_screen.size().width, m_screen.size().height));
}

void Camera::shoot(uint64_t number) {
    const auto image = freeImage();
    film::SharedScreen::Fingers fingers;
    if (!image) {
        ++m_film.dropped;
        return;
    }
    if (m_screen.take(*image, fingers)) {
        drawFingers(*image, fingers, film::now());
        m_latest = image;
    }
    if (m_latest) {
        m_file->addPicture(m_latest, timeOf(number));
        ++m_film.frames;
    } else {
        ++m_film.dropped;
    }
}

// A picture stands for the time around its moment: half of it before, half behind.
void Camera::run() {
    const Moment begin = film::now();
    SoundTrack track(std::move(m_sound), begin, [this](uint32_t rate, auto samples, Moment time) {
        m_file->addSound(rate, samples, time);
    });
    uint64_t number = 0;
    // However soon it ends, there is something to be seen.
    do {
        sleepUntil(begin + timeOf(number) + Second / FramesPerSecond / 2);
        shoot(number);
        track.pass(film::now() - SoundDelay);
        m_film.failure = m_file->failure().value_or("");
        const auto due = static_cast<uint64_t>((film::now() - begin) * FramesPerSecond / Second);
        const uint64_t next = std::max(number + 1, due);
        m_film.dropped += next - number - 1;
        number = next;
    } while (!m_ending && m_film.failure.empty());
    m_film.length = timeOf(number);
    if (m_film.failure.empty()) {
        sleepUntil(begin + m_film.length + SoundDelay);
        track.pass(begin + m_film.length);
        if (const auto finished = m_file->finish(); !finished) {
            m_film.failure = finished.error();
        }
    }
    m_done(m_film);
}

} // namespace zm::filmer
