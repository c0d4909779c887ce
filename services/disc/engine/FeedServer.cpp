#include "services/disc/engine/FeedServer.h"

#include "base/Socket.h"
#include "base/Threads.h"
#include "services/disc/engine/DecoderWire.h"

#include <sys/socket.h>

#include <cstring>

namespace zm::disc::engine {

namespace {

// Bytes read at once: the feed's blocks.
constexpr size_t AnswerBytes = 256 * 1024;

// The last word of a conversation; a decoder that is gone by now misses nothing.
void refuse(SyncConnection& peer, const std::string& why) {
    static_cast<void>(peer.send(wire::ErrorAnswer + why));
}

void serve(SyncConnection& peer, Feed& feed) {
    const auto size = feed.open();
    if (!size) {
        refuse(peer, size.error());
        return;
    }
    std::string answer(1 + sizeof *size, wire::SizeAnswer);
    std::memcpy(answer.data() + 1, &*size, sizeof *size);
    bool sent = static_cast<bool>(peer.send(answer));
    while (sent) {
        const auto message = peer.receive();
        wire::BlockRequest request;
        if (!message || message->text.size() != sizeof request) {
            return;
        }
        std::memcpy(&request, message->text.data(), sizeof request);
        const std::vector<char> bytes = feed.read(request.offset, AnswerBytes);
        if (const std::string failure = feed.failure(); !failure.empty()) {
            refuse(peer, failure);
            return;
        }
        answer.assign(1, wire::BlockAnswer);
        answer.append(bytes.data(), bytes.size());
        sent = static_cast<bool>(peer.send(answer));
    }
}

} // namespace

Result<UniqueFd> serveFeed(const std::shared_ptr<Feed>& feed) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return systemError("socket pair");
    }
    UniqueFd theirs(ends[1]);
    auto ours = std::make_shared<SyncConnection>(UniqueFd(ends[0]));
    const auto begun = runInBackground([ours, feed] {
        serve(*ours, *feed);
        ours->shutdown();
    });
    if (!begun) {
        return begun.failure();
    }
    return theirs;
}

} // namespace zm::disc::engine
