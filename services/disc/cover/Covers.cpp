#include "services/disc/cover/Covers.h"

#include "services/disc/log/Log.h"

#include <chrono>
#include <filesystem>

namespace zm::disc::cover {

namespace {

constexpr uint64_t MostBytes = 64'000'000;
// Songs of one album follow each other: a picture that went and came back would flicker.
constexpr std::chrono::milliseconds GraceTime{400};

} // namespace

Covers::Covers(EventLoop& loop, model::DiscState& state, std::string folder)
    : m_loop(loop), m_state(state), m_folder(std::move(folder)) {
    // Of a service that did not come to its end.
    std::error_code failed;
    std::filesystem::remove_all(m_folder, failed);
}

Covers::~Covers() {
    leave();
}

void Covers::take(std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents) {
    leave();
    m_cache = std::make_shared<CoverCache>(m_folder + "/" + std::to_string(++m_discs), MostBytes);
    m_worker = std::make_unique<CoverWorker>(
        m_loop, std::make_shared<CoverFinder>(std::move(medium), std::move(contents), m_cache),
        [this](const model::Cover& cover) {
            m_grace.reset();
            m_state.cover(cover);
        });
}

void Covers::show(model::MediaKind kind, const model::Item& item) {
    const bool music = kind == model::MediaKind::Music;
    const auto shown = music ? std::pair(item.folderId, item.fileId) : std::pair(0, 0);
    if (!m_worker || shown == m_shown) {
        return;
    }
    m_shown = shown;
    m_grace.reset();
    if (!music) {
        m_worker->forget();
        m_state.cover({});
        return;
    }
    m_grace = afterDelay(m_loop, GraceTime, [this] { m_state.cover({}); });
    if (auto begun = m_worker->look(item); !begun) {
        logWarning("no covers: %s\n", begun.error().c_str());
    }
}

void Covers::leave() {
    m_grace.reset();
    m_worker.reset();
    if (m_cache) {
        m_cache->close();
        m_cache.reset();
        m_state.cover({});
    }
    m_shown = {0, 0};
}

} // namespace zm::disc::cover
