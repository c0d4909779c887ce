#include "PPSJsonDecoder.h"

#include "DiscPPSInfo.h"

#include <cstring>

PPSJsonDecoder::PPSJsonDecoder(const char* value) {
    pps_decoder_initialize(&m_decoder, nullptr);
    pps_decoder_parse_json_str(&m_decoder, value);
    pps_decoder_push(&m_decoder, nullptr);
}

PPSJsonDecoder::~PPSJsonDecoder() {
    pps_decoder_cleanup(&m_decoder);
}

bool PPSJsonDecoder::IsJson(const char* encoding) {
    return std::strcmp(encoding, PPS_ENCODING_JSON) == 0;
}

PPSJsonDecoder& PPSJsonDecoder::Get(const char* name, int& value) {
    pps_decoder_get_int(&m_decoder, name, &value);
    return *this;
}

PPSJsonDecoder& PPSJsonDecoder::Get(const char* name, std::string& value) {
    if (const char* text = GetText(name)) {
        value = text;
    }
    return *this;
}

const char* PPSJsonDecoder::GetText(const char* name) {
    const char* text = nullptr;
    pps_decoder_get_string(&m_decoder, name, &text);
    return text;
}

bool PPSJsonDecoder::Finish() {
    pps_decoder_pop(&m_decoder);
    return pps_decoder_status(&m_decoder, false) == PPS_DECODER_OK;
}
