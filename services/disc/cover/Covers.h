#pragma once

#include "base/EventLoop.h"
#include "services/disc/cover/CoverCache.h"
#include "services/disc/cover/CoverWorker.h"
#include "services/disc/model/Contents.h"
#include "services/disc/model/DiscState.h"

#include <memory>
#include <string>
#include <utility>

namespace zm::disc::medium {
class Medium;
}

namespace zm::disc::cover {

/**
 * Publishes the cover of the song that plays. Nothing waits for it: it comes when it has been found, and what is shown
 * meanwhile is no other song's for long. On the service's loop.
 */
class Covers {
public:
    /** `folder` is its own: what is in it goes. */
    Covers(EventLoop& loop, model::DiscState& state, std::string folder);
    ~Covers();

    /** A disc with files or tracks has been read. */
    void take(std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents);
    /** That item plays from now on. */
    void show(model::MediaKind kind, const model::Item& item);
    /** The disc leaves: its covers go with it. */
    void leave();

private:
    EventLoop& m_loop;
    model::DiscState& m_state;
    std::string m_folder;
    int m_discs = 0; ///< since the start; each has a folder of its own
    std::shared_ptr<CoverCache> m_cache;
    std::unique_ptr<CoverWorker> m_worker;
    std::pair<int, int> m_shown{0, 0}; ///< folder and file of the song that plays
    SourceHandle m_grace;              ///< runs while the cover before may still be shown
};

} // namespace zm::disc::cover
