#pragma once

#include "base/Mutex.h"
#include "services/disc/engine/FilmPicture.h"
#include "services/disc/engine/FrameSink.h"
#include "services/disc/engine/Gst.h"
#include "services/disc/engine/PicturePlace.h"
#include "services/disc/engine/PictureView.h"

namespace zm::disc::engine {

/** What a decoder's pictures are: those of a film follow each other; upright ones need not, and cannot, be turned. */
enum class PictureKind { Film, Photo, UprightFilm };

/**
 * The element that takes a decoder's pictures and gives them, in the screen's size and in their own shape
 * between black bars, to a frame sink.
 */
class PictureBin {
public:
    /** `frames` outlives the element. */
    PictureBin(FrameSink& frames, PictureKind kind);
    PictureBin(const PictureBin&) = delete;
    PictureBin& operator=(const PictureBin&) = delete;

    /** For the decoder's property "video-sink"; null when elements are missing. */
    GstElement* element() const { return m_bin.get(); }
    /** Takes effect with the next picture. */
    void view(const PictureView& view);

private:
    void takeAnySize();
    GstFlowReturn give(GstSample* taken);
    void fit(const GstCaps* caps);

    GstOwned<GstElement> m_bin;
    GstOwned<GstElement> m_crop;
    GstOwned<GstElement> m_turn;  ///< null for upright ones
    GstOwned<GstCaps> m_accepted; ///< what pictures may be like when they arrive
    FrameSink& m_frames;
    FilmPicture m_film; ///< on the thread of the pictures
    Mutex m_mutex;      ///< pictures come on a thread of the decoder's
    double m_zoom ZM_GUARDED_BY(m_mutex) = 1.0;
    PictureSize m_size ZM_GUARDED_BY(m_mutex); ///< of the pictures that come at present
};

} // namespace zm::disc::engine
