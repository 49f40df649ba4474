#include <gmock/gmock.h>

#include <iostream>

#include "FailingMemory.h"
#include "InstrumentSession.h"
#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "dispatch/InstrDispatch.h"
#include "dispatch/VariantValues.h"

namespace tarvik::test {
namespace {

using namespace automation;

AutomationVariant Text(const char *strText) {
  AutomationVariant v{};
  v.vt = VtString;
  v.bstrVal = AllocString(strText);
  return v;
}
AutomationVariant Number(Long lngValue) {
  AutomationVariant v{};
  v.vt = VtLong;
  v.lVal = lngValue;
  return v;
}
AutomationVariant Referred(AutomationVariant &vBehind) {
  AutomationVariant v{};
  v.vt = VtByRef | VtVariant;
  v.pvarVal = &vBehind;
  return v;
}

/// The instrument interface as clients by name have it, on a stand-in driver.
class DispatchMemory : public testing::Test {
 protected:
  DispatchMemory() {
    session.Open();
    session.driver.OnTurn = &FailingMemory::Suspend;
    m_face = Ref<IDispatch>::Adopt(new InstrDispatch(session.instr));
  }

  MemberId NumberOf(std::u16string strName) {
    char16_t *name = strName.data();
    MemberId lngNumber = 0;
    EXPECT_EQ(m_face->GetIDsOfNames(GuidNull, &name, 1, 0, &lngNumber), StatusOk);
    return lngNumber;
  }
  Ref<IDispatch> Record(const char *strName) {
    std::vector<AutomationVariant> arrArguments{Text(strName)};
    AutomationVariant vRecord{};
    EXPECT_EQ(Invoke(NumberOf(u"NewRecord"), arrArguments, vRecord, m_exception), StatusOk);
    ClearVariant(arrArguments[0]);
    return Ref<IDispatch>::Adopt(vRecord.pdispVal);
  }
  Status Invoke(MemberId lngNumber, std::vector<AutomationVariant> &arrArguments, AutomationVariant &vResult,
                AutomationExcepInfo &exception) {
    AutomationDispParams params{arrArguments.data(), nullptr, static_cast<std::uint32_t>(arrArguments.size()), 0};
    return m_face->Invoke(lngNumber, GuidNull, 0, CallMethod, &params, &vResult, &exception, nullptr);
  }

  /// Calls the member with arguments that are made anew for each allocation that fails; last one first.
  void Sweep(const char16_t *strName, const std::function<std::vector<AutomationVariant>()> &arguments) {
    const MemberId lngNumber = NumberOf(strName);
    int intCases = 0;
    for (const bool fForEver : {false, true})
      for (int k = 1;; ++k) {
        SCOPED_TRACE("allocation " + std::to_string(k) + (fForEver ? " for ever" : " once"));
        std::vector<AutomationVariant> arrArguments = arguments();
        AutomationVariant vResult{};
        AutomationExcepInfo exception{};
        FailingMemory::FailAt(k, fForEver);
        const Status status = Invoke(lngNumber, arrArguments, vResult, exception);
        FailingMemory::Stop();
        const bool fFailed = FailingMemory::HasFailed();
        ExpectToldOrDone(status, exception);
        // Whatever became of it, all is the caller's and is freed once.
        for (AutomationVariant &vArgument : arrArguments) ClearVariant(vArgument);
        ClearVariant(vResult);
        EXPECT_FALSE(session.driver.Find("Alpha")->copy.has_value());
        EXPECT_EQ(session.host.intPointer, PointerDefault);
        session.Forget();
        if (!fFailed || HasFailure()) break;
        ++intCases;
      }
    std::cout << "[ memory   ] " << intCases << " cases: " << ToUtf8(strName) << " by name" << std::endl;
  }
  static void ExpectToldOrDone(Status status, AutomationExcepInfo &exception) {
    const String source = String::Adopt(exception.bstrSource), text = String::Adopt(exception.bstrDescription);
    if (status == StatusException) {
      EXPECT_EQ(exception.scode, static_cast<Status>(0x800A0007));
      EXPECT_EQ(text.Text(), "Out of memory");
    } else {
      EXPECT_THAT(status, testing::AnyOf(StatusOk, StatusOutOfMemory));
    }
  }

