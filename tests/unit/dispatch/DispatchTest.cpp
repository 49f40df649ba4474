#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "DispatchClient.h"
#include "automation/AutomationArray.h"

namespace tarvik::test {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class InstrumentFace : public testing::Test {
 protected:
  void SetUp() override {
    m_folder = fs::temp_directory_path() / ("tarvik-dispatch-" + std::to_string(getpid()));
    fs::create_directories(m_folder);
    for (const char *strName : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      setenv(strName, m_folder.c_str(), 1);
    setenv("XDG_DATA_DIRS", m_folder.c_str(), 1);
  }
  void TearDown() override { fs::remove_all(m_folder); }

  /// The name of the first instrument of the simulated family.
  std::string FirstInstrument(const Client &face) {
    AutomationString bstr = nullptr;
    AutomationVariant vName{};
    vName.vt = VtByRef | VtString;
    vName.pbstrVal = &bstr;
    const Client record = face.NewRecord("viInfo");
    if (!face.Truth("GetViInfo", {Number(1), Object(record.Get()), vName})) return "";
    return String::Adopt(bstr).Text();
  }
  std::string Log() const {
    std::ifstream file(m_folder / "tarvikvi/tarvikerr.txt", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool OpenFirst(const Client &face) {
    return face.Truth("Connect") && face.Truth("OpenInstrument", {Text(FirstInstrument(face))});
  }

  fs::path m_folder;
};

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

TEST_F(InstrumentFace, TellsSinksOfSettingsThatTheInstrumentRefuses) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const Client timing = face.NewRecord("udtTimingInfo");
  ASSERT_TRUE(face.Truth("GetTiming", {Object(timing.Get())}));
  ASSERT_TRUE(face.Truth("TransactionStart", {Flag(true)}));
  EXPECT_EQ(timing.Invoke("dblWidth", AsPut, {Number(1), Real(2000)}), StatusOk);
  ASSERT_TRUE(face.Truth("SetTiming", {Object(timing.Get())}));
  Sink sink;
  const AutomationVariant vCookie = face.Call("Advise", {Object(&sink)});
  EXPECT_FALSE(face.Truth("TransactionFinish", {Flag(true)}));
  ASSERT_EQ(sink.Told.size(), 1u);
  EXPECT_THAT(sink.Told[0], StartsWith("3 "));
  EXPECT_GT(sink.Told[0].size(), 10u);
  face.Invoke("Unadvise", AsMethod, {Number(vCookie.lVal)});
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

TEST_F(InstrumentFace, TellsSinksOfEventsUntilTheCookieIsGivenBack) {
  const Client face = NewFace();
  Sink sink;
  const AutomationVariant vCookie = face.Call("Advise", {Object(&sink)});
  ASSERT_EQ(vCookie.vt, VtLong);
  EXPECT_EQ(sink.References, 2u);
  ASSERT_TRUE(face.Truth("Connect"));
  EXPECT_THAT(sink.Told, ElementsAre("1 Local Connection"));
  const std::string strName = FirstInstrument(face);
  ASSERT_TRUE(face.Truth("OpenInstrument", {Text(strName)}));
  ASSERT_EQ(sink.Told.size(), 3u);
  EXPECT_EQ(sink.Told[1], "1 Offline");
  EXPECT_THAT(sink.Told[2], StartsWith("1 Online with " + strName + " ("));
  EXPECT_TRUE(face.Truth("Unadvise", {Number(vCookie.lVal)}));
  EXPECT_FALSE(face.Truth("Unadvise", {Number(vCookie.lVal)}));
  EXPECT_EQ(sink.References, 1u);
  face.Invoke("CloseInstrument", AsMethod);
  EXPECT_EQ(sink.Told.size(), 3u);
}

TEST_F(InstrumentFace, AFailingSinkIsReportedAndTheOthersAreTold) {
  // Before the face, which holds them until its end.
  Sink failing, silent, willing;
  const Client face = NewFace();
  failing.Answer = StatusFail;
  failing.Words = "the client's own mistake";
  silent.Answer = StatusMemberNotFound;
  for (Sink *sink : {&failing, &silent, &willing}) face.Call("Advise", {Object(sink)});
  EXPECT_TRUE(face.Truth("Connect"));
  for (const Sink *sink : {&failing, &silent, &willing}) EXPECT_THAT(sink->Told, ElementsAre("1 Local Connection"));
  const std::string strLog = Log();
  EXPECT_THAT(strLog, HasSubstr("  Error: -2147467259 the client's own mistake\r\n"
                                "  Mod: clsInstrInterface; Proc: StatusMessage\r\n"));
  EXPECT_EQ(strLog.find("  Error:"), strLog.rfind("  Error:")) << "one record: a sink need not know every event";
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

/// A variant that refers to another value.
AutomationVariant ByReference(std::uint16_t vt, void *pPlace) {
  AutomationVariant v{};
  v.vt = static_cast<std::uint16_t>(VtByRef | vt);
  v.byref = pPlace;
  return v;
}

template <class T>
AutomationVariant Of(std::uint16_t vt, T value) {
  AutomationVariant v{};
  v.vt = vt;
  std::memcpy(&v.llVal, &value, sizeof value);
  return v;
}

TEST_F(InstrumentFace, TakesEveryWholeNumberTypeByValueAndByReference) {
  const Client record = NewFace().NewRecord("udtModeInfo");
  const AutomationVariant numbers[] = {
      Of<std::int8_t>(VtSignedByte, 7),      Of<std::uint8_t>(VtByte, 7),
      Of<std::int16_t>(VtInteger, 7),        Of<std::uint16_t>(VtUnsignedInteger, 7),
      Of<std::int32_t>(VtLong, 7),           Of<std::uint32_t>(VtUnsignedLong, 7),
      Of<std::int64_t>(VtHuge, 7),           Of<std::uint64_t>(VtUnsignedHuge, 7),
      Of<std::int32_t>(VtMachineInteger, 7), Of<std::uint32_t>(VtMachineUnsigned, 7),
  };
  for (const AutomationVariant &vNumber : numbers) {
    SCOPED_TRACE(vNumber.vt);
    AutomationVariant vCopy = vNumber;
    for (const AutomationVariant &vSent : {vNumber, ByReference(vNumber.vt, &vCopy.llVal)}) {
      EXPECT_EQ(record.Invoke("BurstLength", AsPut, {Number(0)}), StatusOk);
      EXPECT_EQ(record.Invoke("BurstLength", AsPut, {vSent}), StatusOk);
      EXPECT_EQ(record.Call("BurstLength", {}, AsGet).lVal, 7);
    }
  }
  std::uint32_t lngWhich = 99;
  EXPECT_EQ(record.Invoke("BurstLength", AsPut, {Of<std::uint32_t>(VtUnsignedLong, 0x80000000u)}, nullptr, nullptr,
                          &lngWhich),
            StatusOverflow);
  EXPECT_EQ(lngWhich, 0u);
  EXPECT_EQ(record.Invoke("BurstLength", AsPut, {Of<std::int64_t>(VtHuge, -0x80000001LL)}), StatusOverflow);
}

TEST_F(InstrumentFace, AnEmptyVariantIsZeroFalseAndTheEmptyText) {
  const Client face = NewFace(), record = face.NewRecord("udtInstrInfo");
  record.Invoke("lngNumChannels", AsPut, {Number(5)});
  record.Invoke("strProductId", AsPut, {Text("something")});
  EXPECT_EQ(record.Invoke("lngNumChannels", AsPut, {AutomationVariant{}}), StatusOk);
  EXPECT_EQ(record.Invoke("strProductId", AsPut, {AutomationVariant{}}), StatusOk);
  EXPECT_EQ(record.Call("lngNumChannels", {}, AsGet).lVal, 0);
  const AutomationVariant vProduct = record.Call("strProductId", {}, AsGet);
  EXPECT_EQ(ToText(vProduct.bstrVal), "");
  FreeString(vProduct.bstrVal);
  AutomationVariant vNull{};
  vNull.vt = 1;
  EXPECT_EQ(record.Invoke("lngNumChannels", AsPut, {vNull}), StatusTypeMismatch);
}

TEST_F(InstrumentFace, FillsAnEmptyVariantByReference) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  AutomationVariant vArray{}, vLength{};
  ASSERT_TRUE(
      face.Truth("GetPatternArray", {Number(1), ByReference(VtVariant, &vArray), ByReference(VtVariant, &vLength)}));
  EXPECT_EQ(vLength.vt, VtLong);
  ASSERT_EQ(vArray.vt, VtArray | VtByte);
  EXPECT_EQ(vArray.parray->rgsabound[0].cElements, static_cast<std::uint32_t>((vLength.lVal + 7) / 8));
  FreeArray(vArray.parray);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, ANumberByReferenceComesBackInTheCallersType) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  float sngFreq = 0;
  std::int16_t intSource = 9;
  EXPECT_TRUE(
      face.Truth("PllRefSource", {ByReference(VtSingle, &sngFreq), ByReference(VtInteger, &intSource), Flag(true)}));
  EXPECT_EQ(sngFreq, 5e6f);
  EXPECT_EQ(intSource, 1);
  // Five million does not fit into 16 bits.
  std::int16_t intFreq = 0;
  AutomationExcepInfo info{};
  EXPECT_EQ(
      face.Invoke("PllRefSource", AsMethod,
                  {ByReference(VtInteger, &intFreq), ByReference(VtInteger, &intSource), Flag(true)}, nullptr, &info),
      StatusException);
  EXPECT_EQ(static_cast<std::uint32_t>(info.scode), 0x800A0006u);
  FreeString(info.bstrDescription);
  FreeString(info.bstrSource);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, AFixedOrLockedArrayIsFilledWhereItIs) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const std::uint8_t bytes[] = {0xA5, 0x3C};
  AutomationArray *sent = AllocByteArray(0, bytes, 2), *read = AllocByteArray(0, nullptr, 2);
  ASSERT_TRUE(face.Truth("SetPatternArray", {Number(1), ByReference(VtArray | VtByte, &sent), Number(16)}));
  AutomationArray *const before = read;
  void *const data = read->pvData;
  std::int32_t lngLength = 0;
  for (const bool fLocked : {true, false}) {
    SCOPED_TRACE(fLocked);
    std::memset(read->pvData, 0, 2);
    read->cLocks = fLocked ? 1 : 0;
    read->fFeatures = fLocked ? 0 : 0x0010;
    ASSERT_TRUE(face.Truth("GetPatternArray",
                           {Number(1), ByReference(VtArray | VtByte, &read), ByReference(VtLong, &lngLength)}));
    EXPECT_EQ(read, before);
    EXPECT_EQ(read->pvData, data);
    EXPECT_EQ(std::memcmp(read->pvData, bytes, 2), 0);
  }
  // Another length would need another array.
  const std::uint8_t more[] = {1, 2, 3};
  AutomationArray *longer = AllocByteArray(0, more, 3);
  ASSERT_TRUE(face.Truth("SetPatternArray", {Number(1), ByReference(VtArray | VtByte, &longer), Number(24)}));
  AutomationExcepInfo info{};
  EXPECT_EQ(
      face.Invoke("GetPatternArray", AsMethod,
                  {Number(1), ByReference(VtArray | VtByte, &read), ByReference(VtLong, &lngLength)}, nullptr, &info),
      StatusException);
  EXPECT_EQ(static_cast<std::uint32_t>(info.scode), 0x800A000Au);
  EXPECT_EQ(ToText(info.bstrDescription), "This array is fixed or temporarily locked");
  EXPECT_EQ(std::memcmp(read->pvData, bytes, 2), 0);
  FreeString(info.bstrDescription);
  FreeString(info.bstrSource);
  read->fFeatures = 0;
  for (AutomationArray *pArray : {sent, read, longer}) FreeArray(pArray);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, TakesAndFillsArraysOfVariantsAsScriptsHaveThem) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  AutomationVariant vFormats{};
  vFormats.vt = VtArray | VtVariant;
  vFormats.parray = AllocArray(VtVariant, 0, 3);
  auto *formats = static_cast<AutomationVariant *>(vFormats.parray->pvData);
  formats[1] = Flag(false);
  formats[2] = Number(5);
  ASSERT_TRUE(face.Truth("SetRz", {ByReference(VtVariant, &vFormats)}));
  formats[1] = formats[2] = AutomationVariant{};
  ASSERT_TRUE(face.Truth("GetRz", {ByReference(VtVariant, &vFormats)}));
  EXPECT_EQ(formats[1].vt, VtBoolean);
  EXPECT_EQ(formats[1].boolVal, 0);
  EXPECT_EQ(formats[2].boolVal, -1);
  formats[1] = Text("no number");
  EXPECT_EQ(face.Invoke("SetRz", AsMethod, {ByReference(VtVariant, &vFormats)}), StatusTypeMismatch);
  formats[1] = {};
  FreeArray(vFormats.parray);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, AnArrayOfTwoDimensionsFailsInTheOperationAndStaysAsItIs) {
  const Client face = NewFace();
  ASSERT_TRUE(OpenFirst(face));
  const std::uint8_t four[] = {1, 2, 3, 4};
  AutomationArray *bytes = AllocByteArray(0, four, 4), *truths = AllocArray(VtBoolean, 0, 4);
  AutomationArray *const bytesBefore = bytes, *const truthsBefore = truths;
  bytes->cDims = truths->cDims = 2;
  const AutomationVariant vBytes = ByReference(VtArray | VtByte, &bytes),
                          vTruths = ByReference(VtArray | VtBoolean, &truths);
  EXPECT_FALSE(face.Truth("SetRz", {vTruths}));
  EXPECT_FALSE(face.Truth("GetRz", {vTruths}));
  EXPECT_FALSE(face.Truth("SetPatternArray", {Number(1), vBytes, Number(8)}));
  std::int32_t lngLength = 5;
  EXPECT_FALSE(face.Truth("GetPatternArray", {Number(1), vBytes, ByReference(VtLong, &lngLength)}));
  EXPECT_EQ(lngLength, 5);
  EXPECT_FALSE(face.Truth("CalcPRBS", {Number(1), Number(8), Number(7), vBytes}));
  for (const char *strOperation : {"SetRz", "GetRz", "SetPatternArray", "GetPatternArray", "CalcPRBS"})
    EXPECT_THAT(Log(), HasSubstr(std::string("  Error: 9 Subscript out of range\r\n  Mod: clsInstrInterface; Proc: ") +
                                 strOperation + "\r\n"));
  EXPECT_EQ(bytes, bytesBefore);
  EXPECT_EQ(truths, truthsBefore);
  EXPECT_EQ(bytes->cDims, 2);
  EXPECT_EQ(std::memcmp(bytes->pvData, four, 4), 0);
  bytes->cDims = truths->cDims = 1;
  FreeArray(bytes);
  FreeArray(truths);
  face.Invoke("CloseInstrument", AsMethod);
}

TEST_F(InstrumentFace, TheRecordOfAnInstrumentIsItsBytesAndTheirReadings) {
  const Client face = NewFace(), record = face.NewRecord("viInfo");
  ASSERT_TRUE(face.Truth("Connect"));
  AutomationVariant vName{};
  ASSERT_TRUE(face.Truth("GetViInfo", {Number(1), Object(record.Get()), ByReference(VtVariant, &vName)}));
  const AutomationVariant vBytes = record.Call("Bytes", {}, AsGet);
  ASSERT_EQ(vBytes.vt, VtArray | VtByte);
  ASSERT_EQ(vBytes.parray->rgsabound[0].cElements, 28u);
  EXPECT_EQ(vBytes.parray->rgsabound[0].lLbound, 0);
  EXPECT_EQ(static_cast<std::uint8_t *>(vBytes.parray->pvData)[22], record.Call("Slot", {}, AsGet).iVal);

  const Client other = face.NewRecord("viInfo");
  EXPECT_EQ(other.Invoke("Bytes", AsPut, {vBytes}), StatusOk);
  EXPECT_EQ(other.Call("ModelCode", {}, AsGet).iVal, 0x0210);
  AutomationVariant vShort{};
  vShort.vt = VtArray | VtByte;
  vShort.parray = AllocByteArray(0, nullptr, 27);
  EXPECT_EQ(other.Invoke("Bytes", AsPut, {vShort}), StatusException);
  FreeArray(vShort.parray);
  FreeArray(vBytes.parray);
  FreeString(vName.bstrVal);
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

TEST_F(InstrumentFace, TellsASinkThatHasNamesByThem) {
  struct NamedSink : Sink {
    Status GetIDsOfNames(const Guid &, AutomationChar **rgszNames, std::uint32_t, LocaleId,
                         MemberId *rgDispId) override {
      if (NameText(rgszNames[0]) != "StatusMessage") return StatusUnknownName;
      *rgDispId = 42;
      return StatusOk;
    }
  } sink;
  const Client face = NewFace();
  face.Call("Advise", {Object(&sink)});
  ASSERT_TRUE(face.Truth("Connect"));
  EXPECT_THAT(sink.Told, ElementsAre("42 Local Connection"));
}

TEST_F(InstrumentFace, RegistersItselfForCreationByNameAndTakesItBack) {
  EXPECT_EQ(Export<NoArgument>("DllRegisterServer")(), StatusOk);
  const fs::path manifest = m_folder / "tarvikvi/drivers/TarvikVI.clsInstrInterface.driver";
  std::string strLine;
  std::getline(std::ifstream(manifest), strLine);
  EXPECT_TRUE(fs::equivalent(strLine, TARVIK_LIBRARY)) << strLine;
  EXPECT_TRUE(CreateObject("TarvikVI.clsInstrInterface", ""));
  EXPECT_EQ(Export<NoArgument>("DllUnregisterServer")(), StatusOk);
  EXPECT_FALSE(fs::exists(manifest));
  EXPECT_EQ(Export<NoArgument>("DllUnregisterServer")(), StatusOk);
}

TEST_F(InstrumentFace, RegistrationWithoutAPlaceToWriteSaysSo) {
  std::ofstream(m_folder / "tarvikvi") << "a file where the folder should be\n";
  EXPECT_EQ(Export<NoArgument>("DllRegisterServer")(), StatusAccessDenied);
}

TEST_F(InstrumentFace, WithoutAHomeRegistrationWritesNothingIntoTheCurrentFolder) {
  unsetenv("HOME");
  unsetenv("XDG_DATA_HOME");
  const fs::path before = fs::current_path();
  fs::current_path(m_folder);
  EXPECT_EQ(Export<NoArgument>("DllRegisterServer")(), StatusAccessDenied);
  EXPECT_EQ(TakeErrorInfo()->strDescription, "There is no home folder to register in");
  EXPECT_EQ(Export<NoArgument>("DllUnregisterServer")(), StatusAccessDenied);
  EXPECT_TRUE(fs::is_empty(m_folder));
  fs::current_path(before);
}

TEST_F(InstrumentFace, TheLibraryStaysWhileAClientHoldsSomething) {
  const Client face = NewFace();
  EXPECT_EQ(Export<NoArgument>("DllCanUnloadNow")(), StatusFalse);
}

TEST_F(InstrumentFace, OtherClassesAndInterfacesAreRefused) {
  void *object = this;
  const auto getClassObject = Export<GetClassObject>("DllGetClassObject");
  EXPECT_EQ(getClassObject(ClassIdOf("TarvikVI.Other"), IidClassFactory, &object), StatusClassNotAvailable);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(getClassObject(ClassIdOf("TarvikVI.clsInstrInterface"), IidDispatch, &object), StatusNoInterface);
  EXPECT_EQ(getClassObject(ClassIdOf("TarvikVI.clsInstrInterface"), IidClassFactory, nullptr), StatusPointer);
}

}  // namespace tarvik::test
