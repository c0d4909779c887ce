#include "fuzz/support/Walk.h"

#include "fuzz/support/Check.h"

#include <cstring>
#include <initializer_list>

namespace zm::fuzz {

namespace {

constexpr int MostElements = 200;

// Reads the element with every getter; the one of its own type has to succeed.
void readAll(pps_decoder_t& decoder, const char* name) {
    const auto type = pps_decoder_type(&decoder, name);
    bool truth = false;
    int whole = 0;
    double number = 0;
    const char* text = nullptr;
    // By position, a getter that succeeds moves on, so that the others read what follows.
    if (name) {
        check((pps_decoder_get_bool(&decoder, name, &truth) == PPS_DECODER_OK) == (type == PPS_TYPE_BOOL),
              "a Boolean is read as one and nothing else is");
        check(pps_decoder_get_int(&decoder, name, &whole) != PPS_DECODER_OK || type == PPS_TYPE_NUMBER,
              "only a number is read as one");
        check((pps_decoder_get_double(&decoder, name, &number) == PPS_DECODER_OK) ==
                  (type == PPS_TYPE_NUMBER),
              "every number has a value");
    }
    if (pps_decoder_get_string(&decoder, name, &text) == PPS_DECODER_OK) {
        check(text && std::strlen(text) < 1u << 20, "a text ends");
    }
}

} // namespace

void walk(pps_decoder_t& decoder) {
    for (const char* name : {"", ".", "t", "zmcmd", "@t"}) {
        readAll(decoder, name);
    }
    for (int i = 0; i < MostElements; ++i) {
        switch (pps_decoder_type(&decoder, nullptr)) {
        case PPS_TYPE_OBJECT:
        case PPS_TYPE_ARRAY:
            check(pps_decoder_push(&decoder, nullptr) == PPS_DECODER_OK, "a container opens");
            walk(decoder);
            check(pps_decoder_pop(&decoder) == PPS_DECODER_OK, "a container closes");
            break;
        case PPS_TYPE_BOOL: {
            bool truth = false;
            check(pps_decoder_get_bool(&decoder, nullptr, &truth) == PPS_DECODER_OK, "a Boolean is read");
            break;
        }
        case PPS_TYPE_NUMBER: {
            double number = 0;
            check(pps_decoder_get_double(&decoder, nullptr, &number) == PPS_DECODER_OK, "a number is read");
            break;
        }
        case PPS_TYPE_STRING:
            readAll(decoder, nullptr);
            break;
        default:
            return; // the end, or what has no value: nobody reads on behind it by position
        }
    }
}

} // namespace zm::fuzz
