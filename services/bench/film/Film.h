#pragma once

#include "services/bench/film/FilmProcess.h"
#include "services/bench/film/Touches.h"
#include "services/bench/screen/Compositor.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zm::bench::film {

/** What is wanted of a film. */
struct FilmOrder {
    std::string path;
    bool overwrite = false;
    std::optional<std::chrono::milliseconds> length; ///< without: until it is ended
};

/**
 * Films the screen, with the fingers on it, and the sound, one film at a time. Encoding is zmfilm's business: the bench
 * copies what it composes and waits for nothing. On the loop's thread.
 */
class Film {
public:
    /** How a film ended: a line that says what it is, or why it is not whole. */
    using Ended = std::function<void(const Result<std::string>& said)>;

    /** `program` is zmfilm. */
    Film(EventLoop& loop, screen::Compositor& compositor, std::string program, std::string runtimeDir);
    /** A film that runs is completed. */
    ~Film();
    Film(const Film&) = delete;
    Film& operator=(const Film&) = delete;

    /** Makes it possible for the sound to be filmed; before whoever plays it starts. */
    Status prepare();
    /** Begins a film and says when it runs, or why it does not. */
    void begin(FilmOrder order, std::function<void(const Status&)> begun);
    /** Says how the film that runs has ended, once it has. */
    void onceEnded(Ended ended) { m_waiting.push_back(std::move(ended)); }
    /** Ends it. One that has ended by itself tells of it here, once. */
    void end(Ended ended);
    /** The film that runs; empty: none does. */
    std::string running() const;
    /** Its file, also when it has ended by itself and nobody has asked for it yet; else empty. */
    const std::string& target() const { return m_order.path; }
    /** Where a page's film lies. */
    std::string pageFile() const;

    /** The screen will change inside `area`. */
    void damaged(Rect area);
    /** What fingers do. */
    void pressed(int x, int y);
    void moved(int x, int y);
    void released(int x, int y);
    void dragged(int fromX, int fromY, int x, int y);

private:
    void heard(const std::string& text);
    void gone(int status);
    void conclude(Result<std::string> said);
    void share();

    EventLoop& m_loop;
    screen::Compositor& m_compositor;
    const std::string m_program;
    const std::string m_runtimeDir;
    Touches m_touches;
    FilmOrder m_order;
    std::unique_ptr<zm::film::SharedScreen> m_screen; ///< while a film runs
    std::unique_ptr<FilmProcess> m_process;
    SourceHandle m_limit;
    std::function<void(const Status&)> m_begun; ///< until it has begun
    std::vector<Ended> m_waiting;
    std::optional<Result<std::string>> m_said; ///< of one that has ended, until somebody asks
    std::optional<Result<std::string>> m_told; ///< what the process said of the film
};

} // namespace zm::bench::film
