#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InstrumentFace.h"
#include "automation/AutomationArray.h"

namespace tarvik::test {

using testing::ElementsAre;
using testing::StartsWith;

TEST_F(InstrumentFace, FindsMembersByNameInAnyCaseAndNumbersThemInTheOrderOfThePublicFace) {
  const Client face = NewFace();
  ASSERT_TRUE(face);
  EXPECT_EQ(face.NumberOf("TransactionStart"), 1);
  EXPECT_EQ(face.NumberOf("opeNINSTRUMENT"), 6);
  EXPECT_EQ(face.NumberOf("CalcPRBS"), 33);
  EXPECT_EQ(face.NumberOf("VerboseErrorMsg"), 39);
  Status status = StatusOk;
  EXPECT_EQ(face.NumberOf("Close", &status), -1);
  EXPECT_EQ(status, StatusUnknownName);
}

TEST_F(InstrumentFace, OffersEveryOperationOfTheInstrumentInterface) {
  const Client face = NewFace();
  const char *const arrNames[] = {"TransactionStart",
                                  "TransactionFinish",
                                  "TransactionCancel",
                                  "IsConnected",
                                  "IsOnline",
                                  "OpenInstrument",
                                  "CloseInstrument",
                                  "Connect",
                                  "CheckErrors",
                                  "CheckWarnings",
                                  "GetViInfo",
                                  "IsSingleChannel",
                                  "IsDualChannel",
                                  "ChannelCount",
                                  "GetInstrInfo",
                                  "SetMode",
                                  "GetMode",
                                  "SetTiming",
                                  "GetTiming",
                                  "Output",
                                  "IsRestricted",
                                  "IsNotRestricted",
                                  "SetLevels",
                                  "GetLevels",
                                  "SetLimits",
                                  "GetLimits",
                                  "SetTriggerLevels",
                                  "GetTriggerLevels",
                                  "SetRz",
                                  "GetRz",
                                  "SetPatternArray",
                                  "GetPatternArray",
                                  "CalcPRBS",
                                  "WarningsEnabled",
                                  "ErrorsEnabled",
                                  "InstrumentCommands",
                                  "PllRefSource",
                                  "PnpTimeout",
                                  "VerboseErrorMsg"};
  std::int32_t lngNumber = 0;
  for (const char *strName : arrNames) EXPECT_EQ(face.NumberOf(strName), ++lngNumber) << strName;
  EXPECT_EQ(lngNumber, 39);
}

TEST_F(InstrumentFace, EachRecordIsReadAndSentBackByName) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const std::pair<const char *, const char *> arrRecords[] = {{"Mode", "udtModeInfo"},
                                                              {"Timing", "udtTimingInfo"},
                                                              {"Levels", "udtLevelInfo"},
                                                              {"Limits", "udtLimitsInfo"},
                                                              {"TriggerLevels", "udtTrgLevelsInfo"}};
  for (const auto &[strGroup, strRecord] : arrRecords) {
    const Client record = face.NewRecord(strRecord);
    ASSERT_TRUE(record) << strRecord;
    EXPECT_TRUE(face.Truth(std::string("Get") + strGroup, {Object(record.Get())})) << strGroup;
    EXPECT_TRUE(face.Truth(std::string("Set") + strGroup, {Object(record.Get())})) << strGroup;
  }
  const Client info = face.NewRecord("udtInstrInfo");
  ASSERT_TRUE(face.Truth("GetInstrInfo", {Object(info.Get())}));
  const AutomationVariant vProduct = info.Call("strProductId", {}, AsGet);
  ASSERT_EQ(vProduct.vt, VtString);
  EXPECT_THAT(String::Adopt(vProduct.bstrVal).Text(), StartsWith("VP-210"));
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, EachPropertyReadsBackAsItWasPutByTheNumberOfItsName) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  for (const char *strProperty : {"WarningsEnabled", "ErrorsEnabled", "VerboseErrorMsg"})
    for (const bool fOn : {true, false}) {
      EXPECT_EQ(face.Invoke(strProperty, AsPut, {Flag(fOn)}), StatusOk) << strProperty;
      const AutomationVariant vNow = face.Call(strProperty, {}, AsGet);
      EXPECT_EQ(vNow.vt, VtBoolean) << strProperty;
      EXPECT_EQ(vNow.boolVal, fOn ? -1 : 0) << strProperty;
    }
  EXPECT_EQ(face.Invoke("PnpTimeout", AsPut, {Number(1234)}), StatusOk);
  EXPECT_EQ(face.Call("PnpTimeout", {}, AsGet).lVal, 1234);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, ASelfTestHandsItsTextBackWithAndWithoutACode) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  for (const bool fCode : {false, true}) {
    AutomationVariant vText{};
    AutomationVariant vReference{};
    vReference.vt = VtByRef | VtVariant;
    vReference.pvarVal = &vText;
    std::vector<AutomationVariant> arrArguments{Number(1), vReference};
    if (fCode) arrArguments.push_back(Number(5));
    EXPECT_TRUE(face.Truth("InstrumentCommands", arrArguments));
    ASSERT_EQ(vText.vt, VtString);
    EXPECT_NE(String::Adopt(vText.bstrVal).Text(), "");
  }
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, TellsWhatTheOpenInstrumentIs) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  EXPECT_TRUE(face.Truth("IsConnected"));
  EXPECT_FALSE(face.Truth("IsSingleChannel"));
  EXPECT_TRUE(face.Truth("IsDualChannel"));
  EXPECT_EQ(face.Call("ChannelCount").lVal, 2);
  EXPECT_FALSE(face.Truth("IsRestricted", {Number(1)}));
  EXPECT_TRUE(face.Truth("IsNotRestricted", {Number(1)}));
  EXPECT_EQ(face.Call("CheckErrors", {Flag(true)}).vt, VtBoolean);
  EXPECT_TRUE(face.Truth("CheckWarnings", {Flag(true)}));
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, SwitchesTheComplementOfAChannelAndNotTheChannel) {
  const Client face = NewFace(), levels = face.NewRecord("udtLevelInfo");
  ASSERT_TRUE(OpenFirst(face));
  ASSERT_TRUE(face.Truth("InstrumentCommands", {Number(0)}));
  ASSERT_TRUE(face.Truth("Output", {Number(2), Flag(true), Flag(true)}));
  ASSERT_TRUE(face.Truth("GetLevels", {Object(levels.Get())}));
  EXPECT_EQ(levels.Call("fChannelOutputInvOn", {Number(2)}, AsGet).boolVal, -1);
  EXPECT_EQ(levels.Call("fChannelOutputOn", {Number(2)}, AsGet).boolVal, 0);
  EXPECT_EQ(levels.Call("fChannelOutputInvOn", {Number(1)}, AsGet).boolVal, 0);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, ACancelledTransactionAndAnOpenWithResetDropWhatWasSet) {
  const Client face = NewFace(), timing = face.NewRecord("udtTimingInfo");
  ASSERT_TRUE(OpenFirst(face));
  const auto width = [&] {
    EXPECT_TRUE(face.Truth("GetTiming", {Object(timing.Get())}));
    return timing.Call("dblWidth", {Number(1)}, AsGet).dblVal;
  };
  const auto setWidth = [&](double dblWidth) {
    timing.Invoke("dblWidth", AsPut, {Number(1), Real(dblWidth)});
    return face.Truth("SetTiming", {Object(timing.Get())});
  };
  ASSERT_TRUE(face.Truth("InstrumentCommands", {Number(0)}));
  const double dblFresh = width();
  ASSERT_TRUE(face.Truth("TransactionStart", {Flag(true)}));
  EXPECT_TRUE(setWidth(2 * dblFresh));
  EXPECT_EQ(face.Invoke("TransactionCancel", AsMethod), StatusOk);
  EXPECT_EQ(width(), dblFresh);
  EXPECT_TRUE(setWidth(2 * dblFresh));
  const AutomationVariant vName = Text(FirstInstrument(face));
  ASSERT_TRUE(face.Truth("OpenInstrument", {vName}));
  EXPECT_EQ(width(), 2 * dblFresh);
  ASSERT_TRUE(face.Truth("OpenInstrument", {vName, Flag(false), Flag(true), Flag(false)}));
  EXPECT_EQ(width(), dblFresh);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, FillsAnArrayWithThePseudoRandomBitsOfTheAddresses) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  AutomationArray *bits = AllocByteArray(0, nullptr, 2);
  AutomationVariant vBits{};
  vBits.vt = VtByRef | VtArray | VtByte;
  vBits.pparray = &bits;
  EXPECT_TRUE(face.Truth("CalcPRBS", {Number(1), Number(8), Number(7), vBits}));
  const auto *bytes = static_cast<const std::uint8_t *>(bits->pvData);
  EXPECT_EQ(bytes[0], 0xFE) << "seven ones and the feedback of the sixth and the seventh";
  EXPECT_EQ(bytes[1], 0x00);
  FreeArray(bits);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, DrivesASessionByName) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  EXPECT_TRUE(face.Truth("IsOnline", {Flag(true)}));

  const Client timing = face.NewRecord("udtTimingInfo");
  ASSERT_TRUE(timing);
  ASSERT_TRUE(face.Truth("GetTiming", {Object(timing.Get())}));
  EXPECT_EQ(timing.Invoke("dblFrequency", AsPut, {Real(100e3)}), StatusOk);
  EXPECT_EQ(timing.Invoke("dblWidth", AsPut, {Number(1), Real(2.5e-6)}), StatusOk);
  ASSERT_TRUE(face.Truth("SetTiming", {Object(timing.Get())}));

  const Client again = face.NewRecord("udtTimingInfo");
  ASSERT_TRUE(face.Truth("GetTiming", {Object(again.Get())}));
  EXPECT_DOUBLE_EQ(again.Call("dblFrequency", {}, AsGet).dblVal, 100e3);
  EXPECT_DOUBLE_EQ(again.Call("dblWidth", {Number(1)}, AsGet).dblVal, 2.5e-6);

  EXPECT_EQ(face.Invoke("CloseInstrument", AsMethod), StatusOk);
  EXPECT_FALSE(face.Truth("IsOnline", {Flag(true)}));
  EXPECT_EQ(face.Call("ChannelCount").vt, VtEmpty);
}

