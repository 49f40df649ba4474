#include "StaticReader.h"

#include <cstdio>

#include "Words.h"
#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CheckBox.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"
#include "platform/ToolPopup.h"
#include "platform/Twips.h"

namespace tarvik::paneltest {

namespace {

std::string CaptionOf(const QWidget &widget) {
  if (const auto *list = dynamic_cast<const CboEnhanced *>(&widget)) return list->Caption();
  if (const auto *group = dynamic_cast<const FrameEnhanced *>(&widget)) return group->Caption();
  if (const auto *field = dynamic_cast<const EngrSpin *>(&widget)) return field->Caption();
  if (const auto *popup = dynamic_cast<const ToolPopup *>(&widget)) return popup->Caption();
  if (const auto *button = dynamic_cast<const QAbstractButton *>(&widget)) return button->text().toStdString();
  if (const auto *label = dynamic_cast<const QLabel *>(&widget)) return label->text().toStdString();
  throw BadLine("no caption");
}

/// Red, green and blue in this order.
std::string ColourText(Colour colour) {
  const QColor shown = ToQColor(colour);
  char text[8];
  std::snprintf(text, sizeof text, "%02X%02X%02X", static_cast<unsigned>(shown.red()),
                static_cast<unsigned>(shown.green()), static_cast<unsigned>(shown.blue()));
  return text;
}

Json FieldProperty(const EngrSpin &field, const std::string &strProperty) {
  if (strProperty == "Min") return field.Min();
  if (strProperty == "Max") return field.Max();
  if (strProperty == "MinExponent") return field.MinExponent();
  if (strProperty == "MaxExponent") return field.MaxExponent();
  if (strProperty == "DefaultValue") return field.DefaultValue();
  if (strProperty == "BaseUnit") return field.BaseUnit();
  if (strProperty == "NumberFormat") return field.NumberFormat();
  throw BadLine("unknown property " + strProperty);
}

Json EntriesOf(const ToolPopup &popup) {
  Json list = Json::array();
  for (const auto &[strKey, strText] : popup.Entries()) list.push_back(Json::array({strKey, strText}));
  return list;
}

/// The text on tab i for "tabMain(i)".
Json TabText(const PanelUnderTest &panel, const std::string &strControl) {
  const int page = std::stoi(strControl.substr(strControl.find('(') + 1));
  return panel.Get<TabControl>("tabMain").tabText(page).toStdString();
}

}  // namespace

Json ReadStatic(const PanelUnderTest &panel, const std::string &strControl, const std::string &strProperty) {
  if (strControl.starts_with("tabMain(")) return TabText(panel, strControl);
  // The label of a text box bears its name.
  if (strProperty == "Label") return CaptionOf(panel.Get<Label>("lbl" + strControl.substr(3)));

  const QWidget *widget = panel.Find(strControl);
  if (!widget) RaiseNoControl(strControl);
  if (strProperty == "Caption") return CaptionOf(*widget);
  if (strProperty == "ToolTip") return widget->toolTip().toStdString();
  if (strProperty == "Tag") {
    if (const auto *popup = dynamic_cast<const ToolPopup *>(widget)) return popup->Tag();
    return panel.Get<OptionButton>(strControl).Tag();
  }
  if (strProperty == "TagX") return panel.Get<CboEnhanced>(strControl).TagX();
  if (strProperty == "Columns") return panel.Get<ListView>(strControl).Columns();
  if (strProperty == "Menu") return EntriesOf(panel.Get<ToolPopup>(strControl));
  if (strProperty == "Width" || strProperty == "Height") {
    const bool fWidth = strProperty == "Width";
    if (const auto *picture = dynamic_cast<const PictureBox *>(widget))
      return fWidth ? picture->ScaleWidth() : picture->ScaleHeight();
    return PixelsToTwips(*widget, fWidth ? widget->width() : widget->height());
  }
  if (strProperty == "BackColor") return ColourText(panel.Get<PictureBox>(strControl).BackColor());
  if (strProperty == "ForeColor") return ColourText(panel.Get<PictureBox>(strControl).ForeColor());
  return FieldProperty(panel.Get<EngrSpin>(strControl), strProperty);
}

}  // namespace tarvik::paneltest
