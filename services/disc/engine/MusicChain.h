#pragma once

#include "services/disc/engine/Engine.h"
#include "services/disc/engine/MusicBranch.h"

#include <atomic>
#include <memory>
#include <optional>

namespace zm::disc::engine {

/**
 * Music files that follow each other without a sample more or less: each has a decoder of its own, all of them have
 * one way to the device. Decoding passes on to the next file a moment before it is heard; that one is the current
 * one when `pass` is called. On the pipeline's thread.
 */
class MusicChain {
public:
    /** All of it goes into `pipeline`, which lives longer. */
    explicit MusicChain(GstElement* pipeline) : m_pipeline(pipeline) {}

    /** The first file. False when elements are missing. */
    bool begin(const std::shared_ptr<FileSource>& source);
    /** Prepares what is to follow; if that is not possible in time, nothing follows. Not when decoding has passed
     * on. */
    void prepare(const std::shared_ptr<FileSource>& source);
    /** Nothing is to follow, unless decoding has passed on. */
    void forget();

    /** Deals with a message of the pipeline; true if that is all. */
    bool handle(GstMessage* message);
    /** Whether decoding has passed on to the next file. */
    bool passedOn() const { return m_border != GST_CLOCK_TIME_NONE; }
    /** How long the current file will still be heard when decoding has passed on. */
    Milliseconds left() const;
    /** The next file is the current one from now on; gives it. Only when decoding has passed on. */
    std::shared_ptr<FileSource> pass();
    /** No read holds up the end of it all; the current file's are those of its source. */
    void cancelNext();

private:
    void see(GstEvent* event);

    GstElement* m_pipeline;
    GstElement* m_joint = nullptr;
    std::unique_ptr<MusicBranch> m_current;
    std::unique_ptr<MusicBranch> m_next;
    std::atomic<GstPad*> m_nextPlace = nullptr;
    std::atomic<GstClockTime> m_border = GST_CLOCK_TIME_NONE; ///< when the next file begins to be heard
};

} // namespace zm::disc::engine
