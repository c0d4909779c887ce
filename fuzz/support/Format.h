#pragma once

#include "fuzz/support/Random.h"

#include <string>
#include <string_view>
#include <vector>

namespace zm::fuzz {

/** What an input is made of: lines, records, blocks. */
using Pieces = std::vector<std::string>;

/** A language in which inputs are written, so that they can be changed and still be read. */
class Format {
public:
    virtual ~Format() = default;
    virtual Pieces split(std::string_view input) const = 0;
    /** Changes the piece at `at` so that a reader is likely to go on with it; may use the others for that. */
    virtual void change(Pieces& pieces, size_t at, Random& random) const = 0;
    /** Takes some of the pieces of another input. */
    virtual void cross(Pieces& pieces, const Pieces& foreign, Random& random) const;
    /** Makes what has to agree between pieces (lengths, numbers, order) agree. */
    virtual void mend(Pieces& pieces) const = 0;
    /** The input of these pieces: one behind the other, if the language has nothing else to say. */
    virtual std::string join(const Pieces& pieces) const;
    /** Of 100 changes, how many take a piece away, put it somewhere else or double it. */
    virtual size_t movesInHundred() const { return 40; }
};

/** What the program's target reads; defined in the target's own file. */
const Format& format();

/** The input with one to three changes, mended most of the time. The same for the same state of `random`. */
std::string mutated(const Format& format, std::string_view input, Random& random);

/** One input with pieces of another, mended most of the time. */
std::string crossed(const Format& format, std::string_view one, std::string_view other, Random& random);

/** Text or bytes with some change that knows nothing of them; the fuzzer's own where there is one. */
std::string withChangedBytes(std::string bytes, Random& random);

/** Lines with what ends them; a line ends behind any of `ends`. */
Pieces splitLines(std::string_view text, std::string_view ends);

/** Ends each line with a line feed that ends with none of `ends`. */
void endLines(Pieces& lines, std::string_view ends);

std::string joined(const Pieces& pieces);

} // namespace zm::fuzz
