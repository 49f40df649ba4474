#pragma once

#include <QAbstractItemView>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "PanelStart.h"
#include "RecordingHost.h"
#include "StandInDriver.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "instrument/clsInstrInterface.h"
#include "panel/ModePage.h"
#include "panel/Panel.h"
#include "panel/PatternPage.h"
#include "panel/TimingPage.h"
#include "platform/CommandButton.h"
#include "platform/ListView.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"

namespace tarvik::test {

/// The instrument class, which keeps what the pages send and what came of it.
class KeepingInstr : public clsInstrInterface {
 public:
  using clsInstrInterface::TransActive;

  Boolean SetMode(const udtModeInfo &ModeInfo) override {
    mode = ModeInfo;
    return fAnswer = clsInstrInterface::SetMode(ModeInfo);
  }
  Boolean SetTiming(const udtTimingInfo &TimingInfo) override {
    timing = TimingInfo;
    return fAnswer = clsInstrInterface::SetTiming(TimingInfo);
  }
  Boolean SetLimits(const udtLimitsInfo &LimitsInfo) override {
    limits = LimitsInfo;
    return fAnswer = clsInstrInterface::SetLimits(LimitsInfo);
  }
  Boolean GetMode(udtModeInfo &ModeInfo) override { return fAnswer = clsInstrInterface::GetMode(ModeInfo); }
  Boolean GetTiming(udtTimingInfo &TimingInfo) override { return fAnswer = clsInstrInterface::GetTiming(TimingInfo); }
  Boolean Output(Integer intChan, Boolean fState, Boolean fIsComplement) override {
    arrOutputs.push_back(std::to_string(intChan) + (fState ? " on" : " off") + (fIsComplement ? " inverse" : ""));
    return fAnswer = clsInstrInterface::Output(intChan, fState, fIsComplement);
  }
  Boolean SetPatternArray(Long eChan, ByteArray &arr, Long lngPatternLen) override {
    arrRows.push_back("write " + std::to_string(eChan) + " " + ToHex(arr.Elements()) + " " +
                      std::to_string(lngPatternLen));
    return fAnswer = clsInstrInterface::SetPatternArray(eChan, arr, lngPatternLen);
  }
  Boolean GetPatternArray(Long eChan, ByteArray &arr, Long &lngPatternLen) override {
    arrRows.push_back("read " + std::to_string(eChan));
    const Boolean fRead = clsInstrInterface::GetPatternArray(eChan, arr, lngPatternLen);
    // The instruments count the bytes from 1, the stand-in from 0.
    arr = ByteArray(1, arr.Elements());
    return fRead;
  }

  udtModeInfo mode;
  udtTimingInfo timing;
  udtLimitsInfo limits;
  std::vector<std::string> arrOutputs, arrRows;
  Boolean fAnswer;
};

/// A shown panel between a recording host and a stand-in driver with one instrument, used as a user does.
class PanelSession {
 public:
  struct Start {
    Json config = Json::object();
    bool fAutoDownload = true;
    bool fAutoOutput = true;
    bool fOpen = true;
  };

  PanelSession() : PanelSession(Start{}) {}
  explicit PanelSession(const Start &start) {
    gobjInstr().reset();
    driver.Add("Alpha", start.config);
    instr = std::make_shared<KeepingInstr>();
    gobjInstr() = instr;
    host.settings[{"Config", "AutoDownload"}] = start.fAutoDownload ? "1" : "0";
    host.settings[{"Config", "AutoOutputOnOff"}] = start.fAutoOutput ? "1" : "0";
    host.settings[{"Config", "WorkWithBoxes"}] = "1";
    panel = std::make_unique<TarvikGUI>();
    panel->resize(panel->sizeHint());
    ShowAndStart(*panel);
    if (start.fOpen) Open();
    Forget();
  }
  PanelSession(const PanelSession &) = delete;
  PanelSession &operator=(const PanelSession &) = delete;
  ~PanelSession() {
    panel.reset();
    gobjInstr().reset();
  }

  void Forget() {
    host.arrEntries.clear();
    driver.arrTrace.clear();
    instr->arrOutputs.clear();
    instr->arrRows.clear();
  }

  template <class T>
  T &Get(const char *strName) const {
    T *control = dynamic_cast<T *>(panel->findChild<QWidget *>(QString::fromLatin1(strName)));
    if (!control) throw std::invalid_argument(strName);
    return *control;
  }
  EngrSpin &Field(const char *strName) const { return Get<EngrSpin>(strName); }
  CboEnhanced &List(const char *strName) const { return Get<CboEnhanced>(strName); }
  PanelState &State() const { return TarvikGUI::Panel::Of(*panel).state; }
  TabStates StateOf(TabNumEnum ePage) const { return State().meTabState[static_cast<std::size_t>(ePage)]; }

  // What the user does.

  void Open() {
    auto &list = Get<ListView>("lvwInstruments");
    list.setCurrentItem(list.topLevelItem(0));
    QTest::keyClick(&list, Qt::Key_Return);
  }
  void ShowPage(TabNumEnum ePage) {
    QTabBar &tabs = *Get<QTabWidget>("tabMain").tabBar();
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(ePage).center());
  }
  void Click(const char *strName) { QTest::mouseClick(&Get<QWidget>(strName), Qt::LeftButton); }
  void Choose(const char *strName) {
    auto &button = Get<QWidget>(strName);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
  }
  void Take(const char *strName, int intItem) {
    auto &list = *List(strName).findChild<QComboBox *>();
    list.showPopup();
    list.view()->setCurrentIndex(list.model()->index(intItem, 0));
    QTest::keyClick(list.view(), Qt::Key_Return);
  }
  void Type(const char *strName, const char *strText) {
    auto &text = *Field(strName).findChild<QLineEdit *>();
    text.setFocus();
    text.selectAll();
    QTest::keyClicks(&text, QString::fromLatin1(strText));
    QTest::keyClick(&text, Qt::Key_Return);
  }
  void TakeMenu(const char *strName, const char *strKey) {
    Get<QWidget>(strName).findChild<QAction *>(QString::fromLatin1(strKey))->trigger();
  }

  /// "text=item data" of each item.
  std::vector<std::string> Items(const char *strName) const {
    const CboEnhanced &list = List(strName);
    std::vector<std::string> arrItems;
    for (Long i = 0; i < list.ListCount(); ++i)
      arrItems.push_back(list.ItemText(i) + "=" + std::to_string(list.ItemData(i)));
    return arrItems;
  }

  RecordingHost host;
  StandInDriver driver;
  std::shared_ptr<KeepingInstr> instr;
  std::unique_ptr<TarvikGUI> panel;
};

}  // namespace tarvik::test