TEST_F(InstrumentFace, HandsAPatternBackThroughAnArrayByReference) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const std::uint8_t bytes[] = {0xA5, 0x3C};
  AutomationArray *sent = AllocByteArray(1, bytes, 2), *read = AllocByteArray(1, nullptr, 1);
  AutomationVariant vArray{}, vLength{};
  vArray.vt = VtByRef | VtArray | VtByte;
  vArray.pparray = &sent;
  ASSERT_TRUE(face.Truth("SetPatternArray", {Number(1), vArray, Number(16)}));
  std::int32_t lngLength = 0;
  vArray.pparray = &read;
  vLength.vt = VtByRef | VtLong;
  vLength.plVal = &lngLength;
  ASSERT_TRUE(face.Truth("GetPatternArray", {Number(1), vArray, vLength}));
  EXPECT_EQ(lngLength, 16);
  EXPECT_THAT(std::vector<std::uint8_t>(static_cast<std::uint8_t *>(read->pvData),
                                        static_cast<std::uint8_t *>(read->pvData) + 2),
              ElementsAre(0xA5, 0x3C));
  FreeArray(sent);
  FreeArray(read);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, AllFacesOfAThreadShareOneSession) {
  const Client first = NewFace(), second = NewFace();
  ASSERT_TRUE(OpenFirst(first));
  EXPECT_TRUE(second.Truth("IsOnline", {Flag(true)}));
  second.Invoke("CloseInstrument", AsMethod);
  EXPECT_FALSE(first.Truth("IsOnline", {Flag(true)}));
}

