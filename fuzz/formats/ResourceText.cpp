#include "fuzz/formats/ResourceText.h"

#include "fuzz/formats/JsonText.h"

namespace zm::fuzz {

namespace {

class ResourceText : public Format {
public:
    // One piece a file; that of a further one begins with its name.
    Pieces split(std::string_view input) const override {
        Pieces files;
        for (auto& line : splitLines(input, "\n")) {
            if (files.empty() || line.starts_with("//// ")) {
                files.push_back(std::move(line));
            } else {
                files.back() += line;
            }
        }
        return files;
    }
    void change(Pieces& pieces, size_t at, Random& random) const override {
        pieces[at] = withChangedValue(pieces[at], random);
    }
    void cross(Pieces& pieces, const Pieces& foreign, Random& random) const override {
        if (pieces.empty()) {
            pieces = foreign;
            return;
        }
        std::string& piece = pieces[random.below(pieces.size())];
        piece = withForeignValue(piece, random.pick(foreign), random);
    }
    void mend(Pieces& pieces) const override { endLines(pieces, "\n"); }
    size_t movesInHundred() const override { return 2; }
};

} // namespace

const Format& resourceText() {
    static const ResourceText text;
    return text;
}

} // namespace zm::fuzz
