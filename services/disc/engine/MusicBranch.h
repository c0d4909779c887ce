#pragma once

#include "services/disc/engine/FileSource.h"
#include "services/disc/engine/Gst.h"
#include "services/disc/engine/SoundTrim.h"

#include <memory>

namespace zm::disc::engine {

/** One file's part of a pipeline that plays music: what reads and decodes it. */
class MusicBranch {
public:
    /** Name of the element message that tells that it waits for `join`. */
    static constexpr const char* ReadyName = "zm-music-ready";

    /** Puts it into `pipeline`. `source` is open. */
    MusicBranch(GstElement* pipeline, std::shared_ptr<FileSource> source);
    /** Takes it out again. */
    ~MusicBranch();
    MusicBranch(const MusicBranch&) = delete;
    MusicBranch& operator=(const MusicBranch&) = delete;

    bool complete() const { return m_bin != nullptr; }
    /** Its sound goes to `joint` as soon as there is some; before it begins. */
    void joinAtOnce(GstElement* joint) { m_joint = joint; }
    /** Decodes up to the first sound, which is held back. */
    void prepare();
    /** The sound that is held back goes to `joint`. */
    void join(GstElement* joint);

    /** Whether `message` comes from here. */
    bool sent(GstMessage* message) const;
    const std::shared_ptr<FileSource>& source() const { return m_source; }
    /** Its place at the joint; null before. */
    GstPad* place() const { return m_place; }

private:
    void appeared(GstPad* pad);
    void link(GstPad* pad);
    GstPadProbeReturn end();

    GstElement* m_pipeline;
    std::shared_ptr<FileSource> m_source;
    SoundTrim m_trim;
    GstElement* m_bin = nullptr;
    GstElement* m_joint = nullptr;
    GstPad* m_sound = nullptr; ///< of the decoder
    GstPad* m_place = nullptr;
    gulong m_held = 0;
};

} // namespace zm::disc::engine
