#pragma once

#include "services/disc/engine/Gst.h"

#include <cstdint>

namespace zm::disc::engine {

/** What a file element gives to its decoder. Called on the decoder's threads, one at a time for each read. */
class FileBytes {
public:
    virtual ~FileBytes() = default;
    virtual uint64_t size() const = 0;
    /** Whether the decoder may jump about. If not, it gets what `read` gives from 0 on. */
    virtual bool seekable() const = 0;
    /** What kind of bytes they are; null to have the decoder find out. */
    virtual GstOwned<GstCaps> caps() const = 0;
    /** Bytes from `offset` on, `size` of them if there are as many; null at the end. */
    virtual GstOwned<GstBuffer> read(uint64_t offset, size_t size) = 0;
};

/**
 * The source element of a player: for the address `FileElementUri` the player makes one and announces it with
 * its signal "source-setup", where `giveBytes` is called.
 */
inline constexpr const char* FileElementUri = "zmdiscfile://";
inline constexpr const char* FileElementName = "zmdiscfile";
/** Makes the address known; once, after GStreamer's own start. */
void registerFileElement();
/** `bytes` outlives the element's use. */
void giveBytes(GstElement* fileElement, FileBytes& bytes);

} // namespace zm::disc::engine
