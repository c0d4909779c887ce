#include "fuzz/formats/CueText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace zm::fuzz {

namespace {

constexpr int SectorsInSecond = 75;
constexpr int MostSectors = 100 * 60 * SectorsInSecond - 1;

constexpr std::array<std::string_view, 20> knownLines{
    "FILE \"a.bin\" BINARY", "FILE \"b.bin\" MOTOROLA", "FILE c.wav WAVE",
    "FILE d.mp3 MP3",        "TRACK 01 AUDIO",          "TRACK 02 MODE1/2048",
    "TRACK 03 MODE1/2352",   "TRACK 04 MODE2/2336",     "TRACK 05 MODE2/2352",
    "TRACK 06 CDG",          "INDEX 00 00:01:00",       "INDEX 01 00:03:00",
    "INDEX 02 00:04:00",     "PREGAP 00:02:00",         "POSTGAP 00:01:00",
    "TITLE \"\xB0\xAE\"",    "PERFORMER \"Ann\"",       "CATALOG 0123456789012",
    "ISRC ABCDE1234567",     "CDTEXTFILE \"d.cdt\""};

struct Words {
    std::string first; ///< in capitals
    std::string second;
    std::string rest;

    explicit Words(std::string_view line) : first(take(line)), second(take(line)) {
        rest = line.substr(0, line.find_last_not_of(" \t\r\n") + 1);
        std::transform(first.begin(), first.end(), first.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    static std::string take(std::string_view& line) {
        constexpr std::string_view Blanks = " \t\r\n";
        line.remove_prefix(std::min(line.find_first_not_of(Blanks), line.size()));
        const std::string word(line.substr(0, line.find_first_of(Blanks)));
        line.remove_prefix(word.size());
        line.remove_prefix(std::min(line.find_first_not_of(Blanks), line.size()));
        return word;
    }
    std::string text() const { return first + " " + second + (rest.empty() ? "" : " " + rest) + "\n"; }
};

int sectors(const std::string& time) {
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
    return std::sscanf(time.c_str(), "%2d:%2d:%2d", &minutes, &seconds, &frames) == 3
               ? std::clamp((minutes * 60 + seconds) * SectorsInSecond + frames, 0, MostSectors)
               : 0;
}

std::string two(int number) {
    return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
}

std::string time(int count) {
    const int all = std::clamp(count, 0, MostSectors);
    return two(all / SectorsInSecond / 60) + ":" + two(all / SectorsInSecond % 60) + ":" +
           two(all % SectorsInSecond);
}

/** What came so far. */
class Order {
public:
    void take(Words words, const std::string& line, Pieces& lines) {
        if (words.first == "FILE") {
            m_hasFile = true;
            m_last = -1;
        } else if (words.first == "TRACK") {
            endTrack(lines);
            if (!m_hasFile) {
                lines.emplace_back("FILE a.bin BINARY\n");
                m_hasFile = true;
            }
            const int number = std::atoi(words.second.c_str());
            m_track = number > m_track ? number : m_track + 1;
            m_index = -1;
            words.second = two(m_track);
            lines.push_back(words.text());
            return;
        } else if (words.first == "INDEX") {
            if (m_track > 0) {
                takeIndex(std::move(words), lines);
            }
            return;
        }
        lines.push_back(line);
    }
    /** A track without a beginning gets one. */
    void endTrack(Pieces& lines) {
        if (m_index < 1) {
            lines.push_back("INDEX 01 " + time(++m_last) + "\n");
        }
    }

private:
    void takeIndex(Words words, Pieces& lines) {
        const int number = std::atoi(words.second.c_str());
        m_index = number > m_index && (number < 2 || m_index == 1) ? number : m_index + 1;
        m_last = std::max(sectors(words.rest), m_last + 1);
        words.second = two(m_index);
        words.rest = time(m_last);
        lines.push_back(words.text());
    }

    int m_track = 0;
    int m_index = 1; ///< the last one of the present track
    int m_last = -1; ///< the last time of the present file
    bool m_hasFile = false;
};

class CueText : public Format {
public:
    Pieces split(std::string_view input) const override { return splitLines(input, "\r\n"); }

    void change(Pieces& pieces, size_t at, Random& random) const override {
        Words words(pieces[at]);
        if (random.oneIn(4)) {
            pieces[at] += std::string(random.pick(knownLines)) + "\n";
        } else if (words.first == "INDEX" && random.oneIn(2)) {
            constexpr std::array steps{0, 1, -1, 74, 75, 149, 150, 4500, 100000, MostSectors};
            words.rest = time(sectors(words.rest) + random.pick(steps));
            pieces[at] = words.text();
        } else if (words.first == "FILE" || random.oneIn(3)) {
            // Another line of the same word.
            Pieces same;
            for (const auto line : knownLines) {
                if (Words(line).first == words.first) {
                    same.emplace_back(line);
                }
            }
            pieces[at] = same.empty() ? withChangedBytes(pieces[at], random) : random.pick(same) + "\n";
        } else {
            words.rest = withChangedBytes(words.rest, random);
            std::erase_if(words.rest, [](char c) { return c == '\n' || c == '\r'; });
            pieces[at] = words.text();
        }
    }

    // Tracks and indices are counted, times grow within a file, and a track has a beginning.
    void mend(Pieces& pieces) const override {
        Order order;
        Pieces mended;
        for (const auto& piece : pieces) {
            order.take(Words(piece), piece, mended);
        }
        order.endTrack(mended);
        endLines(mended, "\r\n");
        pieces = std::move(mended);
    }
};

} // namespace

const Format& cueText() {
    static const CueText text;
    return text;
}

} // namespace zm::fuzz
