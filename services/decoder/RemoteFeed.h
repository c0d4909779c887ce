#pragma once

#include "base/Mutex.h"
#include "base/Socket.h"
#include "services/disc/engine/ByteFeed.h"

#include <atomic>

namespace zm::decoder {

/** A file whose bytes the disc service sends. Waiting for the drive has its deadline there. */
class RemoteFeed : public disc::engine::ByteFeed {
public:
    explicit RemoteFeed(UniqueFd service) : m_service(std::move(service)) {}
    Result<uint64_t> open() override;
    void cancel() override;
    std::string failure() const override;

protected:
    std::vector<char> fetch(uint64_t offset) override;

private:
    /** What follows the letter `expected` in the next answer. */
    Result<std::string> answer(char expected);

    SyncConnection m_service;
    mutable Mutex m_mutex;
    std::string m_failure ZM_GUARDED_BY(m_mutex);
};

} // namespace zm::decoder
