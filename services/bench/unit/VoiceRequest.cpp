#include "services/bench/unit/VoiceRequest.h"

#include "platform/linux/pps/PpsFile.h"
#include "zmcar/ArgvDecode.h"

#include <map>

namespace zm::bench::unit {

namespace {

constexpr const char* Control = "/pps/zelmar/disc/control";

} // namespace

bool isVoiceRequest(const std::string& applicationData) {
    std::map<std::string, std::string> params;
    Oro::ZMCAR::ArgvDecode::GetOpt_LongParams(applicationData, params);
    const bool keyboard = params.contains("kb_val") && params.contains("kb_ret");
    return !keyboard && (params.contains("song") || params.contains("singer"));
}

Status requestMusic(const std::string& ppsSocket) {
    auto control = PpsFile::open(ppsSocket, Control, PpsWriteOnlyCreate, 0666);
    if (!control) {
        return control.failure();
    }
    return control->write("zmasr:json:{\"play\":\"music\"}\n");
}

} // namespace zm::bench::unit
