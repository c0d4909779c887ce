#pragma once

#include "base/ScreenSize.h"
#include "services/disc/engine/FrameSink.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

/** What zmdiscd and its decoder's process say to each other; docs/protocols.md describes it. */
namespace zm::disc::engine::wire {

using Json = nlohmann::json;

/** Descriptors that the process is born with. */
inline constexpr int ControlFd = 3; ///< messages of JSON both ways
inline constexpr int FramesFd = 4;  ///< pictures shown and given back
inline constexpr int RingFd = 5;    ///< shared memory of the pictures

/** The ring's places, each of them a picture. */
inline constexpr uint32_t Slots = 3;
/** A picture's, from the screen's size itself: some compilers set one such constant before another that it is made of. */
inline size_t pictureBytes() {
    return size_t{4} * static_cast<size_t>(screenSize().width) * static_cast<size_t>(screenSize().height);
}
inline const int Stride = screenSize().width * 4;
inline const size_t SlotBytes = pictureBytes();
inline const size_t RingBytes = Slots * pictureBytes();

/** "This place holds a picture of that item", and, on the way back, "this place is free". */
struct FrameNote {
    uint64_t item = 0;
    uint64_t slot = 0;
};

/** A wish for the block of a file that begins there. The answer is a letter and what belongs to it. */
struct BlockRequest {
    uint64_t offset = 0;
};
inline constexpr char SizeAnswer = 'S';  ///< comes first, unasked: eight bytes, the file's size
inline constexpr char BlockAnswer = 'B'; ///< the bytes; none at the end
inline constexpr char ErrorAnswer = 'E'; ///< why there will be no more

/** Text of a message; names on a disc are not always UTF-8. */
std::string textOf(const Json& json);

/** A message's text as an object; an empty object if it is not one. */
Json objectOf(const std::string& text);

/** An integer of a message; 0 if it is missing. */
int64_t numberOf(const Json& json, const char* name);

std::string stringOf(const Json& json, const char* name);

} // namespace zm::disc::engine::wire
