#include "fuzz/support/Check.h"
#include "services/disc/medium/VcdTables.h"

namespace {

using namespace zm::disc::medium;
using namespace zm::disc::model;

// In an input the tables stand one behind the other, shorter than on a disc.
constexpr size_t InfoBytes = 160;
constexpr size_t EntriesBytes = 64;
constexpr size_t OffsetsBytes = 64;

/** Everything is there. */
class AllItems : public VcdItems {
public:
    std::optional<ListItem> track(int number) const override {
        zm::fuzz::check(number >= 2 && number <= 99, "tracks have the numbers of tracks");
        return ListItem{"track", number - 2, {}, false};
    }
    std::optional<ListItem> entry(size_t number) const override {
        zm::fuzz::check(number < 500, "entries have the numbers of entries");
        return ListItem{"entry", 0, std::chrono::milliseconds(1), false};
    }
    std::optional<ListItem> segment(int number) const override {
        zm::fuzz::check(number >= 0 && number < 1980, "segments have the numbers of segments");
        return number % 2 ? std::nullopt : std::optional(ListItem{"segment", -1, {}, true});
    }
};

void checkTarget(const PlayList::Target& target, const PlayLists& all) {
    zm::fuzz::check(!target || *target < all.lists.size(), "a target is a list");
}

} // namespace

// The tables of a VCD's playback control.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using zm::fuzz::check;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const auto take = [&](size_t count) {
        const auto part = rest.substr(0, count);
        rest.remove_prefix(part.size());
        return part;
    };
    const auto infoBytes = take(InfoBytes);
    const auto entries = take(EntriesBytes);
    const auto info = readVcdInfo(infoBytes, entries);
    if (info) {
        check(info->unit >= 1 && info->unit <= 8, "a list's place is counted in small steps");
        check(info->entries.size() <= 500, "there are 500 entries at most");
        for (const auto& [number, segment] : info->segments) {
            check(number >= 0 && number < 1980, "there are 1980 segments at most");
            check(segment.sectors >= 150 && segment.sectors <= 1980 * 150, "a segment has whole units");
        }
    }
    const auto offsets = take(OffsetsBytes);
    const PlayLists all = readPlayLists(offsets, rest, info ? info->unit : 8, AllItems());
    check(all.lists.size() <= 4096, "the number of lists is bounded");
    size_t members = 0;
    for (const auto& list : all.lists) {
        for (const auto& target : {list.next, list.previous, list.back, list.standard, list.timeout}) {
            checkTarget(target, all);
        }
        for (const auto& target : list.choices) {
            checkTarget(target, all);
        }
        members += list.choices.size() + list.items.size();
        check(list.choices.size() <= 255 && list.items.size() <= 255, "numbers of one byte");
        check(list.length.count() >= 0 && (!list.wait || list.wait->count() <= 60 + 194 * 10),
              "times are bounded");
    }
    check(members <= 4096 + 20000, "so is what they hold");
    return 0;
}
