// Names and tags of unknown character sets, and the order of names: the input's lines are the names of a
// disc.
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "services/disc/text/Charset.h"
#include "services/disc/text/NaturalOrder.h"

#include <glib.h>

#include <vector>

using namespace zm::disc::text;
using namespace zm::fuzz;

namespace {

constexpr size_t MostNames = 12;

int sign(int order) {
    return (order > 0) - (order < 0);
}

void checkText(const std::string& text) {
    check(g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr), "a name becomes UTF-8");
    for (const char c : text) {
        check(static_cast<unsigned char>(c) >= 0x20 && c != 0x7f, "a name has no control characters");
    }
}

// Sorting goes wrong, and out of the list, with an order that is none.
void checkOrder(const std::vector<std::string_view>& names) {
    for (const auto a : names) {
        for (const auto b : names) {
            const int order = sign(compareNatural(a, b));
            check(order == -sign(compareNatural(b, a)), "the order has two directions");
            check((order == 0) == (a == b), "only the same name is equal");
            for (const auto c : names) {
                check(order > 0 || sign(compareNatural(b, c)) > 0 || sign(compareNatural(a, c)) <= 0,
                      "the order goes on from name to name");
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto rest = asText(data, size);
    std::vector<std::string_view> names;
    while (!rest.empty() && names.size() < MostNames) {
        names.push_back(takePart(rest, '\n'));
    }
    CharsetRepair repair;
    for (const auto name : names) {
        repair.learn(name);
    }
    for (const auto name : names) {
        const std::string text = repair.toUtf8(name);
        checkText(text);
        check(repair.toUtf8(text) == text, "UTF-8 stays as it is");
        checkText(cleanText(name));
    }
    checkOrder(names);
    return 0;
}