  InstrumentSession session;
  Ref<IDispatch> m_face;
  AutomationExcepInfo m_exception{};
};

TEST_F(DispatchMemory, ANameIsFoundOrMemoryIsMissing) {
  std::u16string strName = u"InstrumentCommands";
  for (const bool fForEver : {false, true})
    for (int k = 1;; ++k) {
      char16_t *name = strName.data();
      MemberId lngNumber = 0;
      FailingMemory::FailAt(k, fForEver);
      const Status status = m_face->GetIDsOfNames(GuidNull, &name, 1, 0, &lngNumber);
      FailingMemory::Stop();
      EXPECT_EQ(status, FailingMemory::HasFailed() ? StatusOutOfMemory : StatusOk);
      if (!FailingMemory::HasFailed() || HasFailure()) break;
    }
}

TEST_F(DispatchMemory, AnOperationWithATextByReferenceIsDoneOrMemoryIsMissing) {
  session.driver.Configure("Alpha", {{"options", "options that are longer than what needs no memory"}});
  AutomationVariant vText{};
  Sweep(u"InstrumentCommands", [&] {
    ClearVariant(vText);
    vText = Text("what stood in the caller's variable before the call");
    return std::vector{Number(0), Referred(vText), Number(ICOptions)};
  });
  ClearVariant(vText);
}

TEST_F(DispatchMemory, ATextWithoutAVariantAroundItIsReplacedOrStays) {
  session.driver.Configure("Alpha", {{"options", "options that are longer than what needs no memory"}});
  AutomationString bstrText = nullptr;
  Sweep(u"InstrumentCommands", [&] {
    FreeString(bstrText);
    bstrText = AllocString("what stood in the caller's variable before the call");
    AutomationVariant vText{};
    vText.vt = VtByRef | VtString;
    vText.byref = &bstrText;
    return std::vector{Number(0), vText, Number(ICOptions)};
  });
  FreeString(bstrText);
}

TEST_F(DispatchMemory, AnArrayIsReplacedOrStays) {
  AutomationArray *pArray = nullptr;
  AutomationVariant vLength{};
  Sweep(u"GetPatternArray", [&] {
    FreeArray(pArray);
    pArray = AllocByteArray(5, nullptr, 40);
    vLength = Number(0);
    AutomationVariant vArray{};
    vArray.vt = VtByRef | VtArray | VtByte;
    vArray.byref = &pArray;
    return std::vector{Referred(vLength), vArray, Number(3)};
  });
  FreeArray(pArray);
}

TEST_F(DispatchMemory, ARecordIsFilledOrMemoryIsMissing) {
  const Ref<IDispatch> record = Record("udtInstrInfo");
  Sweep(u"GetInstrInfo", [&] {
    AutomationVariant vRecord{};
    vRecord.vt = VtDispatch;
    vRecord.pdispVal = Ref<IDispatch>(record).Detach();
    return std::vector{vRecord};
  });
}

TEST_F(DispatchMemory, ARecordIsMadeOrMemoryIsMissing) {
  Sweep(u"NewRecord", [&] { return std::vector{Text("udtTimingInfo")}; });
}

TEST_F(DispatchMemory, SettingsAreSentOrMemoryIsMissingAndNoTransactionStays) {
  const Ref<IDispatch> record = Record("udtLevelInfo");
  session.instr->LetWarningsEnabled(True);
  session.driver.arrWarnings = {"a warning that is longer than what needs no memory"};
  Sweep(u"SetLevels", [&] {
    AutomationVariant vRecord{};
    vRecord.vt = VtDispatch;
    vRecord.pdispVal = Ref<IDispatch>(record).Detach();
    return std::vector{vRecord};
  });
}

}  // namespace
}  // namespace tarvik::test
