// The JSON inside attributes, as the application decodes it.
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Walk.h"

#include <string>

using namespace zm::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(asText(data, size));
    pps_decoder_t decoder;
    check(pps_decoder_initialize(&decoder, nullptr) == PPS_DECODER_OK, "there is a decoder");
    if (pps_decoder_parse_json_str(&decoder, text.c_str()) == PPS_DECODER_OK) {
        walk(decoder);
        // Leaving more than was entered is an error, and no way out of the tree.
        check(pps_decoder_pop(&decoder) == PPS_DECODER_POP_AT_ROOT, "nothing lies above the root");
    } else {
        check(pps_decoder_status(&decoder, true) == PPS_DECODER_PARSE_ERROR, "the error stays");
        check(pps_decoder_type(&decoder, nullptr) == PPS_TYPE_NONE, "of a faulty text nothing is kept");
    }
    pps_decoder_cleanup(&decoder);
    return 0;
}
