#pragma once

#include "sys/pps.h"

#include <string>

namespace Oro::ZMCAR {
class PPSFileBase;
}

/** Builds the PPS text of one object with one JSON attribute and writes it whole. */
class PPSObjectEncoder {
public:
    PPSObjectEncoder(const std::string& object, const char* attribute);
    ~PPSObjectEncoder();
    PPSObjectEncoder(const PPSObjectEncoder&) = delete;
    PPSObjectEncoder& operator=(const PPSObjectEncoder&) = delete;

    PPSObjectEncoder& Add(const char* name, int value);
    PPSObjectEncoder& Add(const char* name, const std::string& value);
    /** Ends the object and writes it; the result of WritePPS, or `bNoBuffer` when the encoder produced no
     * text. */
    bool Write(Oro::ZMCAR::PPSFileBase& file, bool bNoBuffer);

private:
    pps_encoder_t m_encoder;
};
