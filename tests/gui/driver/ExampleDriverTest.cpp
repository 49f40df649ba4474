#include <gmock/gmock.h>

#include "PanelStart.h"
#include "PanelUser.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "platform/CommandButton.h"
#include "platform/PlainControls.h"

/// The example of the driver author's guide under the real panel: found by its manifest, with one channel, one mode and
/// none of the blocks that an instrument may lack.

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExampleDriver : public testing::Test {
 protected:
  ExampleDriver() {
    PrivateDataFolder::Write("KolvenAtl.Kolven.driver", std::string(EXAMPLE_DRIVER) + "\n");
    gobjInstr().reset();
    panel = std::make_unique<TarvikGUI>();
    panel->resize(panel->sizeHint());
    user = std::make_unique<PanelUser>(*panel);
    ShowAndStart(*panel);
  }
  ~ExampleDriver() override {
    user.reset();
    panel.reset();
    gobjInstr().reset();
    PrivateDataFolder::Remove("KolvenAtl.Kolven.driver");
  }
  std::string Status() const { return user->Get<DisplayBox>("txtStatus").Text(); }

  RecordingHost host;
  std::unique_ptr<TarvikGUI> panel;
  std::unique_ptr<PanelUser> user;
};

TEST_F(ExampleDriver, IsListedOpenedAndDownloadedWithoutABox) {
  ASSERT_EQ(user->Instruments().Count(), 1);
  EXPECT_EQ(user->Instruments().Item(0)->Text(), "Pulser 1");
  user->Tick(0);
  EXPECT_EQ(Status(), "Online with Pulser 1 (Pulser 1)");
  EXPECT_EQ(user->Field("esWidth(0)").Value(), 100e-9);
  user->Click("cmdDownload");
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
}

TEST_F(ExampleDriver, TakesBackAllPagesAndRefusesThePatternByName) {
  user->Tick(0);
  panel->SetTabState(ePageIsDirty, eAllPages);
  user->Click("cmdUpload");
  // The pattern of a generator without pattern memory is what no capability bit takes away: it is refused by name.
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box stop: The driver does not support IPatternMemory.SetPattern"));
}

TEST_F(ExampleDriver, TakesWhatTheUserChangesAndRefusesWhatItCannotDo) {
  user->Tick(0);
  user->ShowPage(ePageTiming);
  user->Type("esWidth(0)", "250n");
  user->Click("cmdUpload");
  EXPECT_THAT(host.TakeBoxes(), IsEmpty());
  udtTimingInfo timing;
  ASSERT_TRUE(InstrInterface()->GetTiming(timing));
  EXPECT_EQ(timing.dblWidth[1], 250e-9);
  user->Type("esWidth(0)", "2n");
  user->Click("cmdUpload");
  EXPECT_THAT(host.TakeBoxes(), ElementsAre("box exclamation: Instrument Errors(s):\r\nWidth below 5 ns"));
  ASSERT_TRUE(InstrInterface()->GetTiming(timing));
  EXPECT_EQ(timing.dblWidth[1], 250e-9);
}

}  // namespace
}  // namespace tarvik::test
