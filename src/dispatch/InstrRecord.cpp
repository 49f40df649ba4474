#include "dispatch/InstrRecord.h"

#include <algorithm>
#include <functional>

#include "automation/Activation.h"

namespace tarvik {

using namespace automation;

/// One use of one field.
struct RecordMember {
  MemberShape shape;
  std::function<Value(void *pRecord, Arguments &arguments)> Run;
};

struct InstrRecordFields {
  const char *strName;
  InstrRecord::AnyRecord empty;
  std::vector<RecordMember> arrMembers;

  static const std::vector<InstrRecordFields> &All();
};

namespace {

template <class T>
constexpr ValueKind KindOf() {
  if constexpr (std::is_same_v<T, Boolean>) return ValueKind::BooleanValue;
  if constexpr (std::is_same_v<T, Integer>) return ValueKind::IntegerValue;
  if constexpr (std::is_same_v<T, Long>) return ValueKind::LongValue;
  if constexpr (std::is_same_v<T, Double>) return ValueKind::DoubleValue;
  if constexpr (std::is_same_v<T, std::string>) return ValueKind::StringValue;
  if constexpr (std::is_same_v<T, ByteArray>) return ValueKind::ByteArrayValue;
}

const Parameter ChannelIndex{"Channel", ValueKind::LongValue};

/// Builds the members of one record from its fields; both uses of a field have one number.
template <class Record>
class Fields {
 public:
  template <class T>
  Fields &Field(const char *strName, T Record::*pField) {
    ++m_lngNumber;
    Add({strName, m_lngNumber, CallPropertyGet},
        [pField](Record &record, Arguments &) { return Value(record.*pField); });
    Add({strName, m_lngNumber, CallPropertyPut, {{"Value", KindOf<T>()}}}, [pField](Record &record, Arguments &args) {
      record.*pField = args.Get<T>(0);
      return Value();
    });
    return *this;
  }

  template <class T>
  Fields &Field(const char *strName, ChannelArray<T> Record::*pField) {
    ++m_lngNumber;
    Add({strName, m_lngNumber, CallPropertyGet, {ChannelIndex}},
        [pField](Record &record, Arguments &args) { return Value((record.*pField)[args.Get<Long>(0)]); });
    Add({strName, m_lngNumber, CallPropertyPut, {ChannelIndex, {"Value", KindOf<T>()}}},
        [pField](Record &record, Arguments &args) {
          (record.*pField)[args.Get<Long>(0)] = args.Get<T>(1);
          return Value();
        });
    return *this;
  }

  /// What is only read out of the record.
  template <class T>
  Fields &Reading(const char *strName, T (Record::*pRead)() const) {
    ++m_lngNumber;
    Add({strName, m_lngNumber, CallPropertyGet},
        [pRead](Record &record, Arguments &) { return Value((record.*pRead)()); });
    return *this;
  }

  /// The bytes of a record that is read out; an array of just as many can be put in their place.
  Fields &Bytes(const char *strName, std::array<Byte, viInfo::Size> Record::*pBytes) {
    ++m_lngNumber;
    Add({strName, m_lngNumber, CallPropertyGet}, [pBytes](Record &record, Arguments &) {
      const auto &arrBytes = record.*pBytes;
      return Value(ByteArray(0, {arrBytes.begin(), arrBytes.end()}));
    });
    Add({strName, m_lngNumber, CallPropertyPut, {{"Value", ValueKind::ByteArrayValue}}},
        [pBytes](Record &record, Arguments &args) {
          const std::vector<Byte> &arrBytes = args.Get<ByteArray>(0).Elements();
          if (arrBytes.size() != (record.*pBytes).size()) RaiseError(ErrSubscriptOutOfRange);
          std::ranges::copy(arrBytes, (record.*pBytes).begin());
          return Value();
        });
    return *this;
  }

  InstrRecordFields As(const char *strName) { return {strName, Record{}, std::move(m_arrMembers)}; }

 private:
  template <class Use>
  void Add(MemberShape shape, Use use) {
    m_arrMembers.push_back({std::move(shape), [use](void *pRecord, Arguments &arguments) {
                              return use(*static_cast<Record *>(pRecord), arguments);
                            }});
  }

