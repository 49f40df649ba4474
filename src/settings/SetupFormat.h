#pragma once

#include "settings/Setting.h"

/// The words of a setup file that are no settings.
namespace tarvik {

inline constexpr const char *SetupFormatName = "tarvikvi-setup";

/// A text of the identity and its key.
struct SetupIdentityRow {
  const char *strKey;
  std::string udtInstrInfo::*field;
};
inline constexpr SetupIdentityRow SetupIdentityRows[] = {
    {"address", &udtInstrInfo::strLogAddr},     {"firmware", &udtInstrInfo::strFwCompileInfo},
    {"options", &udtInstrInfo::strInstOptions}, {"product", &udtInstrInfo::strProductId},
    {"serial", &udtInstrInfo::strSerialNum},    {"version", &udtInstrInfo::strSysVersion},
};

/// What an instrument can lack.
inline constexpr SettingWord SetupLackWords[] = {
    {"ChannelMath", eLacksChannelMath},
    {"Complement", eLacksComplement},
    {"FreeLeadingEdge", eLacksFreeLeadingEdge},
    {"Impedance", eLacksImpedance},
    {"LoadCompensation", eLacksLoadCompensation},
    {"TrailingEdge", eLacksTrailingEdge},
    {"VxiEnable", eLacksVxiEnable},
    {"VxiLines", eLacksVxiLines},
    {"VxiSource", eLacksVxiSource},
};

}  // namespace tarvik
