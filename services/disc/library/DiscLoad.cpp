#include "services/disc/library/DiscLoad.h"

#include "base/Threads.h"
#include "services/disc/library/Scanner.h"

#include <thread>

namespace zm::disc::library {

namespace {

// A drive that has not moved on for this long does not answer any more.
constexpr std::chrono::seconds Patience{10};
// A mechanism takes its time for a disc. Whoever follows "discstate" looks at its present value when it gets
// to it, and must find "loading" there, however small the disc.
constexpr std::chrono::milliseconds SpinUpTime{200};

void fillCatalogue(Catalogue& catalogue, const model::Contents& contents, const ScanProgress& progress,
                   Mailbox& mailbox, LoadListener& listener) {
    for (const auto& row : model::kinds) {
        if (contents.of(row.kind).empty()) {
            continue;
        }
        if (auto status = catalogue.write(contents, row.kind, progress.cancelled); !status) {
            mailbox.post([&listener, text = status.error()] { listener.loadFailed(text); });
            return;
        }
        mailbox.post([&listener, kind = row.kind] { listener.loadCatalogued(kind); });
    }
    mailbox.post([&listener] { listener.loadFinished(); });
}

// The reading thread. `listener` is only used in what the mailbox delivers.
void load(medium::Medium& medium, Catalogue& catalogue, ScanProgress& progress, Mailbox& mailbox,
          LoadListener& listener) {
    const auto cleared = catalogue.clear();
    const auto spunUp = std::chrono::steady_clock::now() + SpinUpTime;
    mailbox.post([&listener] { listener.loadBegun(); });
    if (!cleared) {
        // What still stands in the catalogue is of the disc before.
        mailbox.post([&listener, text = cleared.error()] { listener.loadFailed(text); });
        return;
    }
    auto found = scan(medium, progress);
    std::this_thread::sleep_until(spunUp);
    if (!found) {
        mailbox.post([&listener, text = found.error()] { listener.loadFailed(text); });
        return;
    }
    const auto contents = std::make_shared<const model::Contents>(std::move(*found));
    mailbox.post([&listener, contents] { listener.loadScanned(contents); });
    fillCatalogue(catalogue, *contents, progress, mailbox, listener);
}

} // namespace

DiscLoad::DiscLoad(EventLoop& loop, LoadListener& listener, std::shared_ptr<medium::Medium> medium,
                   std::shared_ptr<Catalogue> catalogue)
    : m_listener(listener), m_mailbox(std::make_shared<Mailbox>(loop)),
      m_progress(std::make_shared<ScanProgress>()) {
    m_watch = everyInterval(loop, Patience, [this] { watch(); });
    const auto begun = runInBackground([medium = std::move(medium), catalogue = std::move(catalogue),
                                        progress = m_progress, mailbox = m_mailbox, &listener] {
        load(*medium, *catalogue, *progress, *mailbox, listener);
        // The end of the scan is progress, too.
        progress->steps = -1;
    });
    if (!begun) {
        m_watch.reset();
        m_mailbox->post([&listener, text = begun.error()] {
            listener.loadBegun();
            listener.loadFailed(text);
        });
    }
}

DiscLoad::~DiscLoad() {
    m_progress->cancelled = true;
    m_mailbox->close();
}

void DiscLoad::watch() {
    const int steps = m_progress->steps;
    if (steps >= 0 && std::exchange(m_lastSteps, steps) == steps) {
        m_watch.reset();
        m_mailbox->close();
        m_progress->cancelled = true;
        m_listener.loadFailed("the drive does not answer");
    }
}

} // namespace zm::disc::library
