#include <gmock/gmock.h>

#include "PanelSession.h"
#include "ServedRack.h"
#include "SimulatorSession.h"
#include "ToolkitBoxes.h"
#include "WidgetEnvironment.h"

namespace tarvik::test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// Has something done before it sends or reads the timing.
class InstrWithAccident : public clsInstrInterface {
 public:
  Boolean SetTiming(const udtTimingInfo &TimingInfo) override {
    if (accident) accident();
    return clsInstrInterface::SetTiming(TimingInfo);
  }
  Boolean GetTiming(udtTimingInfo &TimingInfo) override {
    if (accident) accident();
    return clsInstrInterface::GetTiming(TimingInfo);
  }
  std::function<void()> accident;
};

/// The panel with real boxes over an instrument of a server process, which dies in the middle of a transfer.
class DeadServer : public testing::Test {
 protected:
  DeadServer() {
    session.NewPanel();
    boxes.emplace();
    instr = std::make_shared<InstrWithAccident>();
    gobjInstr() = instr;
    session.host.arrInputAnswers = {rack.Url()};
    session.Show();
    session.Open("VP-210");
    instr->accident = [this] {
      instr->accident = nullptr;
      rack.Server().End(SIGKILL);
    };
    session.panel->SetTabState(ePageIsDirty, eAllPages);
  }

  const PanelUser &User() const { return *session.user; }
  std::vector<std::string> Shown() const {
    std::vector<std::string> arrTexts;
    for (const auto &box : boxes->arrBoxes) arrTexts.push_back(box.strText);
    return arrTexts;
  }
  Long KeptBoxes() {
    Long lngCount = 0;
    for (const HostMessage &message : boxes->Messages().All()) lngCount += message.lngCount;
    return lngCount;
  }

  ServedRack rack;
  SimulatorSession session{{{"WorkWithBoxes", "1"}}, TestRack, rack.Url()};
  std::shared_ptr<InstrWithAccident> instr;
  std::optional<ToolkitBoxes> boxes;
};

TEST_F(DeadServer, InAnUploadOfAllPagesCostsTwoBoxesWhenTheSecondIsAnsweredWithTheList) {
  boxes->fTakesListOnly = true;
  User().Click("cmdUpload");
  EXPECT_THAT(Shown(), AllOf(SizeIs(2), Each(HasSubstr("has gone"))));
  EXPECT_EQ(KeptBoxes(), 4);
  EXPECT_EQ(User().Get<CommandButton>("cmdMessages").Caption(), "Messa&ges (2)");
}

TEST_F(DeadServer, InADownloadOfAllPagesTheRestComesIntoTheList) {
  boxes->fTakesListOnly = true;
  User().Click("cmdDownload");
  EXPECT_THAT(Shown(), SizeIs(2));
  EXPECT_EQ(KeptBoxes(), 44);
}

TEST_F(DeadServer, EveryBoxComesWhereTheListIsNotChosen) {
  User().Click("cmdUpload");
  EXPECT_THAT(Shown(), SizeIs(4));
}

TEST_F(DeadServer, TheButtonBesideTheStatusOpensTheListByItsKey) {
  boxes->fTakesListOnly = true;
  User().Click("cmdUpload");
  session.panel->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(session.panel.get()));
  User().PressAccessKey(Qt::Key_G);
  EXPECT_NE(session.panel->findChild<QWidget *>(QStringLiteral("MessageWindow")), nullptr);
  EXPECT_EQ(User().Get<CommandButton>("cmdMessages").Caption(), "Messa&ges");
}

}  // namespace
}  // namespace tarvik::test
