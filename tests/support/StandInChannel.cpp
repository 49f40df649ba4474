#include "StandInChannel.h"

namespace tarvik::test {

namespace {

using namespace kolven;

constexpr Long InvalidChannelIndex = -2147220735;
constexpr Long PulseTypeSingle = 1, PulseTypeDouble = 2;

class StandInLevels : public StandInObject<IChannelLevels> {
 public:
  static constexpr const char *Name = "IChannelLevels";
  explicit StandInLevels(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetComplementOutput(VariantBool *pValue) override {
    return Get("GetComplementOutput", pValue, Channel().fComplement);
  }
  Status TARVIK_CALL SetComplementOutput(VariantBool on) override {
    return Set("SetComplementOutput", Channel().fComplement, on);
  }
  Status TARVIK_CALL GetLoadCompensation(Double *pValue) override {
    return Get("GetLoadCompensation", pValue, Channel().dblLoadCompensation);
  }
  Status TARVIK_CALL SetLoadCompensation(Double value) override {
    return Set("SetLoadCompensation", Channel().dblLoadCompensation, value);
  }
  Status TARVIK_CALL GetImpedance(Double *pValue) override {
    return Get("GetImpedance", pValue, Channel().dblImpedance);
  }
  Status TARVIK_CALL SetImpedance(Double value) override { return Set("SetImpedance", Channel().dblImpedance, value); }
  Status TARVIK_CALL GetOutput(VariantBool *pValue) override { return Get("GetOutput", pValue, Channel().fOutput); }
  Status TARVIK_CALL SetOutput(VariantBool on) override { return Set("SetOutput", Channel().fOutput, on); }
  Status TARVIK_CALL GetPolarity(Long *pValue) override { return Get("GetPolarity", pValue, Channel().lngPolarity); }
  Status TARVIK_CALL SetPolarity(Long value) override { return Set("SetPolarity", Channel().lngPolarity, value); }

  Status TARVIK_CALL GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) override {
    return Operate(Line("GetLevel", format), [&] {
      const Double dblHigh = Channel().dblHigh, dblLow = Channel().dblLow;
      *pType = Channel().lngLevelType;
      *pAmplOrHigh = format == 1 ? dblHigh : dblHigh - dblLow;
      *pOffsetOrLow = format == 1 ? dblLow : (dblHigh + dblLow) / 2;
      return Words(*pType, *pAmplOrHigh, *pOffsetOrLow);
    });
  }
  Status TARVIK_CALL SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) override {
    return Do(Line("SetLevel", format, type, amplOrHigh, offsetOrLow), [&] {
      Channel().lngLevelType = type;
      Channel().dblHigh = format == 1 ? amplOrHigh : offsetOrLow + amplOrHigh / 2;
      Channel().dblLow = format == 1 ? offsetOrLow : offsetOrLow - amplOrHigh / 2;
    });
  }
};

class StandInDoublePulse : public StandInObject<IDoublePulse> {
 public:
  static constexpr const char *Name = "IDoublePulse";
  explicit StandInDoublePulse(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override {
    return Get("GetEnabled", pValue, Boolean(Channel().lngPulseType == PulseTypeDouble));
  }
  Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) override {
    return GetSelected("GetDelay", pSelector, pValue, Channel().dblDoubleDelay);
  }
  Status TARVIK_CALL SetDelay(Long *pSelector, Double value) override {
    return Do(Line("SetDelay", *pSelector, value), [&] {
      Channel().dblDoubleDelay = value;
      Channel().lngPulseType = PulseTypeDouble;
    });
  }
};

class StandInSinglePulse : public StandInObject<ISinglePulse> {
 public:
  static constexpr const char *Name = "ISinglePulse";
  explicit StandInSinglePulse(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) override {
    return GetSelected("GetDelay", pSelector, pValue, Channel().dblSingleDelay);
  }
  Status TARVIK_CALL SetDelay(Long *pSelector, Double value) override {
    return Do(Line("SetDelay", *pSelector, value), [&] {
      Channel().dblSingleDelay = value;
      Channel().lngPulseType = PulseTypeSingle;
    });
  }
};

class StandInEdges : public StandInObject<IEdges> {
 public:
  static constexpr const char *Name = "IEdges";
  explicit StandInEdges(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetCoupling(Long *pValue) override { return Get("GetCoupling", pValue, Channel().lngCoupling); }
  Status TARVIK_CALL SetCoupling(Long value) override { return Set("SetCoupling", Channel().lngCoupling, value); }
  Status TARVIK_CALL GetLeading(Long *pSelector, Double *pValue) override {
    return GetSelected("GetLeading", pSelector, pValue, Channel().dblLeading);
  }
  Status TARVIK_CALL SetLeading(Long *pSelector, Double value) override {
    return SetSelected("SetLeading", pSelector, Channel().dblLeading, value);
  }
  Status TARVIK_CALL GetTrailing(Long *pSelector, Double *pValue) override {
    return GetSelected("GetTrailing", pSelector, pValue, Channel().dblTrailing);
  }
  Status TARVIK_CALL SetTrailing(Long *pSelector, Double value) override {
    return SetSelected("SetTrailing", pSelector, Channel().dblTrailing, value);
  }
};

class StandInTiming : public StandInObject<IChannelTiming> {
 public:
  static constexpr const char *Name = "IChannelTiming";
  explicit StandInTiming(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetSinglePulse(ISinglePulse **ppObject) override {
    return Hand<StandInSinglePulse>("GetSinglePulse", ppObject);
  }
  Status TARVIK_CALL GetDoublePulse(IDoublePulse **ppObject) override {
    return Hand<StandInDoublePulse>("GetDoublePulse", ppObject);
  }
  Status TARVIK_CALL GetFrequency(Double *pValue) override {
    return Get("GetFrequency", pValue, Channel().dblFrequency);
  }
  Status TARVIK_CALL SetFrequency(Double value) override { return Set("SetFrequency", Channel().dblFrequency, value); }
  Status TARVIK_CALL GetEdges(IEdges **ppObject) override { return Hand<StandInEdges>("GetEdges", ppObject); }
  Status TARVIK_CALL GetPulseType(Long *pValue) override { return Get("GetPulseType", pValue, Channel().lngPulseType); }
  Status TARVIK_CALL SetPulseType(Long value) override { return Set("SetPulseType", Channel().lngPulseType, value); }
  Status TARVIK_CALL GetWidth(Double *pValue) override { return Get("GetWidth", pValue, Channel().dblWidth); }
  Status TARVIK_CALL SetWidth(Double value) override { return Set("SetWidth", Channel().dblWidth, value); }
};

class StandInLimitPair : public StandInObject<ILimitPair> {
 public:
  static constexpr const char *Name = "ILimitPair";
  explicit StandInLimitPair(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override { return Get("GetEnabled", pValue, Channel().fLimits); }
  Status TARVIK_CALL SetEnabled(VariantBool enable) override { return Set("SetEnabled", Channel().fLimits, enable); }
  Status TARVIK_CALL GetHigh(Double *pValue) override { return Get("GetHigh", pValue, High()); }
  Status TARVIK_CALL SetHigh(Double value) override { return Set("SetHigh", High(), value); }
  Status TARVIK_CALL GetLow(Double *pValue) override { return Get("GetLow", pValue, Low()); }
  Status TARVIK_CALL SetLow(Double value) override { return Set("SetLow", Low(), value); }

 private:
  Double &High() { return At().chLimit == 'V' ? Channel().dblHighVoltage : Channel().dblHighCurrent; }
  Double &Low() { return At().chLimit == 'V' ? Channel().dblLowVoltage : Channel().dblLowCurrent; }
};

class StandInLimitGroup : public StandInObject<ILimitGroup> {
 public:
  static constexpr const char *Name = "ILimitGroup";
  explicit StandInLimitGroup(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetLimits(ILimitPair **ppObject) override { return Hand<StandInLimitPair>("GetLimits", ppObject); }
};

class StandInChannel : public StandInObject<IChannel> {
 public:
  static constexpr const char *Name = "IChannel";
  explicit StandInChannel(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetCurrentLimits(ILimitGroup **ppObject) override {
    return Hand<StandInLimitGroup>(Line("GetCurrentLimits"), ppObject, Limit('C'));
  }
  Status TARVIK_CALL GetLevels(automation::IDispatch **ppObject) override {
    return Operate("GetLevels()", [&]() -> std::string {
      if (Driver().IsNothing()) return "nothing";
      if (Driver().IsWrong()) return HandWrong(ppObject, At());
      *ppObject = automation::MakeObject<StandInLevels>(At()).Detach();
      return StandInLevels::Name;
    });
  }
  Status TARVIK_CALL GetTiming(IChannelTiming **ppObject) override {
    return Hand<StandInTiming>("GetTiming", ppObject);
  }
  Status TARVIK_CALL GetSignalFormat(Long *pValue) override {
    return Get("GetSignalFormat", pValue, Channel().lngSignalFormat);
  }
  Status TARVIK_CALL SetSignalFormat(Long value) override {
    return Set("SetSignalFormat", Channel().lngSignalFormat, value);
  }
  Status TARVIK_CALL GetVoltageLimits(ILimitGroup **ppObject) override {
    return Hand<StandInLimitGroup>(Line("GetVoltageLimits"), ppObject, Limit('V'));
  }

 private:
  Place Limit(char chLimit) const {
    Place place = At();
    place.chLimit = chLimit;
    return place;
  }
};

}  // namespace

Status StandInChannelList::GetItem(Long index, IChannel **ppObject) {
  return Operate(Line("GetItem", index), [&]() -> std::string {
    if (index < 1 || index > At().instrument->lngChannels || index > 3)
      throw DriverFailure{InvalidChannelIndex, "Invalid channel index"};
    if (Driver().IsNothing()) return "nothing";
    Place place = At();
    place.lngChannel = index;
    *ppObject = automation::MakeObject<StandInChannel>(place).Detach();
    return StandInChannel::Name;
  });
}

}  // namespace tarvik::test
