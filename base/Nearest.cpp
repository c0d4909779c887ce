#include "base/Nearest.h"

#include <algorithm>
#include <numeric>

namespace zm {

namespace {

constexpr size_t ShortestWord = 3;
constexpr size_t LongestWord = 40;

/** How many letters have to be changed, left out or put in. */
size_t distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string nearestWord(std::string_view word, const std::vector<std::string>& known) {
    if (word.size() < ShortestWord || word.size() > LongestWord) {
        return {};
    }
    size_t least = (word.size() + 2) / 3 + 1;
    std::string nearest;
    for (const std::string& candidate : known) {
        const size_t far = candidate.size() > LongestWord ? least : distance(word, candidate);
        if (far < least) {
            least = far;
            nearest = candidate;
        }
    }
    return nearest;
}

} // namespace zm
