#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace zm::test {

/** Sound of 44,100 Hz, two channels one after the other. */
using Sound = std::vector<int16_t>;

/** Noise that never repeats, the same each time; `frames` of it from the frame `first` on. */
Sound noise(size_t first, size_t frames);
/** As `noise`, but softer and deeper, as lossy formats keep it. */
Sound hiss(size_t first, size_t frames);

/** What ZM_SOUND has written. */
Sound recordedSound(const std::string& path);
/** The bytes of a WAV file of it. */
std::string wavOf(const Sound& sound, uint32_t rate = 44100);
/** The bare bytes of it, as on a CD. */
std::string bytesOf(const Sound& sound);

/** A part of some sound, in frames; `first` is None for silence and what is not in it. */
struct Passage {
    static constexpr size_t None = size_t(-1);
    size_t first = None;
    size_t count = 0;
    bool operator==(const Passage&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Passage& passage);
/** Which passages of the first `frames` frames of `noise` were heard, one after the other. */
std::vector<Passage> passagesOfNoise(const Sound& heard, size_t frames);

/** How alike two pieces of the same size are: 1 the same, 0 nothing in common. */
double likeness(const int16_t* a, const int16_t* b, size_t samples);
/** By how many frames `heard` is late against `wanted` around the frame `at`, at most 5 either way; as they are most
 * alike. */
int latenessAt(const Sound& heard, const Sound& wanted, size_t at);

} // namespace zm::test
