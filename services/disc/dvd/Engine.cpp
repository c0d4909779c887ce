#include "services/disc/dvd/Engine.h"

#include "base/Mutex.h"
#include "base/Threads.h"
#include "services/disc/engine/Decoders.h"
#include "services/disc/log/Log.h"

#include <signal.h>
#include <sys/wait.h>

namespace zm::disc::dvd {

namespace {

// Longer than a read's deadline, so that a slow disc is told from a decoder that hangs.
constexpr engine::Milliseconds StartDeadline{15000};
constexpr std::chrono::seconds LeaveDeadline{1};

} // namespace

/** Carries a session's reports from its thread to the service's loop. */
class Engine::Reporter : public Listener {
public:
    Reporter(Engine& engine, Listener& listener, std::shared_ptr<Mailbox> mailbox)
        : m_engine(engine), m_listener(listener), m_mailbox(std::move(mailbox)) {}

    void dvdOpened(const Titles& titles) override {
        post([titles](Listener& to) { to.dvdOpened(titles); });
    }
    void dvdArrived() override {
        m_mailbox->post([&engine = m_engine] { engine.m_startWatch.reset(); });
        post([](Listener& to) { to.dvdArrived(); });
    }
    void dvdShows(const Scene& scene) override {
        post([scene](Listener& to) { to.dvdShows(scene); });
    }
    void dvdRefused() override {
        post([](Listener& to) { to.dvdRefused(); });
    }
    void dvdPressed() override {
        post([](Listener& to) { to.dvdPressed(); });
    }
    void dvdScanned(engine::ScanEdge edge) override {
        post([edge](Listener& to) { to.dvdScanned(edge); });
    }
    void dvdGaveUpChapter() override {
        post([](Listener& to) { to.dvdGaveUpChapter(); });
    }
    void dvdEnded() override {
        post([](Listener& to) { to.dvdEnded(); });
    }
    void dvdFailed(const std::string& reason) override {
        m_mailbox->post([&engine = m_engine] { engine.m_startWatch.reset(); });
        post([reason](Listener& to) { to.dvdFailed(reason); });
    }

private:
    template <class Report>
    void post(Report report) {
        m_mailbox->post([&to = m_listener, report] { report(to); });
    }
    Engine& m_engine;     ///< as the listener only touched in what the mailbox delivers,
    Listener& m_listener; ///< that is while it lives
    std::shared_ptr<Mailbox> m_mailbox;
};

/** The engine's thread and what lives on it. Kept alive by the thread itself,
 * which may outlast the engine. */
struct Engine::Worker {
    EventLoop loop;
    std::shared_ptr<engine::FrameSink> frames;
    std::unique_ptr<Reporter> reporter;
    std::unique_ptr<Session> session ZM_GUARDED_BY(mutex);
    Mutex mutex;
    Condition left;
    bool gone ZM_GUARDED_BY(mutex) = false;

    /** On the thread, which alone makes and ends it. */
    Session& current() {
        MutexLock lock(mutex);
        return *session;
    }
    void end() {
        std::unique_ptr<Session> ending;
        {
            MutexLock lock(mutex);
            ending = std::move(session);
        }
        ending.reset();
        frames->clear();
        MutexLock lock(mutex);
        gone = true;
        left.notifyAll();
    }
};

Engine::Engine(EventLoop& home, std::shared_ptr<engine::FrameSink> frames, SoundMaker makeSound)
    : m_home(home), m_mailbox(std::make_shared<Mailbox>(home)), m_worker(std::make_shared<Worker>()) {
    m_worker->frames = std::move(frames);
    m_worker->loop.post([worker = m_worker.get(), makeSound = std::move(makeSound)] {
        engine::initDecoders();
        auto session = std::make_unique<Session>(worker->loop, *worker->reporter, *worker->frames, makeSound);
        MutexLock lock(worker->mutex);
        worker->session = std::move(session);
    });
}

Engine::~Engine() {
    m_mailbox->close();
    m_worker->loop.quit();
    MutexLock lock(m_worker->mutex);
    const auto deadline = std::chrono::steady_clock::now() + LeaveDeadline;
    const bool begun = m_worker->reporter != nullptr;
    while (begun && !m_worker->gone && m_worker->left.waitUntil(lock, deadline)) {
    }
    if (begun && !m_worker->gone) {
        logWarning("the DVD's decoder hangs and is left behind\n");
        // Its thread will not do so any more, and the reader keeps the disc open.
        if (const int reader = m_worker->session ? m_worker->session->reader() : 0; reader > 0) {
            ::kill(reader, SIGKILL);
            // Without a thread for it, it stays a zombie until the service ends.
            (void)runInBackground([reader] { ::waitpid(reader, nullptr, 0); });
        }
    }
}

void Engine::start(const std::string& path, Listener& listener, engine::StartMode mode,
                   std::optional<DvdPlace> place) {
    m_worker->reporter = std::make_unique<Reporter>(*this, listener, m_mailbox);
    const auto begun = runInBackground([worker = m_worker] {
        worker->loop.run();
        worker->end();
    });
    if (!begun) {
        m_worker->reporter.reset();
        m_mailbox->post([&listener, text = begun.error()] { listener.dvdFailed(text); });
        return;
    }
    post([=](Session& session) { session.start(path, mode, place); });
    m_startWatch = afterDelay(m_home, StartDeadline, [this, &listener] {
        m_mailbox->close();
        listener.dvdFailed("the decoder does not answer");
    });
}

void Engine::post(std::function<void(Session&)> task) {
    m_worker->loop.post([worker = m_worker.get(), task = std::move(task)] { task(worker->current()); });
}

} // namespace zm::disc::dvd