  std::int32_t m_lngNumber = 0;
  std::vector<RecordMember> m_arrMembers;
};

const Guid &IidRecord() {
  static const Guid iid = ClassIdOf("TarvikVI.InstrRecord");
  return iid;
}

}  // namespace

const std::vector<InstrRecordFields> &InstrRecordFields::All() {
  static const std::vector<InstrRecordFields> arrRecords{
      Fields<udtInstrInfo>()
          .Field("lngNumChannels", &udtInstrInfo::lngNumChannels)
          .Field("strLogAddr", &udtInstrInfo::strLogAddr)
          .Field("strProductId", &udtInstrInfo::strProductId)
          .Field("strSerialNum", &udtInstrInfo::strSerialNum)
          .Field("strSysVersion", &udtInstrInfo::strSysVersion)
          .Field("strInstOptions", &udtInstrInfo::strInstOptions)
          .Field("strFwCompileInfo", &udtInstrInfo::strFwCompileInfo)
          .As("udtInstrInfo"),
      Fields<udtModeInfo>()
          .Field("TriggerMode", &udtModeInfo::TriggerMode)
          .Field("PulseMode", &udtModeInfo::PulseMode)
          .Field("BurstLength", &udtModeInfo::BurstLength)
          .Field("PulseType", &udtModeInfo::PulseType)
          .Field("SignalFormat", &udtModeInfo::SignalFormat)
          .Field("PeriodSource", &udtModeInfo::PeriodSource)
          .Field("TriggerSlope", &udtModeInfo::TriggerSlope)
          .Field("ArmingSource", &udtModeInfo::ArmingSource)
          .Field("ArmSlope", &udtModeInfo::ArmSlope)
          .Field("PllFormat", &udtModeInfo::PllFormat)
          .Field("PllPeriodOrFreq", &udtModeInfo::PllPeriodOrFreq)
          .As("udtModeInfo"),
      Fields<udtTimingInfo>()
          .Field("dblFrequency", &udtTimingInfo::dblFrequency)
          .Field("fChannelOutputOn", &udtTimingInfo::fChannelOutputOn)
          .Field("fChannelOutputInvOn", &udtTimingInfo::fChannelOutputInvOn)
          .Field("fDoublePulse", &udtTimingInfo::fDoublePulse)
          .Field("fAutoCoupleLeTe", &udtTimingInfo::fAutoCoupleLeTe)
          .Field("dblDelay", &udtTimingInfo::dblDelay)
          .Field("dblWidth", &udtTimingInfo::dblWidth)
          .Field("dblLeading", &udtTimingInfo::dblLeading)
          .Field("dblTrailing", &udtTimingInfo::dblTrailing)
          .As("udtTimingInfo"),
      Fields<udtLevelInfo>()
          .Field("eOutputLevel", &udtLevelInfo::eOutputLevel)
          .Field("eOutputType", &udtLevelInfo::eOutputType)
          .Field("dblAmplOrHigh", &udtLevelInfo::dblAmplOrHigh)
          .Field("dblOffsetOrLow", &udtLevelInfo::dblOffsetOrLow)
          .Field("dblLoadCompensation", &udtLevelInfo::dblLoadCompensation)
          .Field("dblOutputImpedance", &udtLevelInfo::dblOutputImpedance)
          .Field("eOutputPolarity", &udtLevelInfo::eOutputPolarity)
          .Field("fChannelOutputOn", &udtLevelInfo::fChannelOutputOn)
          .Field("fChannelOutputInvOn", &udtLevelInfo::fChannelOutputInvOn)
          .Field("eChannelMath", &udtLevelInfo::eChannelMath)
          .As("udtLevelInfo"),
      Fields<udtLimitsInfo>()
          .Field("fEnabled", &udtLimitsInfo::fEnabled)
          .Field("dblHighVoltage", &udtLimitsInfo::dblHighVoltage)
          .Field("dblLowVoltage", &udtLimitsInfo::dblLowVoltage)
          .Field("dblHighCurrent", &udtLimitsInfo::dblHighCurrent)
          .Field("dblLowCurrent", &udtLimitsInfo::dblLowCurrent)
          .As("udtLimitsInfo"),
      Fields<udtTrgLevelsInfo>()
          .Field("dblExtInThreshold", &udtTrgLevelsInfo::dblExtInThreshold)
          .Field("dblExtInInputImp", &udtTrgLevelsInfo::dblExtInInputImp)
          .Field("dblClkInThreshold", &udtTrgLevelsInfo::dblClkInThreshold)
          .Field("dblClkInInputImp", &udtTrgLevelsInfo::dblClkInInputImp)
          .Field("eTriggerOutLevel", &udtTrgLevelsInfo::eTriggerOutLevel)
          .Field("eStrobeOutLevel", &udtTrgLevelsInfo::eStrobeOutLevel)
          .Field("eVxiTriggerSource", &udtTrgLevelsInfo::eVxiTriggerSource)
          .Field("eVxiTriggerLine", &udtTrgLevelsInfo::eVxiTriggerLine)
          .As("udtTrgLevelsInfo"),
      Fields<viInfo>()
          .Reading("Kind", &viInfo::Kind)
          .Reading("HasSlot", &viInfo::HasSlot)
          .Reading("LogicalAddress", &viInfo::LogicalAddress)
          .Reading("Slot", &viInfo::Slot)
          .Reading("ModelCode", &viInfo::ModelCode)
          .Bytes("Bytes", &viInfo::arrBytes)
          .As("viInfo"),
  };
  return arrRecords;
}

Ref<IDispatch> InstrRecord::Make(const std::string &strName) {
  for (const InstrRecordFields &fields : InstrRecordFields::All())
    if (SameName(fields.strName, strName)) return Ref<IDispatch>::Adopt(new InstrRecord(fields.empty));
  return nullptr;
}

Status InstrRecord::QueryInterface(const Guid &riid, void **ppvObject) {
  return DispatchObject::QueryInterface(riid == IidRecord() ? IidDispatch : riid, ppvObject);
}

InstrRecord *InstrRecord::Self(IDispatch &object) {
  Ref<IDispatch> self;
  if (Failed(object.QueryInterface(IidRecord(), reinterpret_cast<void **>(self.Out())))) return nullptr;
  // The caller's reference keeps it alive.
  return static_cast<InstrRecord *>(self.Get());
}

bool InstrRecord::IsRecord(IDispatch &object, const std::string &strName) {
  const InstrRecord *record = Self(object);
  return record && strName == InstrRecordFields::All()[record->m_record.index()].strName;
}

std::size_t InstrRecord::MemberCount() const { return InstrRecordFields::All()[m_record.index()].arrMembers.size(); }

const MemberShape &InstrRecord::Member(std::size_t number) const {
  return InstrRecordFields::All()[m_record.index()].arrMembers[number].shape;
}

Value InstrRecord::Run(std::size_t number, Arguments &arguments) {
  void *pRecord = std::visit([](auto &record) { return static_cast<void *>(&record); }, m_record);
  return InstrRecordFields::All()[m_record.index()].arrMembers[number].Run(pRecord, arguments);
}

std::string InstrRecord::Source() const { return InstrRecordFields::All()[m_record.index()].strName; }

}  // namespace tarvik
