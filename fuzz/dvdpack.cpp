#include "fuzz/formats/DvdPack.h"
#include "fuzz/support/Check.h"
#include "services/disc/dvd/NavPack.h"
#include "services/disc/dvd/Pack.h"

const zm::fuzz::Format& zm::fuzz::format() {
    return dvdPack();
}

// A pack of a DVD, as the reader hands it on: navigation and film.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zm::disc::dvd;
    using zm::fuzz::check;
    const std::span bytes(data, size);
    for (const auto& each : splitPack(bytes)) {
        check(!each.data.empty() && each.data.data() > data &&
                  each.data.data() + each.data.size() <= data + size,
              "a fragment lies inside its pack");
        check(each.firstUnit < each.data.size(), "a unit begins inside its fragment");
        check(each.stream >= 0 && each.stream < 32, "stream numbers are small");
    }
    for (const bool wide : {false, true}) {
        if (const auto pack = readNavPack(bytes, wide)) {
            check(pack->buttons.size() <= 36, "there are 36 buttons at most");
            check(pack->buttonAt(0, 0) <= static_cast<int>(pack->buttons.size()), "a button that is there");
        }
    }
    return 0;
}
