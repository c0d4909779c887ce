#pragma once

#include "sys/pps.h"

#include <string>

/** One JSON object of a PPS attribute, opened by the constructor; cleans the decoder up. */
class PPSJsonDecoder {
public:
    explicit PPSJsonDecoder(const char* value);
    ~PPSJsonDecoder();
    PPSJsonDecoder(const PPSJsonDecoder&) = delete;
    PPSJsonDecoder& operator=(const PPSJsonDecoder&) = delete;

    /** Whether an attribute of this encoding holds JSON. */
    static bool IsJson(const char* encoding);

    /** Read one member; a missing or mistyped one leaves the target and is an error of the whole object. */
    PPSJsonDecoder& Get(const char* name, int& value);
    PPSJsonDecoder& Get(const char* name, std::string& value);
    /** The member's text, null if missing; lives as long as the decoder. */
    const char* GetText(const char* name);
    /** Leaves the object; true if there was no error from parsing on. */
    bool Finish();

private:
    pps_decoder_t m_decoder;
};
