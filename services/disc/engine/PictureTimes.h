#pragma once

#include <gst/gst.h>

#include <cstdint>
#include <optional>
#include <span>

namespace zm::disc::engine {

/**
 * Says when each picture of an MPEG video is shown, also those that have no time: discs and files need not give one to every
 * picture, and a decoder's guess at the time of a single one throws the pictures around it away. Takes the pictures in the
 * order in which they are decoded. One thread.
 */
class PictureTimes {
public:
    /** What follows has nothing to do with what was before. */
    void restart() { *this = {}; }

    /** When the picture with its headers in `coded` is shown, `given` if that is known; GST_CLOCK_TIME_NONE when
     * that cannot be told. */
    GstClockTime of(std::span<const uint8_t> coded, GstClockTime given, GstClockTime duration);

    /** Gives each buffer that leaves `parser` (one picture each) its time from now on. */
    static void attach(GstElement* parser);

private:
    /** A picture that others are made from: it is shown when the next such one is decoded. */
    struct Reference {
        GstClockTime time = GST_CLOCK_TIME_NONE;
        GstClockTime end = GST_CLOCK_TIME_NONE;
        int number = 0;
    };

    std::optional<Reference> m_reference;
    GstClockTime m_shown = GST_CLOCK_TIME_NONE; ///< end of the picture that is shown last so far
};

} // namespace zm::disc::engine
