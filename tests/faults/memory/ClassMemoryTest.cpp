#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <iostream>

#include "ClassOperations.h"
#include "FailingMemory.h"
#include "TestName.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

/// A host that has memory of its own.
class WellHost : public RecordingHost {
 public:
  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override {
    const FailingMemory::Suspended own;
    return RecordingHost::MsgBox(strText, icon, buttons, strTitle);
  }
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override {
    const FailingMemory::Suspended own;
    return RecordingHost::InputBox(strPrompt, strTitle, strDefault);
  }
  void SetMousePointer(Integer intNewPointer) override {
    const FailingMemory::Suspended own;
    RecordingHost::SetMousePointer(intNewPointer);
  }
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override {
    const FailingMemory::Suspended own;
    return RecordingHost::GetSetting(strApplication, strSection, strKey, strDefault);
  }
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override {
    const FailingMemory::Suspended own;
    RecordingHost::SaveSetting(strApplication, strSection, strKey, strValue);
  }
  void AppendToFile(const std::string &strPath, std::string_view strBytes) override {
    const FailingMemory::Suspended own;
    RecordingHost::AppendToFile(strPath, strBytes);
  }
};

enum class State { Unconnected, Connected, Online, LocalTransaction, GlobalTransaction };
constexpr State AllStates[] = {State::Unconnected, State::Connected, State::Online, State::LocalTransaction,
                               State::GlobalTransaction};

int g_intCases = 0;

class ClassMemory : public testing::TestWithParam<std::size_t> {
 public:
  static void TearDownTestSuite() { std::cout << "[ memory   ] " << g_intCases << " cases" << std::endl; }

 protected:
  const ClassOperation &operation = ClassOperations()[GetParam()];

  ~ClassMemory() override { gobjInstr().reset(); }

  void Arrange(State eState) {
    gobjInstr().reset();
    host.Reset();
    driver.Reset();
    driver.OnTurn = &FailingMemory::Suspend;
    driver.Add("Alpha");
    instr = std::make_shared<clsInstrInterface>();
    gobjInstr() = instr;
    if (eState != State::Unconnected) instr->Connect();
    if (eState >= State::Online) instr->OpenInstrument("Alpha");
    instr->LetWarningsEnabled(True);
    if (eState >= State::LocalTransaction) instr->TransactionStart(eState == State::GlobalTransaction);
    // Longer than what a string keeps without an allocation.
    driver.arrWarnings = {"\"the period is too short for both channels\""};
    driver.strErrors = "\"the external clock has been lost since\"";
    host.arrEntries.clear();
    driver.arrTrace.clear();
  }

  /// Answers what left the operation.
  std::string Act() {
    try {
      m_strResult = operation.run(*instr);
      return "";
    } catch (const RunTimeError &error) {
      return error.Description();
    } catch (const std::bad_alloc &) {
      return "std::bad_alloc";
    }
  }

  bool WasTold() const {
    return std::ranges::any_of(host.arrEntries, [](const HostEntry &entry) {
      return entry.kind == HostEntry::Box && entry.strText.find("Out of memory") != std::string::npos;
    });
  }
  /// Operations that answer a failure with their result alone.
  bool IsSilent() const {
    return operation.strName.starts_with("TransactionStart") || operation.strName == "TransactionCancel" ||
           operation.strName == "CloseInstrument";
  }
  bool InTransaction() { return clsInstrInterface::Private::Of(*instr).m_TransActive; }

  void ExpectNothingLeftOver() {
    // The end of a session ends the driver's transaction and leaves the flag to the next start.
    EXPECT_TRUE(InTransaction() || !driver.Find("Alpha")->copy.has_value()) << "nobody ends the driver's transaction";
    std::map<std::string, int> held;
    if (instr->IsConnected()) held["IDriverRoot"] = 1;
    if (instr->IsOnline(True)) held["IInstrument"] = 1;
    EXPECT_EQ(driver.References(), held);
  }
  void ExpectRecovery() {
    driver.arrWarnings.clear();
    if (!instr->IsConnected()) instr->Connect();
    if (instr->ChannelCount() != 2) instr->OpenInstrument("Alpha");
    host.arrEntries.clear();
    EXPECT_TRUE(ClassSettings().Send(*instr));
    ClassSettings read;
    read.mode = {};
    read.timing = {};
    EXPECT_TRUE(read.Read(*instr));
    EXPECT_EQ(read, ClassSettings());
    EXPECT_THAT(host.TakeBoxes(), IsEmpty());
    EXPECT_FALSE(InTransaction());
    ExpectNothingLeftOver();
  }

  WellHost host;
  StandInDriver driver;
  std::shared_ptr<clsInstrInterface> instr;
  std::string m_strResult;
};

TEST_P(ClassMemory, AnAllocationThatFailsIsToldAndLeavesNothingHalfDone) {
  for (const State eState : AllStates) {
    Arrange(eState);
    FailingMemory::FailAt(0, false);
    Act();
    const int intAllocations = FailingMemory::Stop();
    const std::string strWellResult = m_strResult;
    const bool fHourglassAtEnd = host.intPointer != PointerDefault;
    for (int k = 1; k <= intAllocations; ++k)
      for (const bool fForEver : {false, true}) {
        SCOPED_TRACE(operation.strName + ", state " + std::to_string(static_cast<int>(eState)) + ", allocation " +
                     std::to_string(k) + (fForEver ? " for ever" : " once"));
        ++g_intCases;
        Arrange(eState);
        FailingMemory::FailAt(k, fForEver);
        const std::string strLeft = Act();
        FailingMemory::Stop();
        // What the caller hands over is its own.
        const bool fBefore = driver.arrTrace.empty() && host.arrEntries.empty();
        if (fBefore && strLeft == "std::bad_alloc") continue;
        if (fForEver)
          EXPECT_TRUE(strLeft.empty() || strLeft == "Out of memory") << strLeft;
        else
          EXPECT_EQ(strLeft, "");
        EXPECT_TRUE(m_strResult == strWellResult || WasTold() || IsSilent() || fForEver) << "nobody was told";
        if (operation.strName != "Connect" && !fHourglassAtEnd) {
          EXPECT_EQ(host.intPointer, PointerDefault);
        }
        ExpectNothingLeftOver();
        ExpectRecovery();
        if (HasFailure()) return;
      }
  }
}

std::vector<std::size_t> AllNumbers() {
  std::vector<std::size_t> arrNumbers;
  for (std::size_t k = 0; k < ClassOperations().size(); ++k) arrNumbers.push_back(k);
  return arrNumbers;
}

INSTANTIATE_TEST_SUITE_P(Operations, ClassMemory, testing::ValuesIn(AllNumbers()),
                         [](const auto &test) { return TestName(ClassOperations()[test.param].strName); });

}  // namespace
}  // namespace tarvik::test
