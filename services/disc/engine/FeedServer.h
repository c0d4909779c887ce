#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"
#include "services/disc/engine/Feed.h"

#include <memory>

namespace zm::disc::engine {

/**
 * Has a thread of its own serve `feed` to another process, until that one closes its end or the feed is
 * cancelled. Gives the end for the other process.
 */
Result<UniqueFd> serveFeed(const std::shared_ptr<Feed>& feed);

} // namespace zm::disc::engine
