#include "services/disc/library/CatalogueGuard.h"

#include "base/Threads.h"
#include "services/disc/log/Log.h"

namespace zm::disc::library {

namespace {

constexpr std::chrono::milliseconds LookInterval{1000};

} // namespace

CatalogueGuard::CatalogueGuard(EventLoop& loop, std::shared_ptr<Catalogue> catalogue,
                               std::shared_ptr<const model::Contents> contents,
                               std::function<void()> onRestored)
    : m_catalogue(std::move(catalogue)), m_contents(std::move(contents)), m_onRestored(std::move(onRestored)),
      m_mailbox(std::make_shared<Mailbox>(loop)), m_cancelled(std::make_shared<std::atomic<bool>>(false)) {
    m_watch = everyInterval(loop, LookInterval, [this] { look(); });
}

CatalogueGuard::~CatalogueGuard() {
    *m_cancelled = true;
    m_mailbox->close();
}

void CatalogueGuard::look() {
    if (!m_restoring && !m_catalogue->intact()) {
        logWarning("the catalogue was taken away: made anew\n");
        restore();
    }
}

void CatalogueGuard::restore() {
    const auto begun = runInBackground(
        [this, catalogue = m_catalogue, contents = m_contents, mailbox = m_mailbox, cancelled = m_cancelled] {
            auto status = catalogue->clear();
            for (const auto& row : model::kinds) {
                if (!status || contents->of(row.kind).empty()) {
                    continue;
                }
                status = catalogue->write(*contents, row.kind, *cancelled);
                if (status) {
                    mailbox->post([this] { m_onRestored(); });
                }
            }
            mailbox->post([this, text = status ? std::string() : status.error()] {
                m_restoring = false; // what did not succeed is tried again
                if (!text.empty()) {
                    logWarning("%s\n", text.c_str());
                }
            });
        });
    m_restoring = static_cast<bool>(begun);
}

} // namespace zm::disc::library
