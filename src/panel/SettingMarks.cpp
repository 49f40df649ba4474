#include "panel/SettingMarks.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QTabBar>
#include <utility>

#include "controls/CboEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/MarkLayer.h"
#include "panel/SettingControls.h"
#include "platform/ToolPopup.h"
#include "settings/SetupDifferences.h"
#include "support/ActionEnd.h"
#include "support/Host.h"
#include "support/RunTimeError.h"

namespace tarvik {

namespace {

/// What a page shows follows also from the pages that it is listed with.
struct Dependence {
  TabNumEnum eFrom, eTo;
};
constexpr Dependence Dependences[] = {
    {ePageMode, ePageTiming},   {ePageMode, ePagePattern}, {ePageTiming, ePageLevels},
    {ePageLevels, ePageTiming}, {ePagePattern, ePageMode},
};

/// Pixels between the edge of a tab and its corner.
constexpr int TabMargin = 3;

std::size_t Number(Long lngPage) { return static_cast<std::size_t>(lngPage); }

}  // namespace

SettingMarks::SettingMarks(TabControl &tabs, TakeShown takeShown) : m_tabs(tabs), m_takeShown(std::move(takeShown)) {
  for (Long lngPage = 0; lngPage < eNumPages; ++lngPage) WatchPage(static_cast<TabNumEnum>(lngPage));
  // A page's record carries settings that other pages show: the kind of pulses.
  m_known.Changed.Connect([this](TabNumEnum) { Touch(eAllPages); });
  // Some changes are told by no control: a bit that is typed in the pattern.
  m_actionConnection = ActionEnded().ConnectScoped([this](const void *) { Touch(eCurrPage); });
  m_tabLayer = new MarkLayer(*m_tabs.tabBar(), [bar = m_tabs.tabBar(), this] { return TabCorners(*bar); });
}

SettingMarks::~SettingMarks() {
  // The controls may outlive the marks, and with them the layers.
  delete m_tabLayer;
  for (const auto &layer : m_arrLayers) delete layer;
}

// ---- What changes ----

void SettingMarks::WatchPage(TabNumEnum ePage) {
  QWidget &sheet = *m_tabs.widget(ePage);
  const auto touch = [this, ePage] { Touch(ePage); };
  for (const auto *field : sheet.findChildren<EngrSpin *>()) connect(field, &EngrSpin::valueChanged, this, touch);
  for (const auto *list : sheet.findChildren<CboEnhanced *>())
    connect(list, &CboEnhanced::currentIndexChanged, this, touch);
  for (auto *button : sheet.findChildren<QAbstractButton *>()) {
    if (auto *menu = dynamic_cast<ToolPopup *>(button))
      m_arrMenus.push_back(menu->ButtonMenuClick.ConnectScoped([touch](const std::string &) { touch(); }));
    else
      connect(button, &QAbstractButton::toggled, this, touch);
  }
  m_arrLayers[Number(ePage)] = new MarkLayer(sheet, [this, &sheet, ePage] {
    std::vector<MarkLayer::Corner> arrCorners;
    for (const auto &[strName, note] : m_arrNotes[Number(ePage)])
      for (const MarkLayer::Corner &corner : note->CornersOn(sheet)) arrCorners.push_back(corner);
    return arrCorners;
  });
}

void SettingMarks::Touch(TabNumEnum ePage) {
  if (ePage == eCurrPage) ePage = static_cast<TabNumEnum>(m_tabs.Tab());
  if (ePage == eAllPages)
    m_touched.set();
  else
    m_touched.set(Number(ePage));
  if (std::exchange(m_fPosted, true)) return;
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void SettingMarks::customEvent(QEvent *) { ShowNow(); }

void SettingMarks::SetShown(bool fShown) {
  if (fShown == m_fShown) return;
  m_fShown = fShown;
  TouchAll();
  ShowNow();
}

// ---- What differs ----

void SettingMarks::ShowNow() {
  m_fPosted = false;
  Pages pages = std::exchange(m_touched, {});
  for (const Dependence &dependence : Dependences)
    if (pages[Number(dependence.eFrom)]) pages.set(Number(dependence.eTo));
  if (pages.none()) return;
  const auto arrSentences = SentencesFor(m_fShown ? DifferencesOn(pages) : std::vector<SetupDifference>());
  for (std::size_t page = 0; page < pages.size(); ++page)
    if (pages[page]) ShowPage(page, arrSentences[page]);
  Touched.Raise();
}

std::vector<SetupDifference> SettingMarks::DifferencesOn(const Pages &pages) {
  if (!m_known.KnowsAnything()) return {};
  for (std::size_t page = 0; page < pages.size(); ++page)
    // What the other pages send depends on the mode.
    if (pages[page] || page == ePageMode) IgnoreErrors([&] { m_takeShown(m_shown, static_cast<TabNumEnum>(page)); });
  const char chSeparator = TheHost().DecimalSeparator();
  std::vector<SetupDifference> arrDifferences;
  for (const Setting &setting : Settings()) {
    if (setting.fNotation || !pages[Number(setting.ePage)]) continue;
    for (const Long lngChannel : setting.Channels()) {
      if (!m_known.Knows(setting, lngChannel) || !setting.IsHad(m_shown, lngChannel)) continue;
      if (!setting.IsStored(m_shown, lngChannel) || !setting.IsInUse(m_shown, lngChannel)) continue;
      auto difference = DifferenceIn(setting, lngChannel, m_shown, m_known.Values(), DriverRounding, chSeparator);
      if (difference) arrDifferences.push_back(std::move(*difference));
    }
  }
  return arrDifferences;
}

std::vector<SetupDifference> SettingMarks::AllDifferences() { return DifferencesOn(Pages().set()); }

QWidget *SettingMarks::Find(Long lngPage, const std::string &strName) const {
  return m_tabs.widget(lngPage)->findChild<QWidget *>(QString::fromStdString(strName));
}

std::array<SettingMarks::Sentences, eNumPages> SettingMarks::SentencesFor(
    const std::vector<SetupDifference> &arrDifferences) const {
  std::array<Sentences, eNumPages> arrSentences;
  for (const SetupDifference &difference : arrDifferences) {
    for (const SettingControl &control : ControlsOf(*difference.setting, difference.lngChannel, m_shown)) {
      const QWidget *widget = Find(control.ePage, control.strName);
      if (!widget) continue;
      std::string &strSentences = arrSentences[Number(control.ePage)][control.strName];
      if (!strSentences.empty()) strSentences += "\n";
      strSentences += "Instrument: " + TextInControl(*widget, difference, m_shown, m_known.Values());
    }
  }
  return arrSentences;
}

// ---- What is seen of it ----

void SettingMarks::ShowPage(std::size_t page, const Sentences &sentences) {
  auto &notes = m_arrNotes[page];
  const bool fWasMarked = !notes.empty();
  std::erase_if(notes, [&](const auto &note) { return !sentences.contains(note.first); });
  for (const auto &[strName, strSentence] : sentences) {
    auto &note = notes[strName];
    if (!note) note = std::make_unique<MarkNote>(*Find(static_cast<Long>(page), strName));
    note->Say(QString::fromStdString(strSentence));
  }
  MarkLayer &layer = *m_arrLayers[page];
  layer.setVisible(!notes.empty());
  layer.raise();
  layer.update();
  if (fWasMarked == !notes.empty()) return;
  ShowTabs();
  PageMarked.Raise();
}

void SettingMarks::ShowTabs() {
  bool fAny = false;
  for (Long lngPage = 0; lngPage < eNumPages; ++lngPage) {
    fAny = fAny || IsMarked(lngPage);
    m_tabs.setTabToolTip(lngPage, IsMarked(lngPage) ? tr("Differs from the instrument") : QString());
  }
  m_tabLayer->setVisible(fAny);
  m_tabLayer->raise();
  m_tabLayer->update();
}

bool SettingMarks::IsMarked(Long lngPage) const { return !m_arrNotes[Number(lngPage)].empty(); }

std::vector<MarkLayer::Corner> SettingMarks::TabCorners(const QTabBar &bar) const {
  std::vector<MarkLayer::Corner> arrCorners;
  for (int page = 0; page < bar.count(); ++page)
    if (IsMarked(page))
      arrCorners.push_back(
          {bar.tabRect(page).adjusted(TabMargin, TabMargin, 0, 0), bar.palette().color(QPalette::Window)});
  return arrCorners;
}

}  // namespace tarvik
