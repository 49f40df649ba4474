#pragma once

#include <QObject>
#include <QPointer>
#include <array>
#include <bitset>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "panel/MarkLayer.h"
#include "panel/MarkNote.h"
#include "platform/TabControl.h"
#include "settings/KnownSetup.h"
#include "settings/SetupDifferences.h"
#include "support/Event.h"

class QTabBar;

namespace tarvik {

/// Marks each control whose value differs from what the instrument is known to have: a corner, a sentence in its tool
/// tip, and a corner on the tab of its page. Shows only; no value, no page state and no driver call depends on it.
///
/// Changes are noted while they happen and shown when the message loop turns, so that a transfer of a hundred settings
/// compares once.
class SettingMarks : public QObject {
  Q_OBJECT

 public:
  /// Writes what this page shows into the setup, and which instrument it is.
  using TakeShown = std::function<void(Setup &setup, TabNumEnum ePage)>;

  /// Once the pages have their controls.
  SettingMarks(TabControl &tabs, TakeShown takeShown);
  ~SettingMarks() override;

  /// What is known of the instrument. Whoever changes it touches the pages.
  KnownSetup &Known() { return m_known; }

  /// Values of the page may have changed, or what is known of them.
  void Touch(TabNumEnum ePage);
  void TouchAll() { Touch(eAllPages); }
  /// Compares what was touched at once.
  void ShowNow();

  void SetShown(bool fShown);
  bool AreShown() const { return m_fShown; }

  /// Whether any control of the page carries a mark.
  bool IsMarked(Long lngPage) const;
  /// The settings of all pages in which they differ from what is known; also while no marks are shown.
  std::vector<SetupDifference> AllDifferences();
  /// The first mark of the page came, or the last one went.
  Event<> PageMarked;
  /// What was touched is shown now.
  Event<> Touched;

 protected:
  void customEvent(QEvent *event) override;

 private:
  using Pages = std::bitset<eNumPages>;
  /// The sentences about a page's controls, by the names of these.
  using Sentences = std::map<std::string, std::string>;

  void WatchPage(TabNumEnum ePage);
  std::vector<SetupDifference> DifferencesOn(const Pages &pages);
  std::array<Sentences, eNumPages> SentencesFor(const std::vector<SetupDifference> &arrDifferences) const;
  void ShowPage(std::size_t page, const Sentences &sentences);
  void ShowTabs();
  std::vector<MarkLayer::Corner> TabCorners(const QTabBar &bar) const;
  QWidget *Find(Long lngPage, const std::string &strName) const;

  TabControl &m_tabs;
  const TakeShown m_takeShown;
  KnownSetup m_known;
  Setup m_shown;
  Pages m_touched;
  bool m_fPosted = false;
  bool m_fShown = true;
  std::array<std::map<std::string, std::unique_ptr<MarkNote>>, eNumPages> m_arrNotes;
  std::array<QPointer<MarkLayer>, eNumPages> m_arrLayers;
  QPointer<MarkLayer> m_tabLayer;
  std::vector<Event<const std::string &>::Connection> m_arrMenus;
  Event<const void *>::Connection m_actionConnection;
};

}  // namespace tarvik
