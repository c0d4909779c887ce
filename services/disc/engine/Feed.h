#pragma once

#include "services/disc/engine/ByteFeed.h"
#include "services/disc/medium/Medium.h"

#include <memory>
#include <string>
#include <vector>

namespace zm::disc::engine {

/**
 * Reads one file of a disc for a decoder. The drive is touched by a thread of its own only, so that nobody is
 * held by a read that hangs: every call here ends after the read's deadline at the latest, or at once when
 * `cancel` is called. A thread that hangs is left behind and ends with its read.
 */
class Feed : public ByteFeed {
public:
    /** What a place that cannot be read means. */
    enum class Scratch { Fails, IsPassedOver };

    Feed(std::shared_ptr<medium::Medium> medium, std::string path, Scratch scratch = Scratch::Fails);
    ~Feed() override;
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;

    Result<uint64_t> open() override;
    void cancel() override;
    std::string failure() const override;
    /** Whether the drive is being waited for. Any thread. */
    bool isWaiting() const;

protected:
    std::vector<char> fetch(uint64_t offset) override;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};

} // namespace zm::disc::engine
