#pragma once

#include "base/EventLoop.h"
#include "base/Mailbox.h"
#include "services/disc/engine/Engine.h"
#include "services/disc/engine/FileSource.h"
#include "services/disc/engine/Gst.h"
#include "services/disc/engine/MusicChain.h"
#include "services/disc/engine/PictureBin.h"

#include <optional>

namespace zm::disc::engine {

/**
 * Decodes and plays one file. Everything on the thread of `loop`, where `listener` is called too; building,
 * seeking and destroying may take as long as a decoder does.
 */
class FilePipeline {
public:
    FilePipeline(EventLoop& loop, Listener& listener, FrameSink& frames, const Playable& playable,
                 std::shared_ptr<ByteFeed> feed);
    ~FilePipeline();
    FilePipeline(const FilePipeline&) = delete;
    FilePipeline& operator=(const FilePipeline&) = delete;

    void start(Milliseconds position, StartMode mode);
    void pause();
    void resume();
    void seek(Milliseconds position);
    void scan(int speed);
    void view(const PictureView& view);
    void choose(const StreamChoice& choice);
    /** Has `playable` follow without a gap, if both are music; until the next `seek` or `scan`. False when decoding has
     * already passed on to what was to follow before. */
    bool follow(const Playable& playable, std::shared_ptr<ByteFeed> feed);
    void followNothing();

private:
    enum class Precision { KeyFrame, Exact };

    bool build();
    bool buildMusic();
    bool buildPicture();
    void setUp(GstElement* part);
    void watchStart();
    void run();
    void prepareNext(bool opened);
    void awaitNext();
    void passToNext();
    bool comeBack(Milliseconds position);
    void listen();
    void receive(GstMessage* message);
    void prerolled();
    void noteMissing(GstMessage* message);
    void meetError(const std::string& text);
    void noteKeptError(GstMessage* message);
    std::string missingDecoders() const;
    void ended();
    void fail(const std::string& reason);
    void report();
    void scanStep();
    bool jump(Milliseconds position, Precision precision);
    Milliseconds position() const;
    Milliseconds length() const;

    EventLoop& m_loop;
    Listener& m_listener;
    FrameSink& m_frames;
    std::optional<PictureBin> m_picture; ///< outlives the decoder that feeds it
    Playable m_playable;
    std::shared_ptr<FileSource> m_source;
    GstOwned<GstElement> m_player;
    std::optional<MusicChain> m_music;     ///< of a player of music
    std::shared_ptr<FileSource> m_opening; ///< of what is to follow
    Playable m_next;
    std::shared_ptr<Mailbox> m_mailbox;
    SourceHandle m_passing; ///< runs until the next file is heard
    Milliseconds m_lengthBefore{0};
    SourceHandle m_bus;
    SourceHandle m_clock; ///< reports the position, or steps a scan
    SourceHandle m_startWatch;

    std::string m_missing;   ///< what decoders are not installed for
    std::string m_keptError; ///< what a part of the decoder has reported while it was connected
    StreamChoice m_choice;
    bool m_started = false;
    bool m_over = false; ///< ended or failed: nothing more is reported
    StartMode m_mode = StartMode::Playing;
    Milliseconds m_first{0};
    int m_scanSpeed = 0;
    Milliseconds m_scanPosition{0};
    bool m_seeking = false;
    Milliseconds m_target{0}; ///< of a seek under way
};

} // namespace zm::disc::engine
