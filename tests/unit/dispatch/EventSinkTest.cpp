#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InstrumentFace.h"

namespace tarvik::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

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

/// Fills the record of exceptions, whatever it answers.
struct ExceptionSink : Sink {
  ExceptionSink(Status status, Status number, std::string strDescription)
      : lngNumber(number), strText(std::move(strDescription)) {
    Answer = status;
  }
  Status Invoke(std::int32_t lngEvent, const Guid &riid, std::uint32_t lngLocale, std::uint16_t wFlags,
                AutomationDispParams *params, AutomationVariant *pResult, AutomationExcepInfo *pInfo,
                std::uint32_t *pWhich) override {
    pInfo->scode = lngNumber;
    pInfo->bstrDescription = strText.empty() ? nullptr : String(strText).Detach();
    return Sink::Invoke(lngEvent, riid, lngLocale, wFlags, params, pResult, pInfo, pWhich);
  }

  Status lngNumber;
  std::string strText;
};

TEST_F(InstrumentFace, AnExceptionOfASinkIsReportedByItsNumberAndWordsAndOtherFailuresByTheirStatus) {
  ExceptionSink whole(StatusException, -2146828283, "the client's own words"), numberless(StatusException, 0, "words"),
      wordless(StatusException, -2146828283, ""), other(StatusFail, -2146828283, "of no exception");
  const Client face = NewFace();
  for (ExceptionSink *sink : {&whole, &numberless, &wordless, &other}) face.Call("Advise", {Object(sink)});
  EXPECT_TRUE(face.Truth("Connect"));
  const std::string strLog = Log();
  for (const char *strError : {"-2146828283 the client's own words", "-2147352567 words",
                               "-2147352567 Automation error 80020009", "-2147467259 Automation error 80004005"})
    EXPECT_THAT(strLog, HasSubstr(std::string("  Error: ") + strError + "\r\n"));
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

}  // namespace tarvik::test
