#pragma once

#include "ZMModel/CDiscData.h"

namespace zm::test {

/** One change flag. */
struct FlagRow {
    const char* name;
    bool (CDiscData::*get)() const;
    void (CDiscData::*set)(bool);
    bool isReset;
    bool isLogged;
};
#define FLAG(name, isReset, isLogged)                                                                        \
    { #name, &CDiscData::GetUpdate##name##Flag, &CDiscData::SetUpdate##name##Flag, isReset, isLogged }
constexpr FlagRow FLAGS[] = {
    FLAG(DiscState, false, false),     FLAG(PlayState, true, false),   FLAG(PlayInfo, true, false),
    FLAG(Time, true, false),           FLAG(ID3, true, false),         FLAG(RootMenu, true, true),
    FLAG(Parental, true, true),        FLAG(Version, true, true),      FLAG(Updatedb, false, false),
    FLAG(UpdatedbFinish, false, true), FLAG(DeviceStatus, true, true), FLAG(DiscType, true, true),
    FLAG(MixedType, true, true),       FLAG(CurDvdState, false, true), FLAG(AudioChannel, false, false),
    FLAG(PlaySpeed, false, false),     FLAG(KeyInvalid, false, false),
};
#undef FLAG

} // namespace zm::test
