#include <gmock/gmock.h>

#include <limits>

#include "PanelSession.h"
#include "WidgetEnvironment.h"
#include "platform/CheckBox.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What a user meets when calls of the driver go wrong. Every call that goes wrong in every way is swept elsewhere.
class DriverCallFaults : public testing::Test {
 protected:
  Double &Impedance() { return session.driver.Find("Alpha")->settings.channels[0].dblImpedance; }
  /// Chooses the visible page for downloads and downloads the limits.
  void ExpectLimitsAloneAreRead() {
    session.ShowPage(ePageOptions);
    session.Choose("optDownload(1)");
    session.ShowPage(ePageLimits);
    session.Forget();
    session.Click("cmdDownload");
    EXPECT_THAT(session.Calls({"GetPulseMode", "GetFrequency", "GetLevel", "GetPattern", "GetReference"}), IsEmpty());
    EXPECT_EQ(session.Calls({"GetHigh"}).size(), 4u);
  }

  PanelSession session{{.fOpen = false}};
};

TEST_F(DriverCallFaults, AnAutomaticDownloadThatFailsLeavesTheNextDownloadToTheOption) {
  Impedance() = std::numeric_limits<Double>::quiet_NaN();
  session.Open();
  EXPECT_THAT(session.host.TakeBoxes(), ElementsAre("box stop: Overflow"));
  Impedance() = 50;
  // The failure has kept the buttons disabled, so the session is started again.
  session.Get<CheckBox>("chkAutoDownload").SetValue(0);
  session.Open();
  session.Open();
  ExpectLimitsAloneAreRead();
}

TEST_F(DriverCallFaults, ADownloadAfterAnErrorThatFailsLeavesTheNextDownloadToTheOption) {
  session.Open();
  session.Get<CheckBox>("chkAutoDownOnError").SetValue(1);
  session.panel->SetTabState(ePageIsDirty, ePageLimits);
  session.Forget();
  Impedance() = std::numeric_limits<Double>::quiet_NaN();
  session.driver.FailMatching("IInstrument.Transaction(1)", 1, {Refused, "driver failed"});
  session.Click("cmdUpload");
  EXPECT_THAT(session.host.TakeBoxes(),
              ElementsAre("box exclamation: Instrument Errors(s):\r\ndriver failed", "box stop: Overflow"));
  Impedance() = 50;
  ExpectLimitsAloneAreRead();
}

}  // namespace
}  // namespace tarvik::test
