#include <gmock/gmock.h>

#include <cstdlib>
#include <random>

#include "PanelDump.h"
#include "WidgetEnvironment.h"
#include "panel/UndoHistory.h"
#include "panel/UndoScope.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

constexpr int Steps = 200;

int Sessions() {
  const char *strCount = std::getenv("TARVIK_UNDO_SESSIONS");
  return strCount ? std::atoi(strCount) : 1;
}

/// A user who does whatever can be done, from a seed.
class RandomUser {
 public:
  RandomUser(PanelSession &session, unsigned lngSeed) : m_session(session), m_random(lngSeed) {}

  void Act() {
    const auto ePage = static_cast<TabNumEnum>(ePageMode + Below(ePageConfig));
    m_session.ShowPage(ePage);
    if (Below(40) == 0) {
      m_session.Click("cmdDownload");
      return;
    }
    const auto arrControls = ControlsOf(ePage);
    if (arrControls.empty()) return;
    Work(*arrControls[static_cast<std::size_t>(Below(static_cast<int>(arrControls.size())))]);
  }

 private:
  int Below(int intCount) { return std::uniform_int_distribution(0, intCount - 1)(m_random); }

  std::vector<QWidget *> ControlsOf(TabNumEnum ePage) {
    std::vector<QWidget *> arr;
    for (auto *widget : m_session.Get<QTabWidget>("tabMain").widget(ePage)->findChildren<QWidget *>()) {
      const bool fControl = dynamic_cast<EngrSpin *>(widget) || dynamic_cast<CboEnhanced *>(widget) ||
                            dynamic_cast<OptionButton *>(widget) || dynamic_cast<ToolPopup *>(widget) ||
                            widget->objectName() == "cmdPeriodOrFreq" || widget->objectName() == "cmdNumOrGraph";
      if (fControl && widget->isEnabled() && widget->isVisible()) arr.push_back(widget);
    }
    return arr;
  }

  void Work(QWidget &widget) {
    const std::string strName = widget.objectName().toStdString();
    if (auto *field = dynamic_cast<EngrSpin *>(&widget)) {
      if (field->Locked()) return;
      WorkField(*field, strName);
    } else if (auto *list = dynamic_cast<CboEnhanced *>(&widget)) {
      if (list->ListCount() > 0) m_session.Take(strName, Below(list->ListCount()));
    } else if (auto *popup = dynamic_cast<ToolPopup *>(&widget)) {
      const auto &arrEntries = popup->Entries();
      m_session.host.arrInputAnswers = {std::to_string(2 + Below(20))};
      m_session.TakeMenu(strName,
                         arrEntries[static_cast<std::size_t>(Below(static_cast<int>(arrEntries.size())))].first);
    } else if (dynamic_cast<OptionButton *>(&widget)) {
      m_session.Choose(strName);
    } else {
      m_session.Click(strName);
    }
  }

  void WorkField(EngrSpin &field, const std::string &strName) {
    static constexpr const char *Prefixes[] = {"n", "u", "m", ""};
    if (&field != m_stepped && Below(3) == 0) {
      m_stepped = &field;
      m_session.PressIn(strName, Below(2) == 0 ? Qt::Key_Up : Qt::Key_Down);
      return;
    }
    m_stepped = nullptr;
    const bool fUnit = !field.BaseUnit().empty();
    m_session.Type(strName, std::to_string(1 + Below(900)) + (fUnit ? Prefixes[Below(4)] : ""));
  }

  PanelSession &m_session;
  std::mt19937 m_random;
  const EngrSpin *m_stepped = nullptr;
};

class RandomSession : public testing::Test {
 protected:
  void Compare(const std::vector<std::string> &arrNow, const std::vector<std::string> &arrThen, int intIndex) {
    ASSERT_EQ(arrNow.size(), arrThen.size());
    for (std::size_t i = 0; i < arrNow.size(); ++i)
      ASSERT_EQ(arrNow[i], arrThen[i]) << "at step " << intIndex << ", " << Stack().text(intIndex).toStdString();
  }
  QUndoStack &Stack() { return TarvikGUI::Panel::Of(*session->panel).undo->Stack(); }

  std::optional<PanelSession> session;
};

TEST_F(RandomSession, IsUndoneToItsStartAndRedoneToItsEndAndThePanelShowsEachTimeWhatItShowedThen) {
  for (int intSession = 0; intSession < Sessions(); ++intSession) {
    SCOPED_TRACE("seed " + std::to_string(intSession));
    session.reset();
    session.emplace(PanelSession::Start{.fAutoOutput = false});
    TarvikGUI::Panel::Of(*session->panel).undo->Clear();
    RandomUser user(*session, static_cast<unsigned>(intSession));
    std::vector<std::vector<std::string>> arrDumps{Dump(*session)};
    while (Stack().count() < Steps) {
      const int intBefore = Stack().index();
      user.Act();
      ASSERT_GE(Stack().index(), intBefore);
      if (Stack().index() > intBefore) arrDumps.push_back(Dump(*session));
    }
    session->Forget();
    for (int i = Steps - 1; i >= 0; --i) {
      session->panel->undo();
      ASSERT_EQ(Stack().index(), i);
      ASSERT_NO_FATAL_FAILURE(Compare(Dump(*session), arrDumps[static_cast<std::size_t>(i)], i));
    }
    for (int i = 1; i <= Steps; ++i) {
      session->panel->redo();
      ASSERT_NO_FATAL_FAILURE(Compare(Dump(*session), arrDumps[static_cast<std::size_t>(i)], i));
    }
    EXPECT_THAT(session->driver.arrTrace, IsEmpty());
    EXPECT_THAT(session->host.TakeBoxes(), IsEmpty());
  }
}

TEST_F(RandomSession, OfAThousandStepsOnTheLongestPatternHoldsAtMostTenMebibytes) {
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

TEST_F(RandomSession, OfStepsThatChangeEverythingTheOlderHalfGoesBeforeTheyHoldMore) {
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
