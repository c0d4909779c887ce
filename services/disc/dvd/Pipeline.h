#pragma once

#include "base/EventLoop.h"
#include "services/disc/dvd/Element.h"
#include "services/disc/dvd/NavPack.h"
#include "services/disc/dvd/Pack.h"
#include "services/disc/dvd/StandingPicture.h"
#include "services/disc/engine/Gst.h"
#include "services/disc/engine/PictureBin.h"

#include <array>
#include <functional>
#include <optional>
#include <string>

namespace zm::disc::dvd {

/** Makes an audio sink; the reference is floating. */
using SoundMaker = std::function<GstElement*()>;

/** Is told what becomes of the pipeline; on its loop. */
struct PipelineEvents {
    /** The first picture since the start or the last `flush` is there. */
    std::function<void()> prerolled;
    std::function<void(const std::string& reason)> failed;
};

/**
 * Decodes a DVD's streams, draws subtitles and chosen buttons and gives picture and sound out in time. Takes
 * what is pushed without ever waiting; who pushes must not hurry too far ahead of `runningTime`. Times are in
 * 90 kHz and count from 0 after each `flush`. Everything on the thread of `loop`.
 */
class Pipeline {
public:
    Pipeline(EventLoop& loop, engine::FrameSink& frames, const SoundMaker& makeSound, PipelineEvents events);
    ~Pipeline();
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;

    /** Why it could not be built; empty if it was. */
    const std::string& failure() const { return m_failure; }
    void play();
    void pause();
    /** Throws away all that is on its way. */
    void flush();

    /** A piece of a stream whose times have `shift` added. */
    void push(Pad pad, const Fragment& fragment, int64_t shift);
    /** There is no sound in this span. */
    void silence(Pad pad, int64_t begin, int64_t end);
    /** The picture pushed last stands from now on, or no longer. */
    void still(bool stands);
    void colours(const std::array<uint32_t, 16>& colours);
    void subtitleStream(int logical, int stream, bool visible);
    /** Draws a button as chosen or pressed. */
    void highlight(int number, const MenuButton& button, uint32_t colours);
    void noHighlight();
    /** Lines of the disc's whole pictures. */
    void lines(int count);
    /** Takes effect with the next picture. */
    void view(const engine::PictureView& view);
    /** Shows the last picture once more, as it is looked at now. */
    void repeatPicture();

    /** It plays or pauses, and is not on its way there: that takes the next picture and sound. */
    bool settled() const;
    /** What is shown now; 0 until the first picture. */
    int64_t runningTime() const;

private:
    bool build(const SoundMaker& makeSound);
    bool add(const char* description, Pad pad, GstElement* target, const char* targetPad);
    void startStreams();
    void begin(Pad which, GstEvent* event);
    void sendSegment();
    void listen();
    void receive(GstMessage* message);
    void pushBytes(Pad pad, std::span<const uint8_t> bytes, GstClockTime time, GstClockTime decodeTime);
    void sendSubtitleEvent(GstStructure* content, GstEventType type);
    GstPad* pad(Pad which) const { return padOf(m_source, which); }

    EventLoop& m_loop;
    engine::FrameSink& m_frames;
    PipelineEvents m_events;
    std::string m_failure;
    engine::PictureBin m_picture; ///< outlives the pipeline that feeds it
    std::optional<StandingPicture> m_standing;
    double m_zoom = 1.0;
    engine::GstOwned<GstElement> m_pipeline;
    GstElement* m_source = nullptr;    ///< of the pipeline
    GstElement* m_subtitles = nullptr; ///< the same
    SourceHandle m_bus;
    std::array<bool, PadCount> m_broken{}; ///< what is pushed next does not follow what was before
    bool m_prerolled = false;
    mutable int64_t m_time = 0; ///< known last
};

} // namespace zm::disc::dvd
