#include "fuzz/formats/IsoImage.h"

#include "fuzz/formats/IsoRecords.h"
#include "fuzz/support/Patches.h"

#include <algorithm>
#include <array>

namespace zm::fuzz {

namespace {

constexpr PatchForm form{16, 1};

constexpr std::string_view Mark = "CD001";
constexpr size_t LabelAt = 40;
constexpr size_t EscapeAt = 88;
constexpr size_t RootAt = 156;
constexpr size_t RootBytes = 34;

void changeDescriptor(std::string& block, Random& random) {
    constexpr std::array<char, 5> kinds{0, 1, 2, 3, static_cast<char>(0xff)};
    constexpr std::array<std::string_view, 4> escapes{"%/@", "%/C", "%/E", "%/F"};
    block.resize(std::max(block.size(), RootAt + RootBytes));
    switch (random.below(5)) {
    case 0:
        block[0] = random.pick(kinds);
        break;
    case 1:
        block[Mark.size() + 1] = static_cast<char>(1 + random.below(2));
        break;
    case 2:
        block.replace(EscapeAt, 3, random.pick(escapes));
        break;
    case 3:
        block[LabelAt + random.below(32)] = static_cast<char>(random.below(256));
        break;
    default: {
        FolderRecord root(std::string_view(block).substr(RootAt));
        root.change(root, random);
        root.name = std::string(1, '\0');
        root.systemUse.clear();
        block.replace(RootAt, RootBytes, root.bytes().substr(0, RootBytes));
        break;
    }
    }
}

void changeFolder(std::string& block, Random& random) {
    Pieces records = folderRecords(block);
    const size_t at = random.below(records.size());
    const auto place = [](size_t index) { return static_cast<std::ptrdiff_t>(index); };
    switch (random.below(6)) {
    case 0:
        records.insert(records.begin() + place(at), std::string(random.pick(records)));
        break;
    case 1:
        records.erase(records.begin() + place(at));
        break;
    default: {
        FolderRecord record(records[at]);
        record.change(FolderRecord(random.pick(records)), random);
        records[at] = record.bytes();
        break;
    }
    }
    block = joined(records).substr(0, BlockBytes);
}

// A piece is a block with its number in front.
class IsoImage : public Format {
public:
    Pieces split(std::string_view input) const override {
        Pieces pieces;
        for (const auto& [number, block] : blocksOf(input, form)) {
            pieces.push_back(static_cast<char>(number) + block);
        }
        return pieces;
    }

    void change(Pieces& pieces, size_t at, Random& random) const override {
        const char number = random.oneIn(12) ? static_cast<char>(random.below(form.blocks)) : pieces[at][0];
        std::string block = pieces[at].substr(1);
        if (std::string_view(block).substr(std::min<size_t>(1, block.size())).starts_with(Mark)) {
            changeDescriptor(block, random);
        } else if (!folderRecords(block).empty()) {
            changeFolder(block, random);
        } else {
            Pieces entries = rockRidgeEntries(block);
            changeRockRidge(entries, random);
            block = joined(entries).substr(0, BlockBytes);
        }
        pieces[at] = number + block;
    }

    // Blocks are put together of records whose lengths are right.
    void mend(Pieces& /*pieces*/) const override {}

    std::string join(const Pieces& pieces) const override {
        std::map<uint8_t, std::string> blocks;
        for (const auto& piece : pieces) {
            blocks[static_cast<uint8_t>(piece[0])] = piece.substr(1);
        }
        return patchesFor(blocks, form);
    }
    size_t movesInHundred() const override { return 8; }
};

} // namespace

const Format& isoImage() {
    static const IsoImage image;
    return image;
}

} // namespace zm::fuzz
