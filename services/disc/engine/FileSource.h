#pragma once

#include "base/Mutex.h"
#include "services/disc/engine/ByteFeed.h"
#include "services/disc/engine/FileElement.h"
#include "services/disc/engine/PhotoHeader.h"
#include "services/disc/engine/SoundRange.h"
#include "services/disc/model/Media.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <vector>

namespace zm::disc::engine {

/**
 * Hands the bytes of a file to a decoder. Sound and video are read where the decoder wants them. A photo is
 * read whole and handed over in one piece: some decoders take it in no other way, and a picture that is
 * turned or enlarged does not have to be read again. `open` may take as long as the feed's deadline.
 */
class FileSource : public FileBytes {
public:
    FileSource(std::shared_ptr<ByteFeed> feed, model::MediaKind kind)
        : m_feed(std::move(feed)), m_kind(kind) {}

    /** Opens the file; comes before the others. */
    Status open();
    /** Why reading ended early; empty if it did not. */
    std::string failure() const { return m_feed->failure(); }
    /** Ends a read that hangs, and all later ones. */
    void cancel() { m_feed->cancel(); }

    /** Of a photo that is open. */
    const PhotoHeader& photo() const { return m_header; }
    /** Of music that is open. */
    const SoundRange& sound() const { return m_sound; }
    /** Whether the decoder has not read for that long and is not about to. Any thread. */
    bool isQuiet(std::chrono::milliseconds time) const;

    uint64_t size() const override { return m_size; }
    bool seekable() const override { return m_kind != model::MediaKind::Photo; }
    GstOwned<GstCaps> caps() const override;
    GstOwned<GstBuffer> read(uint64_t offset, size_t size) override;

private:
    void patch(uint64_t offset, std::vector<char>& bytes) const;
    using Clock = std::chrono::steady_clock;

    std::shared_ptr<ByteFeed> m_feed;
    model::MediaKind m_kind;
    uint64_t m_size = 0;
    PhotoHeader m_header;
    SoundRange m_sound;
    GstOwned<GstBuffer> m_photo;
    Mutex m_mutex; ///< decoders read from several threads
    std::atomic<int> m_reads = 0;
    std::atomic<Clock::rep> m_lastRead = Clock::now().time_since_epoch().count();
};

} // namespace zm::disc::engine
