#include "fuzz/support/Format.h"

#include <algorithm>
#include <cstdint>
#include <utility>

extern "C" __attribute__((weak)) size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

namespace zm::fuzz {

namespace {

std::ptrdiff_t place(size_t at) {
    return static_cast<std::ptrdiff_t>(at);
}

void move(Pieces& pieces, size_t at, Random& random) {
    const size_t other = random.below(pieces.size());
    switch (random.below(4)) {
    case 0:
        pieces.erase(pieces.begin() + place(at));
        break;
    case 1:
        pieces.insert(pieces.begin() + place(other), std::string(pieces[at]));
        break;
    case 2:
        std::swap(pieces[at], pieces[other]);
        break;
    default:
        pieces[other] = std::string(pieces[at]);
        break;
    }
}

// What does not agree has ways of its own through a reader.
std::string finished(const Format& format, Pieces pieces, Random& random) {
    constexpr size_t LeftAsItIs = 4;
    if (!random.oneIn(LeftAsItIs)) {
        format.mend(pieces);
    }
    return format.join(pieces);
}

} // namespace

std::string mutated(const Format& format, std::string_view input, Random& random) {
    constexpr size_t MostChanges = 3;
    Pieces pieces = format.split(input);
    for (size_t left = 1 + random.below(MostChanges); left > 0 && !pieces.empty(); --left) {
        const size_t at = random.below(pieces.size());
        if (pieces.size() > 1 && random.below(100) < format.movesInHundred()) {
            move(pieces, at, random);
        } else {
            format.change(pieces, at, random);
        }
    }
    return finished(format, std::move(pieces), random);
}

std::string Format::join(const Pieces& pieces) const {
    return joined(pieces);
}

void Format::cross(Pieces& pieces, const Pieces& foreign, Random& random) const {
    constexpr size_t MostPieces = 8;
    const size_t first = random.below(foreign.size());
    const size_t count = 1 + random.below(std::min(foreign.size() - first, MostPieces));
    const size_t at = random.below(pieces.size() + 1);
    const size_t replaced = random.oneIn(2) ? std::min(count, pieces.size() - at) : 0;
    pieces.erase(pieces.begin() + place(at), pieces.begin() + place(at + replaced));
    pieces.insert(pieces.begin() + place(at), foreign.begin() + place(first),
                  foreign.begin() + place(first + count));
}

std::string crossed(const Format& format, std::string_view one, std::string_view other, Random& random) {
    Pieces pieces = format.split(one);
    const Pieces foreign = format.split(other);
    if (!foreign.empty()) {
        format.cross(pieces, foreign, random);
    }
    return finished(format, std::move(pieces), random);
}

std::string withChangedBytes(std::string bytes, Random& random) {
    constexpr size_t Growth = 16;
    const size_t size = bytes.size();
    if (LLVMFuzzerMutate) {
        bytes.resize(size + Growth);
        bytes.resize(LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(bytes.data()), size, bytes.size()));
        return bytes;
    }
    const size_t at = random.below(size + 1);
    if (at == size || random.oneIn(4)) {
        bytes.insert(at, 1, static_cast<char>(random.below(256)));
    } else if (random.oneIn(3)) {
        bytes.erase(at, 1);
    } else {
        bytes[at] = static_cast<char>(random.below(256));
    }
    return bytes;
}

Pieces splitLines(std::string_view text, std::string_view ends) {
    Pieces lines;
    while (!text.empty()) {
        const size_t end = text.find_first_of(ends);
        const size_t size = end == std::string_view::npos ? text.size() : end + 1;
        lines.emplace_back(text.substr(0, size));
        text.remove_prefix(size);
    }
    return lines;
}

void endLines(Pieces& lines, std::string_view ends) {
    for (auto& line : lines) {
        if (line.empty() || ends.find(line.back()) == std::string_view::npos) {
            line += '\n';
        }
    }
}

std::string joined(const Pieces& pieces) {
    std::string all;
    for (const auto& piece : pieces) {
        all += piece;
    }
    return all;
}

} // namespace zm::fuzz
