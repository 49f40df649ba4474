#include "TextHarvest.h"

#include <QAbstractButton>
#include <QLabel>
#include <string_view>

#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/PlainControls.h"
#include "platform/TabControl.h"
#include "platform/ToolPopup.h"

namespace tarvik::paneltest {

void TextHarvest::Put(const char *strKind, const std::string &strControl, const std::string &strText) {
  const std::string strBare = strControl.substr(0, strControl.find('('));
  for (const std::string &strName : {strControl, strBare}) {
    m_controls.insert(strName);
    m_texts[{strKind, strName}].insert(strText);
  }
}

const std::set<std::string> &TextHarvest::Texts(const std::string &strKind, const std::string &strControl) const {
  static const std::set<std::string> none;
  const auto found = m_texts.find({strKind, strControl});
  return found == m_texts.end() ? none : found->second;
}

void TextHarvest::Look(const PanelUnderTest &panel) {
  for (const QWidget *widget : panel.Gui().findChildren<QWidget *>())
    if (!widget->objectName().isEmpty()) LookAt(widget->objectName().toStdString(), *widget);
}

void TextHarvest::LookAt(const std::string &strName, const QWidget &widget) {
  Put("tooltip", strName, widget.toolTip().toStdString());
  if (const auto *tabs = dynamic_cast<const TabControl *>(&widget)) {
    for (int page = 0; page < tabs->count(); ++page)
      Put("caption", strName + " page " + std::to_string(page), tabs->tabText(page).toStdString());
  } else if (const auto *list = dynamic_cast<const CboEnhanced *>(&widget)) {
    Put("caption", strName, list->Caption());
    Put("mask", strName, list->TagX());
    for (Long i = 0; i < list->ListCount(); ++i) Put("item", strName, list->ItemText(i));
  } else if (const auto *group = dynamic_cast<const FrameEnhanced *>(&widget)) {
    Put("caption", strName, group->Caption());
    for (const OptionButtonControl *button : group->OptionButtons()) Put("tag", strName, button->Tag());
  } else if (const auto *field = dynamic_cast<const EngrSpin *>(&widget)) {
    Put("caption", strName, field->Caption());
    Put("unit", strName, field->BaseUnit());
    Put("format", strName, field->NumberFormat());
    Put("word", strName + ".ValueArray", field->ValueArray());
  } else if (const auto *popup = dynamic_cast<const ToolPopup *>(&widget)) {
    Put("caption", strName, popup->Caption());
    Put("tag", strName, popup->Tag());
    for (const auto &[strKey, strText] : popup->Entries()) {
      Put("menukey", strName, strKey);
      Put("menu", strName, strText);
      Put("menu", strKey, strText);
    }
  } else if (const auto *instruments = dynamic_cast<const ListView *>(&widget)) {
    int column = 0;
    for (const std::string &strHeader : instruments->Columns())
      Put("header", strName + " column " + std::to_string(++column), strHeader);
    for (int i = 0; i < instruments->Count(); ++i)
      for (column = 0; column < instruments->columnCount(); ++column)
        Put("item", strName, instruments->Item(i)->Text(column));
  } else if (const auto *label = dynamic_cast<const QLabel *>(&widget)) {
    Put("caption", strName, label->text().toStdString());
    Put("label", strName, label->text().toStdString());
    // The label of a text box bears its name.
    if (strName.starts_with("lbl")) Put("label", "txt" + strName.substr(3), label->text().toStdString());
  } else if (const auto *text = dynamic_cast<const DisplayField *>(&widget)) {
    Put("word", strName, text->Text());
  } else if (const auto *status = dynamic_cast<const DisplayBox *>(&widget)) {
    Put("status", strName, status->Text());
  } else if (const auto *picture = dynamic_cast<const PictureBox *>(&widget)) {
    for (const DrawPrimitive &primitive : picture->DisplayList())
      if (primitive.kind == DrawPrimitive::Kind::Text) Put("label", strName, primitive.strText);
  }
  if (const auto *option = dynamic_cast<const OptionButton *>(&widget)) Put("tag", strName, option->Tag());
  if (const auto *button = dynamic_cast<const QAbstractButton *>(&widget);
      button && !m_texts.contains({"menu", strName}))
    Put("caption", strName, button->text().toStdString());
}

void TextHarvest::Listen(const Json &out) {
  for (const Json &entry : out) {
    const std::string strWhat = entry[0];
    if (strWhat == "box") {
      m_messages.insert(entry[1].get<std::string>());
      m_titles.insert(entry[4].get<std::string>());
    } else if (strWhat == "input") {
      m_messages.insert(entry[1].get<std::string>());
      m_titles.insert(entry[2].get<std::string>());
    } else if (strWhat == "store") {
      Put("setting", "store", entry[2].get<std::string>());
    } else if (strWhat == "status") {
      Put("status", "txtStatus", entry[1].get<std::string>());
    }
  }
}

}  // namespace tarvik::paneltest
