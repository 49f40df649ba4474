#include "Bench.h"

namespace tarvik::scpisim {
namespace {

class InterpreterTest : public Bench {};

TEST_F(InterpreterTest, AnswersOfOneMessageComeAsOneLine) {
  EXPECT_EQ("1.0E-07;1.0E+06;0", Say("SOUR1:PULS:WIDT?;:FREQ?;:OUTP?"));
}

TEST_F(InterpreterTest, MessageWithoutAQueryAnswersNothing) { EXPECT_EQ("", Say("PULS:WIDT 50NS")); }

// ---- the header path

TEST_F(InterpreterTest, RelativeHeaderGoesOnFromThePathOfTheOneBefore) {
  Say("SOUR2:PULS:WIDT 50NS;DEL 20NS;:FREQ 2MHZ");
  EXPECT_EQ("5.0E-08;2.0E-08;2.0E+06", Say(":SOUR2:PULS:WIDT?;DEL?;:SOUR:FREQ?"));
  EXPECT_EQ("0.0E+00", Say("PULS:DEL?"));
}

TEST_F(InterpreterTest, RelativeHeaderIsNotSoughtFromTheRoot) {
  EXPECT_EQ(-113, NumberFrom("PULS:WIDT 50NS;FREQ 1MHZ"));
}

TEST_F(InterpreterTest, CommonCommandsLeaveThePathAlone) {
  EXPECT_EQ("1.0E-07;1;0.0E+00", Say("PULS:WIDT?;*OPC?;DEL?"));
}

TEST_F(InterpreterTest, PathBeginsAtTheRootWithEachMessage) {
  Say("PULS:WIDT 50NS");
  EXPECT_EQ(-113, NumberFrom("DEL 1NS"));
}

TEST_F(InterpreterTest, DeeperRelativeHeaderExtendsThePath) {
  Say("PULS:WIDT 50NS;TRAN:TRA:AUTO OFF");
  EXPECT_EQ("0", Say("PULS:TRAN:TRA:AUTO?"));
}

// ---- what is wrong, and what is carried out all the same

struct Wrong {
  const char *strMessage;
  Long lngNumber;
};
void PrintTo(const Wrong &wrong, std::ostream *pStream) { *pStream << wrong.strMessage; }

class WrongMessage : public Bench, public testing::WithParamInterface<Wrong> {};

TEST_P(WrongMessage, HasItsStandardNumberAndChangesNothing) {
  const simulator::Settings before = device.CurrentSettings();
  EXPECT_EQ(GetParam().lngNumber, NumberFrom(GetParam().strMessage));
  EXPECT_EQ(before, device.CurrentSettings());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, WrongMessage,
    testing::Values(Wrong{"PULS:WIDTH 1US,2US", -108}, Wrong{"*RST 1", -108}, Wrong{"*OPC? 1", -108},
                    Wrong{"OUTP? MAX", -108}, Wrong{"PULS:WIDT? MAX,MIN", -108}, Wrong{"PULS:WIDT", -109},
                    Wrong{"*ESE", -109}, Wrong{"DIG:PATT:DATA 8", -109}, Wrong{"PULSE", -113}, Wrong{"*FOO", -113},
                    Wrong{"*IDN", -113}, Wrong{"*RST?", -113}, Wrong{"SYST:ERR 1", -113}, Wrong{"PUL:WIDT 1US", -113},
                    Wrong{"RST", -113}, Wrong{"SOUR3:PULS:WIDT 1US", -114}, Wrong{"OUTP0 ON", -114},
                    Wrong{"DIG:PATT4:DATA?", -114}, Wrong{"PULS:WIDT ON", -141}, Wrong{"PULS:WIDT 'a'", -158},
                    Wrong{"PULS:WIDT? 5", -128}, Wrong{"PULS:WIDT? INF", -141}, Wrong{"PULS:WIDT 1HZ", -131},
                    Wrong{"TRIG:COUN 4S", -138}, Wrong{"OUTP MAYBE", -141}, Wrong{"ARM:SLOP 1", -128},
                    Wrong{"DIG:PATT:DATA 8,1", -128}, Wrong{"DIG:PATT:DATA 8,(1)", -178}));

INSTANTIATE_TEST_SUITE_P(Values, WrongMessage,
                         testing::Values(Wrong{"*TRG", -211}, Wrong{"PULS:WIDT 2US", -221}, Wrong{"FREQ 20 MHZ", -221},
                                         Wrong{"VOLT:LOW 3", -221}, Wrong{"CURR:HIGH 10MA", -221},
                                         Wrong{"CURR:HIGH?", -221}, Wrong{"VOLT:LIM:STAT ON", -221},
                                         Wrong{"PULS:WIDT 1NS", -222}, Wrong{"FREQ 1e400", -222},
                                         Wrong{"TRIG:COUN 1", -222}, Wrong{"*SAV 10", -222},
                                         Wrong{"VOLT:AMPL -1", -222}, Wrong{"DIG:PATT:DATA 8,#12ab", -223},
                                         Wrong{"DIG:PATT:DATA 9,#11a", -109}, Wrong{"OUTP:IMP 60", -224},
                                         Wrong{"ROSC:EXT:FREQ 7MHZ", -224}));

TEST_F(InterpreterTest, CommandErrorDropsTheRestOfTheMessage) {
  EXPECT_EQ("1.0E-07", Say("PULS:WIDT?;NONE;DEL?"));
  Say("PULS:WIDT 50NS;NONE 1;WIDT 60NS");
  EXPECT_EQ("5.0E-08", Say("PULS:WIDT?"));
}

TEST_F(InterpreterTest, ExecutionErrorDropsItsOwnUnitOnly) {
  EXPECT_EQ("6.0E-08", Say("PULS:WIDT 50NS;WIDT 1NS;DEL 1NS;WIDT 60NS;WIDT?"));
  EXPECT_EQ(-222, std::stol(Error()));
  EXPECT_EQ("1.0E-09", Say("PULS:DEL?"));
}

TEST_F(InterpreterTest, QueryThatFailsAnswersNothing) {
  EXPECT_EQ("1.0E-07;0.0E+00", Say("PULS:WIDT?;:CURR:HIGH?;:PULS:DEL?"));
  EXPECT_EQ(R"(-221,"Settings conflict;the levels are in volts")", Error());
}

TEST_F(InterpreterTest, NothingCanBeAskedBehindAnIndefiniteAnswer) {
  EXPECT_EQ("Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31", Say("*IDN?;*OPC?"));
  EXPECT_EQ(R"(-440,"Query UNTERMINATED after indefinite response;*OPC")", Error());
  EXPECT_EQ("1;Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31", Say("*OPC?;*IDN?"));
  EXPECT_EQ(R"(0,"No error")", Error());
}

TEST_F(InterpreterTest, EndlessAnswersAreDropped) {
  Say("DIG:PATT:DATA 16384,#42048" + std::string(2048, 'a'));
  std::string strMessage = "DIG:PATT:DATA?";
  for (int i = 0; i < 600; ++i) strMessage += ";:DIG:PATT:DATA?";
  EXPECT_EQ("", Say(strMessage));
  EXPECT_EQ(R"(-430,"Query DEADLOCKED")", Error());
  EXPECT_EQ(R"(0,"No error")", Error());
}

// ---- settings that depend on one another

TEST_F(InterpreterTest, SettingsOfOneMessageAreTakenTogether) {
  Say("FREQ 10MHZ;:PULS:WIDT 50NS;:SOUR2:PULS:WIDT 50NS");
  EXPECT_EQ("1.0E+07;5.0E-08", Say("FREQ?;:PULS:WIDT?"));
  EXPECT_EQ(R"(0,"No error")", Error());
}

TEST_F(InterpreterTest, SettingsThatConflictAreAllRefused) {
  Say("FREQ 10MHZ;:PULS:WIDT 200NS;:OUTP ON");
  EXPECT_EQ("1.0E+06;1.0E-07;0", Say("FREQ?;:PULS:WIDT?;:OUTP?"));
  EXPECT_EQ(R"~(-221,"Settings conflict;period below delay plus width of channel 1 (1e-07 s below 2e-07 s)")~",
            Error());
  EXPECT_EQ(R"(0,"No error")", Error());
}

TEST_F(InterpreterTest, QueryEndsAGroupOfSettings) {
  EXPECT_EQ("1.0E+06", Say("PULS:WIDT 2US;:FREQ?;:FREQ 100KHZ"));
  EXPECT_EQ(-221, std::stol(Error()));
  EXPECT_EQ("1.0E+05;1.0E-07", Say("FREQ?;:PULS:WIDT?"));
}

TEST_F(InterpreterTest, CommonCommandEndsAGroupOfSettings) {
  Say("PULS:WIDT 2US;*WAI;:FREQ 100KHZ");
  EXPECT_EQ(-221, std::stol(Error()));
}

TEST_F(InterpreterTest, EveryReasonForARefusalIsReported) {
  Say("PULS:WIDT 2US;:VOLT:LOW 3");
  EXPECT_EQ("2", Say("SYST:ERR:COUN?"));
}

TEST_F(InterpreterTest, ValuesThatAreOutOfRangeOnlyTogetherAreAConflict) {
  Say("VOLT:OFFS 20");
  EXPECT_EQ(R"~(-221,"Settings conflict;high level of channel 1 (21.25 V, allowed -20 V to 20 V)")~", Error());
  EXPECT_EQ("1.25E+00", Say("VOLT:OFFS?"));
}

// ---- MIN, MAX, DEF

TEST_F(InterpreterTest, SpecialNumbersCanBeSetAndAskedFor) {
  EXPECT_EQ("1.5E-09;9.995E+02;1.0E-07", Say("PULS:WIDT? MIN;WIDT? MAXIMUM;WIDT? DEF"));
  Say("PULS:WIDT MIN");
  EXPECT_EQ("1.5E-09", Say("PULS:WIDT?"));
  Say("PULS:WIDT DEF");
  EXPECT_EQ("1.0E-07", Say("PULS:WIDT?"));
  EXPECT_EQ("65536;2", Say("TRIG:COUN? MAX;COUN? DEF"));
  EXPECT_EQ("2.0E+01;2.5E+00;0.0E+00", Say("VOLT:HIGH? MAX;HIGH? DEF;LOW? DEF"));
  EXPECT_EQ("8.0E-01;5.0E-02", Say("CURR:HIGH? MAX;HIGH? DEF"));
}

// ---- stored settings, reset

TEST_F(InterpreterTest, SettingsAreStoredAndRecalled) {
  Say("PULS:WIDT 50NS;*SAV 3;*RST");
  EXPECT_EQ("1.0E-07", Say("PULS:WIDT?"));
  Say("*RCL 3");
  EXPECT_EQ("5.0E-08", Say("PULS:WIDT?"));
  Say("*RCL 4");
  EXPECT_EQ("1.0E-07", Say("PULS:WIDT?"));
}

TEST_F(InterpreterTest, TriggerByHandIsTakenWhileOneIsWaitedFor) {
  EXPECT_EQ(0, NumberFrom("TRIG:MODE TRIG;:ARM:SOUR MAN;*TRG"));
  EXPECT_EQ(-211, NumberFrom("ARM:SOUR EXT;*TRG"));
}

}  // namespace
}  // namespace tarvik::scpisim