TEST_F(InstrumentFace, RefusesAWrongNumberOfArgumentsAndChangesNothing) {
  const Client face = NewFace();
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsPut, {Flag(false)}), StatusOk);
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsPut, {Flag(true), Flag(true)}), StatusBadParamCount);
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsGet, {Flag(true)}), StatusBadParamCount);
  EXPECT_EQ(face.Invoke("Output", AsMethod, {Number(1)}), StatusBadParamCount);
  EXPECT_EQ(face.Invoke("Output", AsMethod, {Number(1), Flag(true), Flag(true), Flag(true)}), StatusBadParamCount);
  EXPECT_EQ(face.Call("WarningsEnabled", {}, AsGet).boolVal, 0);
}

TEST_F(InstrumentFace, RefusesAnArgumentOfAnotherTypeTellsWhichAndChangesNothing) {
  const Client face = NewFace();
  std::uint32_t lngWhich = 99;
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsPut, {Text("True")}, nullptr, nullptr, &lngWhich), StatusTypeMismatch);
  EXPECT_EQ(lngWhich, 0u);
  EXPECT_EQ(face.Call("WarningsEnabled", {}, AsGet).boolVal, 0);
  // Arguments stand last one first, so the first of two is number 1.
  EXPECT_EQ(face.Invoke("Output", AsMethod, {Text("1"), Flag(true)}, nullptr, nullptr, &lngWhich), StatusTypeMismatch);
  EXPECT_EQ(lngWhich, 1u);
  lngWhich = 99;
  EXPECT_EQ(face.Invoke("Output", AsMethod, {Number(40000), Flag(true)}, nullptr, nullptr, &lngWhich), StatusOverflow);
  EXPECT_EQ(lngWhich, 1u);
  EXPECT_EQ(face.Invoke("Output", AsMethod, {LeftOut(), Flag(true)}), StatusParamNotOptional);
  const Client mode = face.NewRecord("udtModeInfo");
  EXPECT_EQ(face.Invoke("SetTiming", AsMethod, {Object(mode.Get())}), StatusTypeMismatch);
  EXPECT_EQ(face.Invoke("SetTiming", AsMethod, {Object(nullptr)}), StatusTypeMismatch);
  std::int32_t lngName = 0;
  AutomationVariant vName{};
  vName.vt = VtByRef | VtLong;
  vName.plVal = &lngName;
  EXPECT_EQ(face.Invoke("OpenInstrument", AsMethod, {vName}), StatusTypeMismatch);
  EXPECT_EQ(face.Invoke("OpenInstrument", AsMethod, {Number(1)}), StatusTypeMismatch);
  EXPECT_EQ(face.Invoke("NewRecord", AsMethod, {Number(1)}), StatusTypeMismatch);
}

