#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

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
  EXPECT_EQ(face.Invoke("Output", AsMethod, {Number(40000), Flag(true)}), StatusOverflow);
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
