#include "PPSObjectEncoder.h"

#include "zmcar/PPSFileBase.h"

PPSObjectEncoder::PPSObjectEncoder(const std::string& object, const char* attribute) {
    pps_encoder_initialize(&m_encoder, false);
    pps_encoder_start_object(&m_encoder, object.c_str());
    pps_encoder_start_object(&m_encoder, attribute);
}

PPSObjectEncoder::~PPSObjectEncoder() {
    pps_encoder_cleanup(&m_encoder);
}

PPSObjectEncoder& PPSObjectEncoder::Add(const char* name, int value) {
    pps_encoder_add_int(&m_encoder, name, value);
    return *this;
}

PPSObjectEncoder& PPSObjectEncoder::Add(const char* name, const std::string& value) {
    pps_encoder_add_string(&m_encoder, name, value.c_str());
    return *this;
}

bool PPSObjectEncoder::Write(Oro::ZMCAR::PPSFileBase& file, bool bNoBuffer) {
    pps_encoder_end_object(&m_encoder);
    pps_encoder_end_object(&m_encoder);
    const char* buffer = pps_encoder_buffer(&m_encoder);
    return buffer ? file.WritePPS(buffer, pps_encoder_length(&m_encoder)) : bNoBuffer;
}
