#include <gmock/gmock.h>

#include <set>

#include "Bench.h"
#include "scpi/simulator/CommandTable.h"

namespace tarvik::scpisim {
namespace {

/// A setting as the manual lists it: what is set, and how the query answers it afterwards.
struct Row {
  const char *strHeader;
  const char *strSet;
  const char *strAnswer;
};
void PrintTo(const Row &row, std::ostream *pStream) { *pStream << row.strHeader << ' ' << row.strSet; }

class EverySetting : public Bench, public testing::WithParamInterface<Row> {};

TEST_P(EverySetting, IsReadBackAsItWasSetAndEndsWithTheReset) {
  const std::string strQuery = std::string(GetParam().strHeader) + "?";
  const std::string strBefore = Say(strQuery);
  Say(std::string(GetParam().strHeader) + " " + GetParam().strSet);
  EXPECT_EQ(R"(0,"No error")", Error());
  EXPECT_EQ(GetParam().strAnswer, Say(strQuery));
  EXPECT_NE(strBefore, Say(strQuery));
  Say("*RST");
  EXPECT_EQ(strBefore, Say(strQuery));
}

INSTANTIATE_TEST_SUITE_P(
    Timing, EverySetting,
    testing::Values(Row{":SOURce:FREQuency", "2MHZ", "2.0E+06"}, Row{":SOUR:FREQ:CW", "2e6", "2.0E+06"},
                    Row{":SOURce:PULSe:PERiod", "2US", "2.0E-06"}, Row{":SOURce1:PULSe:DELay", "20NS", "2.0E-08"},
                    Row{":SOURce2:PULSe:DELay", "20NS", "2.0E-08"},
                    Row{":SOURce2:PULSe:DOUBle:DELay", "300NS", "3.0E-07"}, Row{":SOUR1:PULS:DOUB:STAT", "ON", "1"},
                    Row{":SOUR2:PULS:DOUB", "1", "1"}, Row{":SOUR2:PULS:WIDT", "50NS", "5.0E-08"},
                    Row{":SOUR2:PULS:DCYC", "50PCT", "5.0E+01"}, Row{":SOUR:PULS:TRAN:LEAD", "2NS", "2.0E-09"},
                    Row{":SOUR2:PULS:TRAN", "2NS", "2.0E-09"}, Row{":SOUR2:PULS:TRAN:TRA:AUTO", "OFF", "0"}));

INSTANTIATE_TEST_SUITE_P(
    Levels, EverySetting,
    testing::Values(Row{":SOUR1:VOLT:LEV:IMM:HIGH", "5", "5.0E+00"}, Row{":SOUR2:VOLT:LOW", "-5", "-5.0E+00"},
                    Row{":SOUR2:VOLT:OFFS", "2", "2.0E+00"}, Row{":SOUR2:VOLT:AMPL", "3", "3.0E+00"},
                    Row{":SOUR2:VOLT", "3V", "3.0E+00"}, Row{":OUTPut2:IMPedance", "1 KOHM", "1.0E+03"},
                    Row{":OUTP1:LOAD", "75", "7.5E+01"}, Row{":SOUR1:PULS:POL", "COMPlement", "COMP"},
                    Row{":OUTP2:POL", "INV", "COMP"}, Row{":OUTP1:STATe", "ON", "1"}, Row{":OUTP2", "ON", "1"},
                    Row{":OUTP2:COMP:STAT", "ON", "1"}, Row{":OUTP:COMB", "ADD", "ADD"}));

INSTANTIATE_TEST_SUITE_P(Limits, EverySetting,
                         testing::Values(Row{":SOUR1:VOLT:LIM:HIGH", "6", "6.0E+00"},
                                         Row{":SOUR2:VOLT:LIM:LOW", "-6", "-6.0E+00"},
                                         Row{":SOUR1:CURR:LIM:HIGH", "20MA", "2.0E-02"},
                                         Row{":SOUR2:CURR:LIM:LOW", "-20 MA", "-2.0E-02"}));

INSTANTIATE_TEST_SUITE_P(Trigger, EverySetting,
                         testing::Values(Row{":TRIGger:MODE", "TRIGgered", "TRIG"}, Row{":TRIG:MODE", "GAT", "GAT"},
                                         Row{":TRIG:MODE", "EWID", "EWID"}, Row{":SOUR:PULS:MODE", "BURSt", "BURS"},
                                         Row{":SOUR:PULS:MODE", "PATT", "PATT"}, Row{":TRIG:COUN", "7", "7"},
                                         Row{":TRIG:SOUR", "EXTernal", "EXT"}, Row{":TRIG:SOUR", "PLL", "PLL"},
                                         Row{":TRIG:SLOP", "NEG", "NEG"}, Row{":TRIG:LEV", "1.5", "1.5E+00"},
                                         Row{":TRIG:IMP", "50", "5.0E+01"}, Row{":ARM:SOUR", "MANual", "MAN"},
                                         Row{":ARM:SOUR", "ECLTrg1", "ECLT1"}, Row{":ARM:SOUR", "TTLT7", "TTLT7"},
                                         Row{":ARM:SLOP", "EITH", "EITH"}, Row{":ARM:FREQ", "2MHZ", "2.0E+06"},
                                         Row{":ARM:LEV", "-1", "-1.0E+00"}, Row{":ARM:IMP", "50", "5.0E+01"},
                                         Row{":OUTP:TRIG:LEV", "ECL", "ECL"}, Row{":OUTP:STR:LEV", "ECL", "ECL"},
                                         Row{":OUTP:VXI:SOUR", "STRobe", "STR"},
                                         Row{":OUTP:VXI:LINE", "TTLTrg3", "TTLT3"},
                                         Row{":SOUR:ROSC:SOUR", "EXT", "EXT"},
                                         Row{":SOUR:ROSC:EXT:FREQ", "10MHZ", "1.0E+07"}));

INSTANTIATE_TEST_SUITE_P(Pattern, EverySetting,
                         testing::Values(Row{":SOUR2:DIG:PATT:FORM", "NRZ", "NRZ"},
                                         Row{":SOUR:DIG:PATT1:DATA", "16,#12ab", "16,#12ab"},
                                         Row{":SOUR:DIG:PATT2:DATA", "8,#11z", "8,#11z"},
                                         Row{":SOUR:DIG:PATT3:DATA", "4,#11z", "4,#11p"}));

class Commands : public Bench {};

TEST_F(Commands, TrailingEdgeIsAnsweredAsItIsInForce) {
  Say("PULS:TRAN:TRA 5NS;:PULS:TRAN:LEAD 2NS");
  EXPECT_EQ("2.0E-09", Say("PULS:TRAN:TRA?"));
  Say("PULS:TRAN:TRA:AUTO OFF");
  EXPECT_EQ("5.0E-09", Say("PULS:TRAN:TRA?"));
}

TEST_F(Commands, DutyCycleSetsTheWidthOfThePeriodInForce) {
  Say("PULS:DCYC 25 PCT;:FREQ 500 KHZ");
  EXPECT_EQ("2.5E-07;1.25E+01", Say("PULS:WIDT?;DCYC?"));
}

TEST_F(Commands, DelaysLeaveThePulseTypeAlone) {
  Say("PULS:DOUB:DEL 300NS");
  EXPECT_EQ("0", Say("PULS:DOUB?"));
  Say("PULS:DOUB ON;DEL 20NS");
  EXPECT_EQ("1", Say("PULS:DOUB?"));
}

TEST_F(Commands, LevelsChangeTheirUnitTogetherWithTheirValues) {
  EXPECT_EQ(-221, NumberFrom("FUNC:MODE CURR"));
  Say("FUNC:MODE CURR;:CURR:HIGH 100MA;LOW -100 MA");
  EXPECT_EQ("CURR;1.0E-01;-1.0E-01;0.0E+00;2.0E-01", Say("FUNC:MODE?;:CURR:HIGH?;LOW?;OFFS?;AMPL?"));
  EXPECT_EQ(-221, NumberFrom("VOLT:HIGH?"));
}

TEST_F(Commands, OneSwitchServesTheLimitsInVoltsAndInAmperes) {
  Say("VOLT:LIM:HIGH 5;LOW -5;STAT ON");
  EXPECT_EQ("1;1", Say("VOLT:LIM:STAT?;:CURR:LIM:STAT?"));
}

TEST_F(Commands, PatternKeepsItsUnusedBitsToItself) {
  Say("DIG:PATT:DATA 3,#11\xFF");
  EXPECT_EQ("3,#11\xE0", Say("DIG:PATT:DATA?"));
}

TEST_F(Commands, NoHeaderStandsTwiceInTheTable) {
  std::set<std::string> headers;
  for (const Command &command : CommandTable())
    EXPECT_TRUE(headers.insert(command.header.Notation()).second) << command.header.Notation();
}

class OneChannel : public Bench {
 protected:
  OneChannel() : Bench(Model("VP-110")) {}
};

TEST_F(OneChannel, SecondChannelIsASuffixOutOfRange) {
  EXPECT_EQ(-114, NumberFrom("SOUR2:PULS:WIDT 50NS"));
  EXPECT_EQ(-114, NumberFrom("OUTP2?"));
}

TEST_F(OneChannel, WhatTheModelLacksIsMissingHardware) {
  EXPECT_EQ(-241, NumberFrom("OUTP:IMP 1000"));
  EXPECT_EQ(-241, NumberFrom("OUTP:COMP ON"));
  EXPECT_EQ(-241, NumberFrom("DIG:PATT2:DATA 8,#11a"));
}

}  // namespace
}  // namespace tarvik::scpisim
