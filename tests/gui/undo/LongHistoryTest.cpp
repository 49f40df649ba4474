#include <gtest/gtest.h>

#include <optional>

#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "panel/UndoHistory.h"
#include "panel/UndoScope.h"

namespace tarvik::test {
namespace {

class LongHistory : public testing::Test {
 protected:
  QUndoStack &Stack() { return TarvikGUI::Panel::Of(*session->panel).undo->Stack(); }

  std::optional<PanelSession> session;
};

TEST_F(LongHistory, OfAThousandStepsOnTheLongestPatternHoldsAtMostTenMebibytes) {
  session.emplace(PanelSession::Start{.fAutoOutput = false});
  session->ShowPage(ePagePattern);
  session->Type("esLast", "16384");
  session->Type("esAddress", "1");
  static constexpr const char *Operations[] = {"Invert", "InsertBit", "Invert", "DeleteBit"};
  for (int i = 0; Stack().count() < UndoHistory::MaxSteps && i < 2000; ++i) {
    session->host.arrInputAnswers = {"7"};
    session->TakeMenu("toolPopup(2)", i % 100 == 0 ? "Clock/n" : Operations[i % 4]);
  }
  EXPECT_EQ(Stack().count(), 1000);
  const std::size_t lngBytes = TarvikGUI::Panel::Of(*session->panel).undo->HeldBytes();
  EXPECT_GT(lngBytes, 1000u * 2048u);
  EXPECT_LE(lngBytes, 10u * 1024u * 1024u);
}

TEST_F(LongHistory, OfStepsThatChangeEverythingTheOlderHalfGoesBeforeTheyHoldMore) {
  session.emplace(PanelSession::Start{.fAutoOutput = false});
  TarvikGUI::Panel &panel = TarvikGUI::Panel::Of(*session->panel);
  const auto arrFields = session->panel->findChildren<EngrSpin *>();
  std::size_t lngMost = 0;
  for (int i = 1; i <= 1000; ++i) {
    const UndoScope step(panel, QString::number(i));
    session->Field("esLevelHigh(0)").SetValue(i % 2);
    // What a field keeps for its host counts as little as its text: many small differences.
    for (EngrSpin *field : arrFields) field->SetAuxUnits(std::string(300, 'x') + std::to_string(i));
    lngMost = std::max(lngMost, panel.undo->HeldBytes());
  }
  EXPECT_GT(lngMost, 9u * 1024u * 1024u);
  EXPECT_LE(panel.undo->HeldBytes(), 10u * 1024u * 1024u);
  EXPECT_LT(Stack().count(), 1000);
  EXPECT_EQ(session->panel->undoText(), "1000");
  while (session->panel->canUndo()) session->panel->undo();
  // The oldest step that is left is undone like any other.
  const int intOldest = Stack().text(0).toInt();
  EXPECT_GT(intOldest, 1);
  EXPECT_EQ(session->Field("esLevelHigh(0)").Value(), (intOldest - 1) % 2);
}

}  // namespace
}  // namespace tarvik::test
