#include <gmock/gmock.h>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/Highlight.h"

namespace tarvik::test {
namespace {

using testing::DoubleEq;

TEST(TypedEntry, CountsForTheUploadThatAnAccessKeyStarts) {
  PanelSession session;
  session.ShowPage(ePageTiming);
  session.Type("esPeriodOrFreq", "10u");
  session.Type("esWidth(0)", "100n");
  session.panel->activateWindow();
  session.TypeWithoutEnter("esWidth(0)", "60n");
  session.PressAccessKey(Qt::Key_U);
  EXPECT_THAT(session.driver.Find("Alpha")->settings.channels[0].dblWidth, DoubleEq(60e-9));
  EXPECT_EQ(session.Field("esWidth(0)").Text(), "60.00");
  EXPECT_EQ(session.StateOf(ePageTiming), ePageIsCurrent);
}

TEST(TypedEntry, IsGoneAfterADownloadThatAnAccessKeyStarts) {
  SimulatorSession session;
  session.Open("VP-210");
  session.panel->activateWindow();
  session->ShowPage(ePageTiming);
  const std::string strBefore = session->Field("esWidth(0)").Text();
  session->TypeWithoutEnter("esWidth(0)", "60n");
  session->PressAccessKey(Qt::Key_D);
  EXPECT_EQ(session->Field("esWidth(0)").Text(), strBefore);
  session->ShowPage(ePageOptions);
  EXPECT_FALSE(session->Get<Highlight>("picUploadHighlight").Visible()) << "nothing is left that turns the page dirty";
}

TEST(TypedEntry, ReachesASimulatedInstrumentByTheAccessKey) {
  SimulatorSession session;
  session.Open("VP-210");
  session.panel->activateWindow();
  session->ShowPage(ePageTiming);
  session->Type("esPeriodOrFreq", "10u");
  session->TypeWithoutEnter("esWidth(0)", "60n");
  EXPECT_NE(session->Field("esWidth(0)").Value(), 60e-9);
  session->PressAccessKey(Qt::Key_U);
  session->Type("esWidth(0)", "2u");
  session->PressAccessKey(Qt::Key_D);
  EXPECT_THAT(session->Field("esWidth(0)").Value(), DoubleEq(60e-9));
}

}  // namespace
}  // namespace tarvik::test
