#include "fuzz/formats/DvdTables.h"

#include <algorithm>
#include <array>

namespace zm::fuzz {

namespace {

constexpr std::string_view CopyMark = "\n==BUP==\n";
constexpr std::string_view TableMark = "DVDVIDEO-VMG";
constexpr size_t RegionsAt = 0x23;

constexpr std::array<std::string_view, 12> names{"VIDEO_TS/",
                                                 "VIDEO_TS/VIDEO_TS.IFO",
                                                 "VIDEO_TS/VIDEO_TS.BUP",
                                                 "VIDEO_TS/VTS_01_0.IFO",
                                                 "VIDEO_TS.IFO",
                                                 "VIDEO_TS.BUP",
                                                 "VIDEO_TS/VIDEO_TS.IFO;1",
                                                 "video_ts/video_ts.ifo",
                                                 "VIDEO_TS.IFO/",
                                                 "!VIDEO_TS.IFO",
                                                 "AUDIO_TS/",
                                                 "VIDEO_TS/VTS_01_1.VOB"};

bool isName(const std::string& piece) {
    return piece.ends_with('\n');
}

// Lines with a name each, then the table, then its copy; the last two end without a line's end.
class DvdTables : public Format {
public:
    Pieces split(std::string_view input) const override {
        const size_t empty = input.starts_with('\n') ? 0 : input.find("\n\n");
        const auto head = empty == input.npos ? input : input.substr(0, empty + (empty > 0));
        Pieces pieces = splitLines(head, "\n");
        if (!pieces.empty() && !isName(pieces.back())) {
            pieces.back() += '\n';
        }
        auto rest = input.substr(std::min(head.size() + 1, input.size()));
        const size_t copy = rest.find(CopyMark);
        pieces.emplace_back("T" + std::string(rest.substr(0, copy)));
        if (copy != rest.npos) {
            pieces.emplace_back("C" + std::string(rest.substr(copy + CopyMark.size())));
        }
        return pieces;
    }

    void change(Pieces& pieces, size_t at, Random& random) const override {
        std::string& piece = pieces[at];
        if (isName(piece)) {
            piece = random.oneIn(4) ? piece + std::string(random.pick(names)) + "\n"
                                    : std::string(random.pick(names)) + "\n";
            return;
        }
        std::string table = piece.substr(1);
        switch (random.below(4)) {
        case 0:
            table = withChangedBytes(table, random);
            break;
        case 1:
            table.resize(random.below(2) ? RegionsAt + random.below(3) : 64);
            break;
        case 2:
            table.resize(std::max(table.size(), RegionsAt + 1));
            table[RegionsAt] = static_cast<char>(random.below(256));
            break;
        default:
            table.resize(std::max(table.size(), TableMark.size()));
            table.replace(0, TableMark.size(), TableMark);
            break;
        }
        piece = piece[0] + table;
    }

    // A table or its copy has the mark of one.
    void mend(Pieces& pieces) const override {
        const auto table =
            std::find_if(pieces.begin(), pieces.end(), [](const auto& each) { return !isName(each); });
        if (table != pieces.end()) {
            table->resize(std::max(table->size(), 1 + RegionsAt + 1));
            table->replace(1, TableMark.size(), TableMark);
        }
    }

    std::string join(const Pieces& pieces) const override {
        std::string lines;
        std::string table;
        std::string copy;
        for (const auto& piece : pieces) {
            if (isName(piece)) {
                lines += piece;
            } else if (piece[0] == 'T') {
                table = piece.substr(1);
            } else {
                copy = std::string(CopyMark) + piece.substr(1);
            }
        }
        return lines + "\n" + table + copy;
    }
};

} // namespace

const Format& dvdTables() {
    static const DvdTables tables;
    return tables;
}

} // namespace zm::fuzz