TEST_F(InstrumentFace, RefusesMembersThatAreNotThereAndUsesThatAreNotTheirs) {
  const Client face = NewFace();
  AutomationDispParams none{};
  EXPECT_EQ(face.Get()->Invoke(77, GuidNull, 0, AsMethod, &none, nullptr, nullptr, nullptr), StatusMemberNotFound);
  EXPECT_EQ(face.Get()->Invoke(4, IidUnknown, 0, AsMethod, &none, nullptr, nullptr, nullptr), StatusUnknownInterface);
  EXPECT_EQ(face.Invoke("IsConnected", AsPut, {Flag(true)}), StatusMemberNotFound);
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsMethod), StatusMemberNotFound);
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsMethod | AsGet), StatusOk);
}

TEST_F(InstrumentFace, APutNeedsItsValueMarkedAsSuch) {
  const Client face = NewFace();
  EXPECT_EQ(face.Invoke("WarningsEnabled", AsPut, {Flag(false)}), StatusOk);
  AutomationVariant vOn = Flag(true);
  AutomationDispParams unmarked{&vOn, nullptr, 1, 0}, none{};
  for (AutomationDispParams *params : {&unmarked, &none})
    EXPECT_EQ(
        face.Get()->Invoke(face.NumberOf("WarningsEnabled"), GuidNull, 0, AsPut, params, nullptr, nullptr, nullptr),
        StatusParamNotOptional);
  EXPECT_EQ(face.Call("WarningsEnabled", {}, AsGet).boolVal, 0);
}

