#include "services/disc/FileEngine.h"

#include "services/disc/Background.h"
#include "services/disc/Decoders.h"
#include "services/disc/FilePipeline.h"
#include "services/disc/Log.h"

#include <condition_variable>

namespace zm::disc {

namespace {

// Longer than one read's deadline, so that a slow disc is told from a decoder that hangs.
constexpr Milliseconds StartDeadline{15000};
constexpr auto LeaveDeadline = std::chrono::seconds(1);

} // namespace

/** Carries a pipeline's reports from the engine's thread to the service's loop. */
class FileEngine::Reporter : public EngineListener {
public:
    Reporter(FileEngine& engine, uint64_t generation)
        : m_engine(engine), m_mailbox(engine.m_mailbox), m_generation(generation) {}

    void engineStreams(const Streams& streams) override {
        post([streams](FileEngine& engine) { engine.m_listener->engineStreams(streams); });
    }
    void engineStarted(Milliseconds length) override {
        post([length](FileEngine& engine) {
            engine.m_startWatch.reset();
            engine.m_listener->engineStarted(length);
        });
    }
    void engineMoved(Milliseconds position, Milliseconds length) override {
        post([=](FileEngine& engine) { engine.m_listener->engineMoved(position, length); });
    }
    void engineEnded() override {
        post([](FileEngine& engine) { engine.m_listener->engineEnded(); });
    }
    void engineScanned(ScanEdge edge) override {
        post([edge](FileEngine& engine) { engine.m_listener->engineScanned(edge); });
    }
    void engineFailed(const std::string& reason) override {
        post([reason](FileEngine& engine) {
            engine.m_startWatch.reset();
            engine.m_listener->engineFailed(reason);
        });
    }

private:
    template <class Report>
    void post(Report report) {
        m_mailbox->post([&engine = m_engine, generation = m_generation, report] {
            if (engine.m_generation == generation) {
                report(engine);
            }
        });
    }
    FileEngine& m_engine; ///< only touched in what the mailbox delivers, that is while it lives
    std::shared_ptr<Mailbox> m_mailbox;
    uint64_t m_generation;
};

/** The engine's thread and what lives on it. Kept alive by the thread itself, which may outlast the engine.
 */
struct FileEngine::Worker {
    EventLoop loop;
    std::shared_ptr<FrameSink> frames;
    std::unique_ptr<Reporter> reporter;
    std::unique_ptr<FilePipeline> pipeline;
    std::mutex mutex;
    std::condition_variable left;
    bool gone = false;
    bool runs = false; ///< for the engine: there was a thread to start

    static std::shared_ptr<Worker> launch(const std::shared_ptr<FrameSink>& frames) {
        auto worker = std::make_shared<Worker>();
        worker->frames = frames;
        const auto begun = runInBackground([worker] {
            initDecoders();
            worker->loop.run();
            worker->pipeline.reset();
            std::lock_guard lock(worker->mutex);
            worker->gone = true;
            worker->left.notify_all();
        });
        worker->runs = static_cast<bool>(begun);
        if (!begun) {
            logError("decoder: %s\n", begun.error().c_str());
        }
        return worker;
    }

    // False if the thread still hangs when the deadline is over.
    bool leave() {
        loop.quit();
        std::unique_lock lock(mutex);
        return left.wait_for(lock, LeaveDeadline, [this] { return gone; });
    }

    template <class Task>
    static void post(const std::shared_ptr<Worker>& worker, Task task) {
        worker->loop.post([worker = worker.get(), task] {
            if (worker->pipeline) {
                task(*worker->pipeline);
            }
        });
    }
};

FileEngine::FileEngine(EventLoop& home, std::shared_ptr<FrameSink> frames)
    : m_home(home), m_frames(std::move(frames)), m_mailbox(std::make_shared<Mailbox>(home)),
      m_worker(Worker::launch(m_frames)) {}

FileEngine::~FileEngine() {
    drop();
    m_mailbox->close();
    if (m_worker->runs && !m_worker->leave()) {
        logWarning("the decoder hangs and is left behind\n");
    }
}

void FileEngine::drop() {
    ++m_generation;
    m_startWatch.reset();
    if (m_feed) {
        m_feed->cancel();
        m_feed.reset();
    }
}

void FileEngine::start(const Playable& playable, EngineListener& listener, Milliseconds position,
                       StartMode mode) {
    drop();
    m_listener = &listener;
    if (!m_worker->runs) {
        m_worker = Worker::launch(m_frames); // there may be a thread by now
    }
    if (!m_worker->runs) {
        m_mailbox->post([this, generation = m_generation] {
            if (m_generation == generation) {
                m_listener->engineFailed("the decoder has no thread");
            }
        });
        return;
    }
    m_feed = std::make_shared<Feed>(playable.medium, playable.path);
    auto reporter = std::make_shared<Reporter>(*this, m_generation);
    m_worker->loop.post([worker = m_worker.get(), feed = m_feed, reporter, playable, position, mode] {
        worker->pipeline.reset();
        if (playable.kind == MediaKind::Music) {
            worker->frames->clear();
        }
        worker->reporter = std::make_unique<Reporter>(*reporter);
        worker->pipeline =
            std::make_unique<FilePipeline>(worker->loop, *worker->reporter, *worker->frames, playable, feed);
        worker->pipeline->start(position, mode);
    });
    watchStart();
}

void FileEngine::watchStart() {
    m_startWatch = afterDelay(m_home, StartDeadline, [this] {
        logWarning("the decoder hangs and is replaced\n");
        drop();
        m_worker->loop.quit();
        m_worker = Worker::launch(m_frames);
        m_listener->engineFailed("the decoder does not answer");
    });
}

void FileEngine::pause() {
    Worker::post(m_worker, [](FilePipeline& pipeline) { pipeline.pause(); });
}

void FileEngine::resume() {
    Worker::post(m_worker, [](FilePipeline& pipeline) { pipeline.resume(); });
}

void FileEngine::seek(Milliseconds position) {
    Worker::post(m_worker, [position](FilePipeline& pipeline) { pipeline.seek(position); });
}

void FileEngine::scan(int speed) {
    Worker::post(m_worker, [speed](FilePipeline& pipeline) { pipeline.scan(speed); });
}

void FileEngine::view(const PictureView& view) {
    Worker::post(m_worker, [view](FilePipeline& pipeline) { pipeline.view(view); });
}

void FileEngine::choose(const StreamChoice& choice) {
    Worker::post(m_worker, [choice](FilePipeline& pipeline) { pipeline.choose(choice); });
}

void FileEngine::stop() {
    drop();
    m_worker->loop.post([worker = m_worker.get()] {
        worker->pipeline.reset();
        worker->frames->clear();
    });
}

} // namespace zm::disc

#ifdef __SANITIZE_ADDRESS__
// GLib replaces its table of names when it grows and, as other threads may still read it, never frees the old
// one. The table is made while the library is loaded; its trace ends with this function.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:^g_malloc$\n";
}
#endif
