#include "services/decoder/RemoteFeed.h"

#include "services/disc/engine/DecoderWire.h"

#include <cstring>

namespace zm::decoder {

using namespace zm::disc::engine;

Result<std::string> RemoteFeed::answer(char expected) {
    auto message = m_service.receive();
    std::string failure = message ? "no sense in the answer" : message.error();
    if (message && !message->text.empty() && message->text[0] == expected) {
        return message->text.substr(1);
    }
    if (message && !message->text.empty() && message->text[0] == wire::ErrorAnswer) {
        failure = message->text.substr(1);
    }
    MutexLock lock(m_mutex);
    m_failure = m_failure.empty() ? failure : m_failure;
    return Error{m_failure};
}

Result<uint64_t> RemoteFeed::open() {
    const auto text = answer(wire::SizeAnswer);
    if (!text) {
        return text.failure();
    }
    uint64_t size = 0;
    std::memcpy(&size, text->data(), std::min(sizeof size, text->size()));
    return size;
}

std::vector<char> RemoteFeed::fetch(uint64_t offset) {
    const wire::BlockRequest request{offset};
    // A service that is gone shows in the answer that never comes.
    static_cast<void>(m_service.send({reinterpret_cast<const char*>(&request), sizeof request}));
    const auto text = answer(wire::BlockAnswer);
    return text ? std::vector<char>(text->begin(), text->end()) : std::vector<char>();
}

void RemoteFeed::cancel() {
    m_service.shutdown();
}

std::string RemoteFeed::failure() const {
    MutexLock lock(m_mutex);
    return m_failure;
}

} // namespace zm::decoder
