// The fuzzer's way to change inputs in the language of the target. With ZM_FUZZ_PLAIN in the environment it changes
// bytes only: what a language is worth shows in comparing both (fuzz/compare).
#include "fuzz/support/Format.h"
#include "fuzz/support/Input.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

namespace {

using namespace zm::fuzz;

bool isPlain() {
    static const bool plain = std::getenv("ZM_FUZZ_PLAIN") != nullptr;
    return plain;
}

// 0: it does not fit.
size_t give(const std::string& bytes, uint8_t* data, size_t most) {
    if (bytes.size() > most) {
        return 0;
    }
    std::copy(bytes.begin(), bytes.end(), data);
    return bytes.size();
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
    constexpr size_t BytesOnly = 2;
    Random random(seed);
    if (!isPlain() && !random.oneIn(BytesOnly)) {
        if (const size_t given = give(mutated(format(), asText(data, size), random), data, most)) {
            return given;
        }
    }
    return LLVMFuzzerMutate(data, size, most);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* one, size_t oneSize, const uint8_t* other,
                                            size_t otherSize, uint8_t* result, size_t most, unsigned seed) {
    // The fuzzer would take every other input for that; what is given up here is changed alone.
    constexpr size_t Rarely = 6;
    Random random(seed);
    return isPlain() || !random.oneIn(Rarely)
               ? 0
               : give(crossed(format(), asText(one, oneSize), asText(other, otherSize), random), result,
                      most);
}