TEST_F(InstrumentFace, OptionalArgumentsMayBeLeftOut) {
  const Client face = NewFace();
  EXPECT_EQ(face.Invoke("IsOnline", AsMethod), StatusOk);
  EXPECT_EQ(face.Invoke("IsOnline", AsMethod, {LeftOut()}), StatusOk);
}

TEST_F(InstrumentFace, ARecordRefusesAChannelThatIsNoneWithADescription) {
  const Client record = NewFace().NewRecord("UDTTIMINGINFO");
  ASSERT_TRUE(record);
  AutomationExcepInfo info{};
  EXPECT_EQ(record.Invoke("dblWidth", AsPut, {Number(3), Real(1)}, nullptr, &info), StatusException);
  EXPECT_EQ(static_cast<std::uint32_t>(info.scode), 0x800A0009u);
  EXPECT_EQ(ToText(info.bstrDescription), "Subscript out of range");
  EXPECT_EQ(ToText(info.bstrSource), "udtTimingInfo");
  FreeString(info.bstrDescription);
  FreeString(info.bstrSource);
  EXPECT_FALSE(NewFace().NewRecord("udtNothing"));
}

/// A call with named arguments, which stand first.
struct NamedCall {
  std::vector<AutomationVariant> arrArguments;
  std::vector<MemberId> arrNames;

  Status operator()(const Client &client, const std::string &strName, AutomationVariant *pResult = nullptr,
                    std::uint32_t *pWhich = nullptr) {
    AutomationDispParams params{arrArguments.data(), arrNames.data(), static_cast<std::uint32_t>(arrArguments.size()),
                                static_cast<std::uint32_t>(arrNames.size())};
    return client.Get()->Invoke(client.NumberOf(strName), GuidNull, 0, AsMethod, &params, pResult, nullptr, pWhich);
  }
};

TEST_F(InstrumentFace, NumbersParametersByNameAndTakesNamedArguments) {
  const Client face = NewFace();
  std::u16string member = u"Output", state = u"FSTATE", channel = u"intChan", other = u"intChannel";
  char16_t *names[] = {member.data(), state.data(), channel.data()};
  MemberId ids[3] = {};
  ASSERT_EQ(face.Get()->GetIDsOfNames(GuidNull, names, 3, 0, ids), StatusOk);
  EXPECT_THAT(ids, ElementsAre(20, 1, 0));
  names[2] = other.data();
  EXPECT_EQ(face.Get()->GetIDsOfNames(GuidNull, names, 3, 0, ids), StatusUnknownName);
  EXPECT_THAT(ids, ElementsAre(20, 1, -1));

  ASSERT_TRUE(OpenFirst(face));
  AutomationVariant vDone{};
  EXPECT_EQ((NamedCall{{Flag(true), Number(2)}, {1, 0}}(face, "Output", &vDone)), StatusOk);
  EXPECT_EQ(vDone.boolVal, -1);
  const Client levels = face.NewRecord("udtLevelInfo");
  ASSERT_TRUE(face.Truth("GetLevels", {Object(levels.Get())}));
  EXPECT_EQ(levels.Call("fChannelOutputOn", {Number(2)}, AsGet).boolVal, -1);
  // The first by place, the third by name, the second left out although it is needed.
  std::uint32_t lngWhich = 99;
  EXPECT_EQ((NamedCall{{Flag(true), Number(2)}, {2}}(face, "Output")), StatusParamNotOptional);
  EXPECT_EQ((NamedCall{{Flag(true), Number(2)}, {7}}(face, "Output", nullptr, &lngWhich)), StatusParamNotFound);
  EXPECT_EQ(lngWhich, 0u);
  EXPECT_EQ((NamedCall{{Flag(true), Flag(true), Number(2)}, {0}}(face, "Output", nullptr, &lngWhich)),
            StatusParamNotFound)
      << "given by name and by place";
  face.Invoke("CloseInstrument", AsMethod);
}

}  // namespace tarvik::test
