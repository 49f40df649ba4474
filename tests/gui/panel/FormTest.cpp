#include <gmock/gmock.h>

#include "RecordingHost.h"
#include "WidgetEnvironment.h"
#include "controls/FrameEnhanced.h"
#include "panel/Form.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"
#include "support/Variant.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

/// The stored properties as texts.
std::map<std::string, std::string> Stored(const ControlDesign &design) {
  const RecordingHost host;  // tells the decimal separator
  std::map<std::string, std::string> properties;
  for (const auto &[strKey, vValue] : design.Properties().Values()) properties[strKey] = CStr(vValue);
  return properties;
}

TEST(ControlDesign, StoresEachPropertyUnderItsName) {
  const ControlDesign field = form::Field("esDelay", 1)
                                  .In("grpTimingChan", 0)
                                  .At({120, 345, 3810, 315})
                                  .Caption("Delay", 1440)
                                  .BaseUnit("s")
                                  .Range(0.5, 2)
                                  .Exponents(-9, 0);
  EXPECT_EQ(field.FullName(), "esDelay(1)");
  EXPECT_EQ(field.ContainerName(), "grpTimingChan(0)");
  EXPECT_EQ(field.Place(), (TwipsRect{120, 345, 3810, 315}));
  EXPECT_THAT(Stored(field),
              ElementsAre(Pair("BaseUnit", "s"), Pair("Caption", "Delay"), Pair("CaptionWidth", "1440"),
                          Pair("Max", "2"), Pair("MaxExponent", "0"), Pair("Min", "0.5"), Pair("MinExponent", "-9")));
}

TEST(ControlDesign, StoresListsOfThingsAsOneText) {
  EXPECT_THAT(Stored(form::ListView("lvwInstruments").Columns({"Instrument", "Slot"}).ColumnWidths({3900, 1300})),
              ElementsAre(Pair("ColumnWidths", "3900|1300"), Pair("Columns", "Instrument|Slot")));
  EXPECT_THAT(
      Stored(form::Menu("toolPopupTEdge", 0).Menu({{"TeEqLe", "Trail Edge = Lead Edge"}, {"TeAbs", "Absolute"}})),
      ElementsAre(Pair("Menu", "TeEqLe=Trail Edge = Lead Edge|TeAbs=Absolute")));
}

TEST(ControlDesign, ALabelledListHasItsCaptionAtTheRight) {
  EXPECT_THAT(Stored(form::List("cboLevelUnits", 0)), ElementsAre(Pair("CaptionAlignment", "1")));
}

TEST(ControlDesign, AnIndexThatNoControlArrayCanHaveIsAnOverflow) {
  try {
    form::Field("esDelay", 32768);
    FAIL() << "the index was cut";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), ErrOverflow);
  }
}

TEST(FormTest, MakesTheRowsInOrderWithinTheirContainers) {
  const RecordingHost host;
  QWidget page;
  FormTable table{form::Frame("grpOutputs").At({0, 0, 3000, 1500})};
  table.Add({form::Option("optOutputs", 1).In("grpOutputs").At({150, 300, 1500, 300}).Caption("Added").Chosen(),
             form::Menu("toolPopupTEdge", 0).At({0, 1500, 1500, 300}).Menu({{"A", "First"}, {"B", "Second"}})});
  const Form made(page, table);
  auto &option = made.Get<OptionButton>("optOutputs", 1);
  EXPECT_EQ(option.objectName(), "optOutputs(1)");
  EXPECT_EQ(option.text(), "Added");
  EXPECT_TRUE(option.Value());
  EXPECT_TRUE(made.Get<FrameEnhanced>("grpOutputs").isAncestorOf(&option));
  EXPECT_EQ(made.GetArray<ToolPopup>("toolPopupTEdge")[0].parentWidget(), &page);
}

}  // namespace
}  // namespace tarvik::test
