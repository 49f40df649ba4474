#include "panel/PanelMemento.h"

#include "bitpattern/PatternState.h"
#include "controls/ControlStates.h"
#include "engrspin/FieldState.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"

namespace tarvik {

namespace {

void VisitState(OptionButton &button, StateArchive &archive) {
  Boolean fOn = button.Value(), fEnabled = button.Enabled();
  archive.Setting(fOn);
  archive.Shown(fEnabled);
  archive.Words(button.text().trimmed().toStdString());
  if (!archive.Loads()) return;
  if (button.Value() != fOn) button.SetDesignValue(fOn);
  button.SetEnabled(fEnabled);
}

void VisitState(ToolPopup &popup, StateArchive &archive) {
  Boolean fEnabled = popup.Enabled();
  std::string strTag = popup.Tag();
  archive.Shown(fEnabled);
  archive.Shown(strTag);
  if (!archive.Loads()) return;
  popup.SetEnabled(fEnabled);
  popup.SetTag(strTag);
}

void VisitState(CommandButton &button, StateArchive &archive) {
  std::string strCaption = button.Caption();
  archive.Shown(strCaption);
  archive.Words(strCaption);
  if (archive.Loads()) button.SetCaption(strCaption);
}

void VisitOutputs(PanelState &state, StateArchive &archive) {
  for (auto *flags : {&state.mfOutputOn, &state.mfOutputInvOn})
    for (Boolean &fOn : *flags) archive.Shown(fOn);
}

/// Without the page states and the options. The flags of the outputs have a part of their own.
void VisitRest(PanelState &state, StateArchive &archive) {
  archive.Shown(state.meTriggerMode);
  archive.Shown(state.mePulseMode);
  archive.Shown(state.mintModePos);
  for (Boolean &fDouble : state.mfDoublePulse) archive.Shown(fDouble);
  archive.Shown(state.mfRz.Array()[1]);
  archive.Shown(state.mfRz.Array()[2]);
  for (Boolean &fCoupled : state.mfTeEqLe) archive.Setting(fCoupled);
}

/// Both pages show the switches of the outputs, and the flags count.
bool IsOutputSwitch(const QWidget &widget) {
  const QString name = widget.objectName();
  return name.startsWith(QLatin1String("optChannel1")) || name.startsWith(QLatin1String("optChannel2"));
}

KeptState TakenFrom(const PanelMemento::Part &part) {
  StateArchive archive;
  part.visit(archive);
  return archive.Taken();
}

}  // namespace

PanelMemento::PanelMemento(PanelState &state) : m_state(state) {}

template <class T>
void PanelMemento::Add(TabNumEnum ePage, T &control, bool fSetting) {
  m_arrParts.push_back(
      {ePage, &control, fSetting, [&control](StateArchive &archive) { VisitState(control, archive); }});
}

void PanelMemento::AddPage(TabNumEnum ePage, Page &page) {
  for (QWidget *widget : page.Controls().AllWidgets()) AddControl(ePage, *widget);
  m_arrParts.push_back({ePage, nullptr, false, [&page](StateArchive &archive) { page.VisitState(archive); }});
}

void PanelMemento::AddControl(TabNumEnum ePage, QWidget &widget) {
  if (auto *field = dynamic_cast<EngrSpin *>(&widget)) Add(ePage, *field, true);
  if (auto *list = dynamic_cast<CboEnhanced *>(&widget)) Add(ePage, *list, true);
  if (auto *frame = dynamic_cast<FrameEnhanced *>(&widget)) Add(ePage, *frame, false);
  if (auto *option = dynamic_cast<OptionButton *>(&widget)) Add(ePage, *option, !IsOutputSwitch(widget));
  if (auto *popup = dynamic_cast<ToolPopup *>(&widget)) Add(ePage, *popup, false);
  if (auto *button = dynamic_cast<CommandButton *>(&widget)) Add(ePage, *button, false);
  if (auto *editor = dynamic_cast<BitPattern *>(&widget)) AddEditor(ePage, *editor);
}

void PanelMemento::AddEditor(TabNumEnum ePage, BitPattern &editor) {
  for (const Long eChannel : {eChan1, eChan2, eStrobe})
    m_arrParts.push_back(
        {ePage, &editor, true, [&editor, eChannel](StateArchive &archive) { VisitStream(editor, eChannel, archive); }});
  for (auto *field : editor.findChildren<EngrSpin *>())
    Add(ePage, *field, field->objectName() != QLatin1String("esAddress"));
  Add(ePage, editor, true);
}

void PanelMemento::AddPanelState() {
  m_lngOutputs = m_arrParts.size();
  m_arrParts.push_back({ePageTiming, nullptr, true, [this](StateArchive &archive) { VisitOutputs(m_state, archive); }});
  m_arrParts.push_back({ePageTiming, nullptr, true, [this](StateArchive &archive) { VisitRest(m_state, archive); }});
}

const PanelMemento::Part *PanelMemento::PartOf(const QWidget *widget) const {
  for (; widget; widget = widget->parentWidget())
    for (const Part &part : m_arrParts)
      if (part.widget == widget) return &part;
  return nullptr;
}

bool PanelMemento::IsTyping(const Part &part) {
  auto *field = dynamic_cast<EngrSpin *>(part.widget);
  return field && tarvik::IsTyping(*field);
}

KeptParts PanelMemento::Taken(const KeptParts &before) const {
  KeptParts arrParts;
  arrParts.reserve(m_arrParts.size());
  for (std::size_t i = 0; i < m_arrParts.size(); ++i) {
    const KeptPart was = i < before.size() ? before[i] : nullptr;
    if (was && IsTyping(m_arrParts[i])) {
      arrParts.push_back(was);
      continue;
    }
    KeptState now = TakenFrom(m_arrParts[i]);
    arrParts.push_back(was && *was == now ? was : std::make_shared<const KeptState>(std::move(now)));
  }
  return arrParts;
}

void PanelMemento::Show(const KeptParts &arrTarget) const {
  for (std::size_t i = 0; i < m_arrParts.size(); ++i) {
    // Compared here and not before: a frame that is brought back changes what stands in it.
    if (TakenFrom(m_arrParts[i]) == *arrTarget[i]) continue;
    StateArchive archive(*arrTarget[i]);
    m_arrParts[i].visit(archive);
  }
}

PanelMemento::Outputs PanelMemento::OutputsIn(const KeptParts &arrParts) const {
  Outputs arrOn;
  StateArchive archive(*arrParts[m_lngOutputs]);
  for (Boolean &fOn : arrOn) archive.Shown(fOn);
  return arrOn;
}

}  // namespace tarvik
