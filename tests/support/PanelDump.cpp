#include "PanelDump.h"

#include <QLabel>
#include <QTabWidget>
#include <sstream>

#include "ValueText.h"
#include "bitpattern/BitPattern.h"
#include "bitpattern/HScrollBar.h"
#include "controls/FrameEnhanced.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"
#include "platform/PictureBox.h"
#include "platform/ToolPopup.h"

namespace tarvik::test {

namespace {

std::string LineOf(EngrSpin &field) {
  std::ostringstream line;
  line.precision(17);
  line << field.Value() << ' ' << field.Min() << ' ' << field.Max() << " '" << field.Text() << "' '"
       << field.findChild<QLabel *>("lblUnits")->text().toStdString() << "' '" << field.Caption() << "' '"
       << field.BaseUnit() << "' '" << field.AuxUnits() << "' " << field.AuxValue() << " '" << field.ValueArray()
       << "' " << bool{field.Enabled()} << bool{field.Locked()} << field.isEnabled();
  return line.str();
}

std::string LineOf(CboEnhanced &list) {
  std::ostringstream line;
  line << list.ListIndex() << ' ' << bool{list.Enabled()} << list.isEnabled();
  for (Long i = 0; i < list.ListCount(); ++i) line << " [" << list.ItemText(i) << '=' << list.ItemData(i) << ']';
  return line.str();
}

std::string LineOf(BitPattern &editor) {
  std::ostringstream line;
  line << editor.GetPatternLength();
  for (const Long eChannel : {1, 2, 8}) {
    ByteArray arr(1, std::vector<Byte>(2048));
    Long lngSize = 0;
    editor.GetPattern(eChannel, arr, lngSize);
    arr.Elements().resize(static_cast<std::size_t>(lngSize));
    line << ' ' << ToHex(arr.Elements());
  }
  BooleanArray fRz(1, {False, False});
  editor.GetRz(fRz);
  line << ' ' << bool{fRz[1]} << bool{fRz[2]};
  return line.str();
}

std::string LineOf(QWidget &widget) {
  if (auto *field = dynamic_cast<EngrSpin *>(&widget)) return LineOf(*field);
  if (auto *list = dynamic_cast<CboEnhanced *>(&widget)) return LineOf(*list);
  if (auto *editor = dynamic_cast<BitPattern *>(&widget)) return LineOf(*editor);
  if (auto *option = dynamic_cast<OptionButton *>(&widget))
    return std::to_string(bool{option->Value()}) + std::to_string(option->isEnabled());
  if (auto *popup = dynamic_cast<ToolPopup *>(&widget)) return popup->Tag() + std::to_string(popup->isEnabled());
  if (auto *frame = dynamic_cast<FrameEnhanced *>(&widget)) return std::to_string(bool{frame->Enabled()});
  if (auto *bar = dynamic_cast<HScrollBar *>(&widget))
    return std::to_string(bar->minimum()) + ' ' + std::to_string(bar->maximum()) + ' ' + std::to_string(bar->value()) +
           ' ' + std::to_string(bar->isEnabled());
  if (auto *button = dynamic_cast<CommandButton *>(&widget)) return button->Caption();
  return {};
}

std::string LineOf(const PanelState &state) {
  std::ostringstream line;
  line << state.meTriggerMode << ' ' << state.mePulseMode << ' ' << state.mintModePos;
  for (const Long i : {1, 2})
    line << ' ' << bool{state.mfOutputOn[i]} << bool{state.mfOutputInvOn[i]} << bool{state.mfDoublePulse[i]}
         << bool{state.mfRz[i]} << bool{state.mfTeEqLe[static_cast<std::size_t>(i - 1)]};
  return line.str();
}

}  // namespace

std::vector<std::string> Dump(const PanelUser &user, const PanelState &state) {
  std::vector<std::string> arrLines{"state: " + LineOf(state)};
  auto &tabs = user.Get<QTabWidget>("tabMain");
  for (int intPage = ePageMode; intPage <= ePageConfig; ++intPage)
    for (auto *widget : tabs.widget(intPage)->findChildren<QWidget *>())
      if (const std::string strLine = LineOf(*widget); !strLine.empty())
        arrLines.push_back(std::to_string(intPage) + ' ' + widget->objectName().toStdString() + ": " + strLine);
  return arrLines;
}

}  // namespace tarvik::test
