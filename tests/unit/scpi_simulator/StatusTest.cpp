#include "Bench.h"

namespace tarvik::scpisim {
namespace {

class Status : public Bench {};

TEST_F(Status, EmptyQueueSaysNoError) {
  EXPECT_EQ(R"(0,"No error")", Say("SYST:ERR?"));
  EXPECT_EQ(R"(0,"No error")", Say(":SYSTEM:ERROR:NEXT?"));
  EXPECT_EQ("0", Say("SYST:ERR:COUN?"));
}

TEST_F(Status, ErrorsComeOldestFirstWithTheStandardsText) {
  Say("NONE");
  Say("SYST:VERS? 1");
  EXPECT_EQ("2", Say("SYST:ERR:COUN?"));
  EXPECT_EQ(R"(-113,"Undefined header;NONE")", Say("SYST:ERR?"));
  EXPECT_EQ(R"(-108,"Parameter not allowed;:SYSTem:VERSion")", Say("SYST:ERR?"));
  EXPECT_EQ(R"(0,"No error")", Say("SYST:ERR?"));
}

TEST_F(Status, AllErrorsComeInOneAnswer) {
  Say("NONE");
  Say("NONE");
  EXPECT_EQ(R"(-113,"Undefined header;NONE",-113,"Undefined header;NONE")", Say("SYST:ERR:ALL?"));
  EXPECT_EQ(R"(0,"No error")", Say("SYST:ERR:ALL?"));
}

TEST_F(Status, FullQueueEndsWithQueueOverflow) {
  for (int i = 0; i < 40; ++i) Say("NONE");
  EXPECT_EQ("32", Say("SYST:ERR:COUN?"));
  for (int i = 0; i < 31; ++i) EXPECT_EQ(R"(-113,"Undefined header;NONE")", Error());
  EXPECT_EQ(R"(-350,"Queue overflow")", Error());
  EXPECT_EQ(R"(0,"No error")", Error());
}

TEST_F(Status, TextsKeepTheLineInOnePiece) {
  device.status.Report(ScpiFault{-113, "a\"b\nc\xFF" + std::string(300, 'x')});
  EXPECT_EQ(R"(-113,"Undefined header;a'b?c?)" + std::string(255 - 23, 'x') + '"', Error());
}

TEST_F(Status, EveryClassOfErrorsSetsItsEventBit) {
  EXPECT_EQ("128", Say("*ESR?"));  // power was switched on
  const std::pair<Long, const char *> rows[] = {{-113, "32"}, {-222, "16"}, {-330, "8"}, {-410, "4"}, {101, "8"}};
  for (const auto &[lngNumber, strBit] : rows) {
    device.status.Report(ScpiFault{lngNumber, {}});
    EXPECT_EQ(strBit, Say("*ESR?")) << lngNumber;
  }
  EXPECT_EQ("0", Say("*ESR?"));
}

TEST_F(Status, OperationCompleteSetsItsBitAndAnswersOne) {
  Say("*CLS;*OPC");
  EXPECT_EQ("1", Say("*ESR?"));
  EXPECT_EQ("1", Say("*WAI;*OPC?"));
  EXPECT_EQ("0", Say("*ESR?"));
}

TEST_F(Status, StatusByteSumsUp) {
  Say("*CLS;*ESE 32;*SRE 36");
  EXPECT_EQ("32;36", Say("*ESE?;*SRE?"));
  EXPECT_EQ("0", Say("*STB?"));
  Say("NONE");
  EXPECT_EQ("100", Say("*STB?"));  // error waits 4, event 32, master summary 64
  Say("*ESR?");
  EXPECT_EQ("68", Say("*STB?"));
  Say("SYST:ERR?");
  EXPECT_EQ("0", Say("*STB?"));
}

TEST_F(Status, WaitingAnswerIsAMessageAvailable) { EXPECT_EQ("1;16", Say("*CLS;*OPC?;*STB?")); }

TEST_F(Status, SummaryCannotEnableItself) {
  Say("*SRE 255");
  EXPECT_EQ("191", Say("*SRE?"));
  EXPECT_EQ(-222, NumberFrom("*SRE 256"));
}

TEST_F(Status, ClearingEmptiesQueueAndEventsAndKeepsWhatIsEnabled) {
  Say("*ESE 60;STAT:QUES:ENAB 4;:NONE");
  Say("*CLS");
  EXPECT_EQ("0;0", Say("*ESR?;:SYST:ERR:COUN?"));
  EXPECT_EQ("60;4", Say("*ESE?;:STAT:QUES:ENAB?"));
}

TEST_F(Status, WarningIsAQuestionableConditionAndEvent) {
  Say("STAT:QUES:ENAB 4");
  EXPECT_EQ("0", Say("STAT:QUES:COND?"));
  Say("PULS:WIDT 1US");
  EXPECT_EQ("4", Say("STAT:QUES:COND?"));
  EXPECT_EQ("8", Say("*STB?"));
  EXPECT_EQ(R"~(101,"Width of channel 1 close to the period (100 percent)")~", Say("SYST:WARN?"));
  EXPECT_EQ("4", Say("STAT:QUES?"));
  EXPECT_EQ("0;4", Say("STAT:QUES:EVEN?;COND?"));
  Say("PULS:WIDT 100NS");
  EXPECT_EQ("0", Say("STAT:QUES:COND?"));
  EXPECT_EQ(R"(0,"No warning")", Say("SYST:WARN?"));
}

TEST_F(Status, TransitionFiltersChooseTheChanges) {
  Say("STAT:OPER:PTR 0;NTR 64");
  Say("TRIG:MODE GAT");
  EXPECT_EQ("64;0", Say("STAT:OPER:COND?;EVEN?"));
  Say("TRIG:MODE CONT");
  EXPECT_EQ("0;64", Say("STAT:OPER:COND?;EVEN?"));
  Say("STAT:PRES");
  EXPECT_EQ("0;32767;0", Say("STAT:OPER:ENAB?;PTR?;NTR?"));
}

TEST_F(Status, HighestBitOfARegisterStaysClear) {
  Say("STAT:OPER:ENAB 65535");
  EXPECT_EQ("32767", Say("STAT:OPER:ENAB?"));
}

TEST_F(Status, CalibrationLeavesItsEvent) {
  EXPECT_EQ("0", Say("*CAL?"));
  EXPECT_EQ("1", Say("STAT:OPER?"));
}

class FailingInstrument : public Bench {
 protected:
  FailingInstrument() : Bench(Description()) {}
  static simulator::InstrumentDescription Description() {
    simulator::InstrumentDescription description = Model("VP-210");
    description.intSelfTestCode = 3;
    description.strSelfTestText = "RAM check failed";
    description.arrErrors = {{-240, "Hardware error: fan stopped", ""}, {412, "Door open", ""}};
    description.lngSelfTestDelay = 30000;
    return description;
  }
};

TEST_F(FailingInstrument, ErrorsOfTheRackWaitInTheQueue) {
  EXPECT_EQ(R"(-240,"Hardware error;fan stopped")", Error());
  EXPECT_EQ(R"(412,"Door open")", Error());
}

TEST_F(FailingInstrument, FailedSelfTestAnswersItsCodeAndReportsIt) {
  device.status.Clear();
  EXPECT_EQ("3", Say("*TST?"));
  EXPECT_EQ(R"(-330,"Self-test failed;RAM check failed")", Error());
}

TEST_F(FailingInstrument, SelfTestKeepsTheDeviceBusyAndNobodyWaiting) {
  const auto begin = Device::Clock::now();
  Say("*TST?");
  EXPECT_GE(device.BusyUntil() - begin, std::chrono::seconds(30));
}

}  // namespace
}  // namespace tarvik::scpisim
