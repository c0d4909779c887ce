#include "services/disc/dvd/DvdEngine.h"

#include "base/Threads.h"
#include "services/disc/engine/Decoders.h"
#include "services/disc/log/Log.h"

#include <condition_variable>
#include <mutex>

namespace zm::disc {

namespace {

// Longer than a read's deadline, so that a slow disc is told from a decoder that hangs.
constexpr Milliseconds StartDeadline{15000};
constexpr std::chrono::seconds LeaveDeadline{1};

} // namespace

/** Carries a session's reports from its thread to the service's loop. */
class DvdEngine::Reporter : public DvdListener {
public:
    Reporter(DvdEngine& engine, DvdListener& listener, std::shared_ptr<Mailbox> mailbox)
        : m_engine(engine), m_listener(listener), m_mailbox(std::move(mailbox)) {}

    void dvdOpened(const DvdTitles& titles) override {
        post([titles](DvdListener& to) { to.dvdOpened(titles); });
    }
    void dvdArrived() override {
        m_mailbox->post([&engine = m_engine] { engine.m_startWatch.reset(); });
        post([](DvdListener& to) { to.dvdArrived(); });
    }
    void dvdShows(const DvdScene& scene) override {
        post([scene](DvdListener& to) { to.dvdShows(scene); });
    }
    void dvdRefused() override {
        post([](DvdListener& to) { to.dvdRefused(); });
    }
    void dvdScanned(ScanEdge edge) override {
        post([edge](DvdListener& to) { to.dvdScanned(edge); });
    }
    void dvdGaveUpChapter() override {
        post([](DvdListener& to) { to.dvdGaveUpChapter(); });
    }
    void dvdEnded() override {
        post([](DvdListener& to) { to.dvdEnded(); });
    }
    void dvdFailed(const std::string& reason) override {
        m_mailbox->post([&engine = m_engine] { engine.m_startWatch.reset(); });
        post([reason](DvdListener& to) { to.dvdFailed(reason); });
    }

private:
    template <class Report>
    void post(Report report) {
        m_mailbox->post([&to = m_listener, report] { report(to); });
    }
    DvdEngine& m_engine;     ///< as the listener only touched in what the mailbox delivers,
    DvdListener& m_listener; ///< that is while it lives
    std::shared_ptr<Mailbox> m_mailbox;
};

/** The engine's thread and what lives on it. Kept alive by the thread itself, which may outlast the engine.
 */
struct DvdEngine::Worker {
    EventLoop loop;
    std::shared_ptr<FrameSink> frames;
    std::unique_ptr<Reporter> reporter;
    std::unique_ptr<DvdSession> session;
    std::mutex mutex;
    std::condition_variable left;
    bool gone = false;
};

DvdEngine::DvdEngine(EventLoop& home, std::shared_ptr<FrameSink> frames, SoundMaker makeSound)
    : m_home(home), m_mailbox(std::make_shared<Mailbox>(home)), m_worker(std::make_shared<Worker>()) {
    m_worker->frames = std::move(frames);
    m_worker->loop.post([worker = m_worker.get(), makeSound = std::move(makeSound)] {
        initDecoders();
        worker->session =
            std::make_unique<DvdSession>(worker->loop, *worker->reporter, *worker->frames, makeSound);
    });
}

DvdEngine::~DvdEngine() {
    m_mailbox->close();
    m_worker->loop.quit();
    std::unique_lock lock(m_worker->mutex);
    if (m_worker->reporter &&
        !m_worker->left.wait_for(lock, LeaveDeadline, [this] { return m_worker->gone; })) {
        logWarning("the DVD's decoder hangs and is left behind\n");
    }
}

void DvdEngine::start(const std::string& path, DvdListener& listener, StartMode mode) {
    m_worker->reporter = std::make_unique<Reporter>(*this, listener, m_mailbox);
    const auto begun = runInBackground([worker = m_worker] {
        worker->loop.run();
        worker->session.reset();
        worker->frames->clear();
        std::lock_guard lock(worker->mutex);
        worker->gone = true;
        worker->left.notify_all();
    });
    if (!begun) {
        m_worker->reporter.reset();
        m_mailbox->post([&listener, text = begun.error()] { listener.dvdFailed(text); });
        return;
    }
    post([path, mode](DvdSession& session) { session.start(path, mode); });
    m_startWatch = afterDelay(m_home, StartDeadline, [this, &listener] {
        m_mailbox->close();
        listener.dvdFailed("the decoder does not answer");
    });
}

void DvdEngine::post(std::function<void(DvdSession&)> task) {
    m_worker->loop.post([worker = m_worker.get(), task = std::move(task)] { task(*worker->session); });
}

} // namespace zm::disc
