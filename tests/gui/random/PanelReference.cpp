#include "PanelReference.h"

#include <QCoreApplication>
#include <QTabWidget>
#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

#include "PanelDump.h"
#include "controls/FrameEnhanced.h"
#include "panel/Panel.h"
#include "panel/SettingControls.h"
#include "panel/UndoHistory.h"
#include "platform/CheckBox.h"
#include "platform/OptionButton.h"
#include "settings/SetupDifferences.h"

namespace tarvik::test {

namespace {

/// The part of a number by which an instrument may round it: times have steps of its own. What it was sent counts as
/// known.
constexpr Double Resolution = 5e-3;

TarvikGUI::Panel &Panel(const SimulatorSession &session) { return TarvikGUI::Panel::Of(*session.panel); }

std::size_t VisiblePage(const SimulatorSession &session) {
  return static_cast<std::size_t>(session->Get<QTabWidget>("tabMain").currentIndex());
}

std::vector<std::string> Shown(const SimulatorSession &session) { return Dump(*session.user, Panel(session).state); }

bool IsOutputSwitch(const std::string &strControl) {
  return strControl.starts_with("optChannel") && strControl.find("Output(") != std::string::npos;
}

/// The part of a dump's line that tells a setting of the page whose number it begins with; empty for other lines.
std::string SettingIn(const std::string &strLine) {
  const std::string strControl = strLine.substr(2, strLine.find(':') - 2);
  const std::string strValue = strLine.substr(strLine.find(':') + 2);
  // The output switches are told by the panel's flags, which stand in its memory as the edge menus do.
  if (strControl == "esAddress" || IsOutputSwitch(strControl)) return {};
  // A download leaves these as they are; the editor's flags count.
  if (strControl.starts_with("optChannelRzNrz")) return {};
  if (strControl.starts_with("opt")) return strValue.substr(0, 1);
  if (strControl.starts_with("es") || strControl.starts_with("cbo")) return strValue.substr(0, strValue.find(' '));
  return strControl.starts_with("BitPattern") ? strValue : "";
}

/// Keys in the pattern change the row that is selected.
void SelectRow(const SimulatorSession &session) {
  session->ShowPage(ePagePattern);
  auto &picture = session->Get<QWidget>("picWave");
  for (int y = 0; y < picture.height(); y += 4) QTest::mouseClick(&picture, Qt::LeftButton, {}, QPoint(100, y));
  session->Click("cmdDownload");
}

/// Which output options are chosen, those of both pages.
std::vector<bool> Switches(const SimulatorSession &session) {
  std::vector<bool> arrOn;
  for (const char *strOptions :
       {"optChannel1Output", "optChannel2Output", "optChannel1InvOutput", "optChannel2InvOutput"})
    for (const char *strIndex : {"(0)", "(2)"})
      arrOn.push_back(session->Get<OptionButton>(std::string(strOptions) + strIndex).Value());
  return arrOn;
}

/// What the panel remembers of the outputs.
std::vector<bool> Outputs(const SimulatorSession &session) {
  std::vector<bool> arrOn;
  for (const auto *flags : {&Panel(session).state.mfOutputOn, &Panel(session).state.mfOutputInvOn})
    for (const Long lngChannel : {1, 2}) arrOn.push_back((*flags)[lngChannel]);
  return arrOn;
}

}  // namespace

PanelReference::PanelReference(SimulatorSession &session) : m_session(session) {
  for (EngrSpin *field : session.panel->findChildren<EngrSpin *>())
    m_arrEvents.push_back(field->AfterUpdate.ConnectScoped([this] { m_fTaken = true; }));
  m_refused = SimulatorSession::Instr().InstrError.ConnectScoped([this](const std::string &) { m_fRefused = true; });
  // Opening a session marks all pages; the download that follows reads those with settings.
  m_states[ePageOptions] = ePageNeedsDownloading;
  SelectRow(session);
  Panel(session).undo->Clear();
  m_steps.push_back({Shown(session), {}});
}

void PanelReference::Before() {
  m_arrBefore = Shown(m_session);
  m_arrSwitches = Switches(m_session);
  m_visible = VisiblePage(m_session);
  m_arrOutputs = Outputs(m_session);
  m_arrCoupled = Panel(m_session).state.mfTeEqLe;
  const auto fAll = [this](const char *strGroup) {
    return m_session->Get<FrameEnhanced>(strGroup).Value() == Variant(std::string("All"));
  };
  m_fUploadsAll = fAll("grpUpload");
  m_fDownloadsAll = fAll("grpDownload");
  m_fAutoOutput = m_session->Get<CheckBox>("chkAutoOutputOnOff").Value() == 1;
  m_fReadsAfterError = m_session->Get<CheckBox>("chkAutoDownOnError").Value() == 1;
  m_dblAddress = m_session->Field("esAddress").Value();
  m_fTaken = m_fRefused = false;
}

std::string PanelReference::After(const Done &done, const Setup &held) {
  Pages marks = MarkedBy(done);
  if (std::string strWrong = FollowStep(done, marks); !strWrong.empty()) return strWrong;
  FollowStates(done, marks);
  if (Panel(m_session).state.meTabState != m_states) {
    std::ostringstream text;
    text << "page states (told, shown):";
    for (std::size_t i = 0; i < m_states.size(); ++i)
      text << "  " << m_states[i] << ' ' << Panel(m_session).state.meTabState[i];
    return text.str();
  }
  return CheckMarks(held);
}

// ---- Page states ----

PanelReference::Pages PanelReference::MarkedBy(const Done &done) const {
  if (done.kind == Action::Download || done.kind == Action::Upload) return ChangedPages();
  Pages pages;
  // A page that is entered shows the switches as they were left on the other one, which counts as turning them.
  if (done.kind == Action::ShowPage && !m_fAutoOutput && Switches(m_session) != m_arrSwitches)
    return pages.set(ePageTiming).set(ePageLevels);
  // In pattern mode the mode page hands its pulse types to the pattern editor, whose picture marks the page in front.
  if (done.kind == Action::ShowPage && VisiblePage(m_session) == ePageMode && m_visible != ePageMode)
    return pages.set(ePageMode, m_session->Get<OptionButton>("optPulseMode(2)").Value() &&
                                    m_session->List("cboPulseType1").Enabled());
  if (done.kind != Action::Change && done.kind != Action::StepField) return pages;
  const std::string &strName = done.strControl;
  const std::size_t visible = VisiblePage(m_session);
  if (IsOutputSwitch(strName)) {
    if (done.fOther && !m_fAutoOutput) pages.set(ePageTiming).set(ePageLevels);
  } else if (visible == ePageOptions || strName.starts_with("toolPopupTEdge") || strName == "cmdPeriodOrFreq") {
    // These are no settings.
  } else if (strName == "picWave") {
    // A bit that is typed at the last address is shown when the picture is drawn for another reason.
    pages.set(visible, m_session->Field("esAddress").Value() != m_dblAddress);
  } else if (m_session->Find<EngrSpin>(strName)) {
    pages.set(visible, m_fTaken);
  } else {
    pages.set(visible, done.fOther && !strName.empty());
  }
  return pages;
}

void PanelReference::FollowStates(const Done &done, const Pages &marks) {
  const std::size_t visible = VisiblePage(m_session);
  const auto read = [this](std::size_t page) {
    if (page >= ePageMode && page <= ePageConfig) m_states[page] = ePageIsCurrent;
  };
  switch (done.kind) {
    case Action::Upload:
      for (std::size_t page = 0; page < m_states.size(); ++page)
        if (m_states[page] == ePageIsDirty && (m_fUploadsAll || page == visible)) m_states[page] = ePageIsCurrent;
      if (!m_fRefused || !m_fReadsAfterError) return;
      m_states.fill(ePageNeedsDownloading);
      for (std::size_t page = 0; page < m_states.size(); ++page) read(page);
      return;
    case Action::Download:
      for (std::size_t page = 0; page < m_states.size(); ++page)
        if (m_fDownloadsAll || page == visible) read(page);
      return;
    case Action::ShowPage:
      // A click on the tab in front enters nothing.
      if (visible != m_visible && (visible == ePageInstr || visible == ePageOptions))
        m_states[visible] = ePageIsCurrent;
      break;
    default: break;
  }
  for (std::size_t page = 0; page < m_states.size(); ++page)
    if (marks[page]) m_states[page] = ePageIsDirty;
}

// ---- Marks ----

std::set<std::string> PanelReference::Differing(const Setup &shown, const Setup &held) const {
  const KnownSetup &known = Panel(m_session).Known();
  std::set<std::string> arrNames;
  for (const SetupDifference &difference : Differences(shown, held)) {
    const Setting &setting = *difference.setting;
    if (!setting.IsInUse(shown, difference.lngChannel)) continue;
    // After the mode went to the other pulse type alone, nobody has told the delay of that one.
    if (setting.strKey == "timing.delay" && !known.Knows(setting, difference.lngChannel)) continue;
    // The driver tells a slope or the PLL, as its arming source is.
    if (setting.strKey == "mode.armingLevel" && held.Mode.ArmingSource == eArmPll) continue;
    if (setting.strKey.starts_with("mode.pll") && held.Mode.ArmingSource != eArmPll) continue;
    for (const SettingControl &control : ControlsOf(setting, difference.lngChannel, shown))
      arrNames.insert(control.strName);
  }
  return arrNames;
}

std::string Both(const Setting &setting, Long lngChannel, const Setup &shown, const Setup &held) {
  const auto difference = DifferenceIn(setting, lngChannel, shown, held);
  return difference ? difference->strFirst + " shown, " + difference->strSecond + " held" : "no difference";
}

std::string PanelReference::CheckMarks(const Setup &held) const {
  QCoreApplication::sendPostedEvents();
  const Setup shown = Panel(m_session).ShownSetup();
  const auto arrDiffer = Differing(shown, held);
  std::set<std::string> arrWrong;
  for (const Setting &setting : Settings())
    for (const Long lngChannel : setting.Channels())
      for (const auto &[ePage, strName] : ControlsOf(setting, lngChannel, shown)) {
        const bool fMarked = m_session->Get<QWidget>(strName).toolTip().contains(QLatin1String("Instrument: "));
        const bool fRounded = IsRounded(setting, lngChannel, held);
        if (fMarked ? !fRounded && !arrDiffer.contains(strName) : !fRounded && arrDiffer.contains(strName))
          arrWrong.insert((fMarked ? "marked without reason: " : "not marked: ") + strName + ", " +
                          Both(setting, lngChannel, shown, held));
      }
  return arrWrong.empty() ? "" : *arrWrong.begin();
}

bool PanelReference::IsRounded(const Setting &setting, Long lngChannel, const Setup &held) const {
  const Setup &known = Panel(m_session).Known().Values();
  // An edge that an instrument cannot make is taken, and becomes the nearest that it can.
  const bool fEdge = setting.strKey == "timing.leading" || setting.strKey == "timing.trailing";
  return DifferenceIn(setting, lngChannel, known, held) &&
         (fEdge || !DifferenceIn(setting, lngChannel, known, held, Resolution));
}

// ---- Steps ----

std::string PanelReference::FirstChange() const {
  const std::vector<std::string> arrShown = Shown(m_session);
  const auto [now, before] = std::ranges::mismatch(arrShown, m_arrBefore);
  return before == m_arrBefore.end() ? "" : " " + *before + " -> " + *now;
}

PanelReference::Pages PanelReference::ChangedPages() const {
  Pages pages;
  const std::vector<std::string> arrShown = Shown(m_session);
  for (std::size_t i = 1; i < arrShown.size(); ++i)
    if (SettingIn(arrShown[i]) != SettingIn(m_arrBefore[i])) pages.set(static_cast<std::size_t>(arrShown[i][0] - '0'));
  if (Panel(m_session).state.mfTeEqLe != m_arrCoupled) pages.set(ePageTiming);
  return pages;
}

std::string PanelReference::FollowStep(const Done &done, Pages &marks) {
  const auto index = static_cast<std::size_t>(Panel(m_session).undo->Stack().index());
  const std::string strRun = std::exchange(m_strRun, done.kind == Action::StepField ? done.strControl : "");
  if (done.kind == Action::Undo || done.kind == Action::Redo) {
    const std::size_t from = m_step;
    if (done.kind == Action::Undo && m_step > 0) --m_step;
    if (done.kind == Action::Redo && m_step + 1 < m_steps.size()) ++m_step;
    if (m_step != from) {
      marks = m_steps[std::max(from, m_step)].marks;
      if (!m_fAutoOutput && Outputs(m_session) != m_arrOutputs) marks.set(ePageTiming).set(ePageLevels);
    }
    if (index != m_step) return "step " + std::to_string(index) + " instead of " + std::to_string(m_step);
    return m_step == from ? "" : CheckShown();
  }
  const bool fRun = !strRun.empty() && strRun == m_strRun;
  if (index == m_step + 1) {
    m_steps.resize(++m_step);
    m_steps.push_back({Shown(m_session), marks});
  } else if (index == m_step && fRun && m_step > 0) {
    m_steps[m_step].arrShown = Shown(m_session);
  } else if (index + 1 == m_step && fRun) {
    m_steps.resize(m_step--);
  } else if (index != m_step) {
    return "step " + std::to_string(index) + " behind step " + std::to_string(m_step);
  } else if (done.kind != Action::ShowPage && ChangedPages().any()) {
    return "a change of settings that is no step:" + FirstChange();
  }
  return {};
}

std::string PanelReference::CheckShown() const {
  const std::vector<std::string> arrNow = Shown(m_session);
  const std::vector<std::string> &arrThen = m_steps[m_step].arrShown;
  const auto [now, then] = std::ranges::mismatch(arrNow, arrThen);
  if (now == arrNow.end() && then == arrThen.end()) return {};
  return "shows " + (now == arrNow.end() ? "less" : *now) + " instead of " + (then == arrThen.end() ? "less" : *then) +
         " at step " + std::to_string(m_step);
}

std::string PanelReference::WalkBack() {
  const std::size_t end = m_steps.size() - 1;
  while (m_step > 0) {
    --m_step;
    m_session.panel->undo();
    if (std::string strWrong = CheckShown(); !strWrong.empty()) return "undone: " + strWrong;
  }
  while (m_step < end) {
    ++m_step;
    m_session.panel->redo();
    if (std::string strWrong = CheckShown(); !strWrong.empty()) return "redone: " + strWrong;
  }
  return {};
}

}  // namespace tarvik::test
