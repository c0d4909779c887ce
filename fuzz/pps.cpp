// PPS text: what the service takes from a writer, what it tells its readers, and how these take it apart.
// Form feeds part the input into one write each; a write that begins with a vertical tab goes to an object
// that is nearly full.
#include "fuzz/formats/PpsText.h"
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Walk.h"
#include "platform/linux/pps/PpsObject.h"
#include "platform/linux/pps/PpsPath.h"

#include <optional>

using namespace zm;
using namespace zm::fuzz;

namespace {

// Whether an attribute outlives a restart is said with the whole object, not with each change.
std::string withoutQualifiers(const std::string& text) {
    std::string result;
    std::string_view rest = text;
    while (!rest.empty()) {
        auto line = takePart(rest, '\n');
        if (line.starts_with("[n]")) {
            line.remove_prefix(3);
        }
        result.append(line).append("\n");
    }
    return result;
}

void checkWhole(const PpsObject& object) {
    const std::string whole = object.text();
    check(whole.size() == object.size(), "an object knows its size");
    check(whole.size() <= PpsObjectBytes, "an object keeps to its limit");
    PpsObject copy(object.leaf());
    check(static_cast<bool>(copy.merge(whole)), "an object's text may be written");
    check(copy.text() == whole, "an object's text makes the same object");
}

// As a reader that gets only changes sees the object.
void write(PpsObject& object, PpsObject& follower, std::string_view text) {
    const std::string before = object.text();
    const auto change = object.merge(text);
    if (!change) {
        check(object.text() == before, "a refused write changes nothing");
        return;
    }
    checkWhole(object);
    check(static_cast<bool>(follower.merge(*change)), "a change may be written");
    check(withoutQualifiers(follower.text()) == withoutQualifiers(object.text()), "changes tell everything");
}

// One that can hardly take more.
struct FullObject {
    PpsObject object{"full"};
    PpsObject follower{"full"};
    FullObject() { write(object, follower, "filler::" + std::string(PpsObjectBytes - 64, 'x')); }
};

void parseLines(std::string_view text) {
    static const char* const objects[] = {"status", "control", nullptr};
    static const char* const attributes[] = {"discstate", "zmcmd", "t", nullptr};
    std::string copy(text);
    const char* const end = copy.data() + copy.size();
    char* at = copy.data();
    pps_attrib_t info{};
    for (;;) {
        const char* const before = at;
        const auto status = ppsparse(&at, objects, attributes, &info, 0);
        if (status == PPS_END) {
            return;
        }
        check(at > before && at <= end, "each line moves on inside the text");
        for (const char* part : {info.obj_name, info.attr_name, info.encoding, info.value}) {
            check(!part || (part >= copy.data() && part <= end), "the parts lie inside the text");
        }
    }
}

void decode(std::string_view text) {
    std::string copy(text);
    pps_decoder_t decoder;
    if (pps_decoder_initialize(&decoder, copy.data()) == PPS_DECODER_OK) {
        walk(decoder);
    }
    pps_decoder_cleanup(&decoder);
}

} // namespace

const zm::fuzz::Format& zm::fuzz::format() {
    return ppsText();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    PpsObject object("status");
    PpsObject follower("status");
    std::optional<FullObject> full;
    for (auto rest = asText(data, size); !rest.empty();) {
        const auto text = takePart(rest, '\f');
        if (text.starts_with('\v')) {
            if (!full) {
                full.emplace();
            }
            write(full->object, full->follower, text.substr(1));
        } else {
            write(object, follower, text);
        }
        parseLines(text);
        decode(text);
        static_cast<void>(parsePpsPath(text));
    }
    decode(object.text());
    return 0;
}
