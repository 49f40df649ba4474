#include "Tour.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QRadioButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>

#include "TourUser.h"
#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "panel/TarvikGUI.h"
#include "platform/PlainControls.h"
#include "platform/QtHost.h"

namespace tarvik {

namespace {

/// A host that answers questions from a script and prints what it was asked. It touches none of the user's settings.
class TourHost : public QtHost {
 public:
  std::deque<std::string> Answers;

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override {
    Messages().Add(Now(), icon, strText);
    const QString text = QString::fromStdString(strText).replace(QStringLiteral("\r\n"), QStringLiteral(" / "));
    std::printf("      box \"%s\": %s\n", strTitle.c_str(), qPrintable(text));
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
  }
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle, const std::string &) override {
    std::string strAnswer;
    if (!Answers.empty()) {
      strAnswer = Answers.front();
      Answers.pop_front();
    }
    std::printf("      question \"%s\": %s-> %s\n", strTitle.c_str(), strPrompt.c_str(), strAnswer.c_str());
    return strAnswer;
  }
  void Beep() override {}
  /// For the picture: that of whoever runs the tour is nobody's business.
  std::string ErrorLogPath() const override { return "~/.local/state/tarvikvi/tarvikerr.txt"; }
  void AppendToFile(const std::string &, std::string_view strBytes) override {
    QtHost::AppendToFile(QtHost::ErrorLogPath(), strBytes);
  }
  std::string GetSetting(const std::string &, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override {
    const auto found = m_settings.find(strSection + "/" + strKey);
    return found == m_settings.end() ? strDefault : found->second;
  }
  void SaveSetting(const std::string &, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override {
    m_settings[strSection + "/" + strKey] = strValue;
  }

 private:
  std::map<std::string, std::string> m_settings;
};

enum Tabs { TabInstr, TabMode, TabTiming, TabLevels, TabPattern, TabLimits, TabTrigLev, TabConfig, TabOptions };

class Tour {
 public:
  Tour(TarvikGUI &panel, TourHost &host, const QDir &folder)
      : m_panel(panel), m_host(host), m_folder(folder), m_user(panel) {}

  int Run() {
    ListAndOpen();
    FirstPulse();
    PllReference();
    Setups();
    Timing();
    Modes();
    Patterns();
    OtherPages();
    Messages();
    EndSession();
    std::printf("%d steps, %d went wrong\n", m_intSteps, m_intWrong);
    return m_intWrong == 0 ? 0 : 1;
  }

 private:
  void Step(const QString &text) { std::printf("%3d. %s\n", ++m_intSteps, qPrintable(text)); }

  void Show(const QString &what, const QString &is) { std::printf("      %s: %s\n", qPrintable(what), qPrintable(is)); }

  void Expect(bool fHolds, const char *strWhat) {
    if (fHolds) return;
    ++m_intWrong;
    std::printf("      WRONG: %s\n", strWhat);
  }

  void Picture(const QString &name) { Picture(name, m_panel); }
  void Picture(const QString &name, QWidget &widget) {
    TourUser::Settle();
    const QString path = m_folder.filePath(name + QStringLiteral(".png"));
    Expect(widget.grab().save(path), "the picture could be written");
    Show(QStringLiteral("picture"), path);
  }

  QString Field(const QString &name) {
    const auto &field = m_user.Find<EngrSpin>(name);
    const auto *units = field.findChild<QLabel *>(QStringLiteral("lblUnits"));
    return QString::fromStdString(field.Text()) + QLatin1Char(' ') + units->text();
  }

  std::string Status() { return m_user.Find<DisplayBox>(QStringLiteral("txtStatus")).Text(); }

  void Upload() { m_user.Click(QStringLiteral("cmdUpload")); }
  void Download() { m_user.Click(QStringLiteral("cmdDownload")); }

  void ListAndOpen() {
    Step(QStringLiteral("The panel starts, connects and lists the instruments"));
    Show(QStringLiteral("status"), QString::fromStdString(Status()));
    const auto &list = m_user.Find<QTreeWidget>(QStringLiteral("lvwInstruments"));
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
      const QTreeWidgetItem &row = *list.topLevelItem(i);
      Show(QStringLiteral("instrument"),
           QStringLiteral("%1, slot %2, address %3, model %4").arg(row.text(0), row.text(1), row.text(2), row.text(3)));
    }
    Expect(list.topLevelItemCount() > 0, "the driver knows instruments");
    if (list.topLevelItemCount() == 0) return;
    Step(QStringLiteral("A tick opens the first one and reads all of its settings"));
    m_user.Tick(0);
    Show(QStringLiteral("status"), QString::fromStdString(Status()));
    Expect(Status().starts_with("Online with "), "the session is open");
    Picture(QStringLiteral("1-instr"));
  }

  void FirstPulse() {
    Step(QStringLiteral("A first pulse: every 10 us, 2 us long, from 0 to 1 V"));
    m_user.ClickTab(TabTiming);
    m_user.Enter(QStringLiteral("esPeriodOrFreq"), QStringLiteral("10u"));
    m_user.Enter(QStringLiteral("esWidth(0)"), QStringLiteral("2u"));
    Picture(QStringLiteral("first-1-timing"));
    m_user.ClickTab(TabLevels);
    m_user.Enter(QStringLiteral("esLevelHigh(0)"), QStringLiteral("1"));
    Picture(QStringLiteral("first-2-levels"));
    Upload();
    Step(QStringLiteral("The output on, which acts at once; all is read back"));
    m_user.Click(QStringLiteral("optChannel1Output(2)"));
    Download();
    Picture(QStringLiteral("first-3-output"));
    const auto value = [this](const char *strName) {
      return m_user.Find<EngrSpin>(QString::fromLatin1(strName)).Value();
    };
    const auto isOn = [this] { return m_user.Find<QRadioButton>(QStringLiteral("optChannel1Output(2)")).isChecked(); };
    Expect(value("esPeriodOrFreq") == 10e-6, "the period came back");
    Expect(value("esWidth(0)") == 2e-6, "the width came back");
    Expect(value("esLevelHigh(0)") == 1, "the level came back");
    Expect(isOn(), "the output is on");
    Step(QStringLiteral("All outputs off; then the instrument as after power-up"));
    Expect(m_panel.AllOutputsOff() && !isOn(), "the outputs are off");
    m_user.ClickTab(TabConfig);
    m_user.Click(QStringLiteral("cmdResetInstr"));
    Show(QStringLiteral("width"), Field(QStringLiteral("esWidth(0)")));
  }

  void PllReference() {
    Step(QStringLiteral("The Config page tells who the instrument is"));
    m_user.ClickTab(TabConfig);
    for (const char *strName : {"txtProductId", "txtSerialNumber", "txtVersion", "txtOptions"})
      Show(QString::fromLatin1(strName + 3), m_user.Find<DisplayField>(QString::fromLatin1(strName)).text());
    Step(QStringLiteral("PLL reference to CLK-IN, 10 MHz; upload; spoil it; download"));
    auto &frequency = m_user.Find<CboEnhanced>(QStringLiteral("cboPllRefFreq"));
    m_user.Choose(QStringLiteral("cboPllRefSource"), 1);
    m_user.Choose(QStringLiteral("cboPllRefFreq"), 1);
    Upload();
    m_user.Choose(QStringLiteral("cboPllRefFreq"), 0);
    Download();
    Show(QStringLiteral("read back"), QString::fromStdString(frequency.Text()));
    Expect(frequency.Text() == "10 MHz", "the reference came back");
    Picture(QStringLiteral("8-config"));
  }

  void Setups() {
    const QTemporaryDir folder;
    const QString strFile = folder.filePath(QStringLiteral("demo.json"));
    Step(QStringLiteral("What differs from the instrument carries a mark"));
    m_user.ClickTab(TabLevels);
    m_user.Enter(QStringLiteral("esLevelHigh(0)"), QStringLiteral("1.2"));
    m_user.ClickTab(TabTiming);
    m_user.Enter(QStringLiteral("esWidth(0)"), QStringLiteral("300n"));
    m_user.Enter(QStringLiteral("esDelay(1)"), QStringLiteral("250n"));
    Picture(QStringLiteral("10-marks"));
    Show(QStringLiteral("tool tip"), m_user.Find<QWidget>(QStringLiteral("esWidth(0)")).toolTip());
    Step(QStringLiteral("The settings go to a file; a download; they come from the file"));
    Expect(m_panel.SaveSetup(strFile), "the setup was saved");
    Download();
    Show(QStringLiteral("width of the instrument"), Field(QStringLiteral("esWidth(0)")));
    Expect(m_panel.OpenSetup(strFile), "the setup was opened");
    Show(QStringLiteral("width of the setup"), Field(QStringLiteral("esWidth(0)")));
    Expect(m_user.Find<EngrSpin>(QStringLiteral("esWidth(0)")).Value() == 300e-9, "the width came from the file");
    Step(QStringLiteral("Panel and instrument side by side; the first difference is taken over"));
    m_panel.CompareSettings();
    m_user.Click(QStringLiteral("cmdReadInstrument"));
    auto &table = m_user.Find<QTableWidget>(QStringLiteral("tblDifferences"));
    Show(QStringLiteral("differences"), QString::number(table.rowCount()));
    table.selectRow(0);
    auto &dialog = m_user.Find<QWidget>(QStringLiteral("CompareDialog"));
    dialog.resize(720, 320);
    Picture(QStringLiteral("10-compare"), dialog);
    const int intBefore = table.rowCount();
    m_user.Click(QStringLiteral("cmdTakeInstrument"));
    Expect(table.rowCount() == intBefore - 1, "one difference less");
    dialog.close();
    Download();
  }

  void Timing() {
    Step(QStringLiteral("The Timing page in period form"));
    m_user.ClickTab(TabTiming);
    m_user.Enter(QStringLiteral("esPeriodOrFreq"), QStringLiteral("10u"));
    m_user.Enter(QStringLiteral("esDelay(0)"), QStringLiteral("1u"));
    Picture(QStringLiteral("3-timing-period"));
    Step(QStringLiteral("Width to 2.5 us; upload; spoil it to 1 us; download"));
    m_user.Enter(QStringLiteral("esWidth(0)"), QStringLiteral("2.5u"));
    Upload();
    m_user.Enter(QStringLiteral("esWidth(0)"), QStringLiteral("1u"));
    Show(QStringLiteral("spoiled width"), Field(QStringLiteral("esWidth(0)")));
    Download();
    Show(QStringLiteral("width read back"), Field(QStringLiteral("esWidth(0)")));
    Expect(m_user.Find<EngrSpin>(QStringLiteral("esWidth(0)")).Value() == 2.5e-6, "the width came back");
    History();
    Step(QStringLiteral("The same as a frequency"));
    m_user.Click(QStringLiteral("cmdPeriodOrFreq"));
    Show(QStringLiteral("frequency"), Field(QStringLiteral("esPeriodOrFreq")));
    Picture(QStringLiteral("3-timing-frequency"));
    m_user.Click(QStringLiteral("cmdPeriodOrFreq"));
    Step(QStringLiteral("Double pulses on channel 1"));
    m_user.ClickTab(TabMode);
    m_user.Choose(QStringLiteral("cboPulseType1"), 1);
    m_user.ClickTab(TabTiming);
    m_user.Enter(QStringLiteral("esDelay(0)"), QStringLiteral("5u"));
    Picture(QStringLiteral("3-timing-double"));
    Upload();
    m_user.ClickTab(TabMode);
    m_user.Choose(QStringLiteral("cboPulseType1"), 0);
  }

  void History() {
    Step(QStringLiteral("Undo brings back what the download overwrote; redo; the list of steps"));
    const auto width = [this] { return m_user.Find<EngrSpin>(QStringLiteral("esWidth(0)")).Value(); };
    m_panel.undo();
    Expect(width() == 1e-6, "the typed width is back");
    m_panel.redo();
    Expect(width() == 2.5e-6, "the width that was read is back");
    m_panel.ShowHistory();
    WindowPicture("HistoryWindow", "history");
  }

  void Messages() {
    Step(QStringLiteral("The list of messages"));
    m_user.Click(QStringLiteral("cmdCheckErrors"));
    m_user.Click(QStringLiteral("cmdMessages"));
    WindowPicture("MessageWindow", "messages");
  }

  /// Of a window beside the panel, which is closed then.
  void WindowPicture(const char *strWindow, const char *strName) {
    TourUser::Settle();
    auto &window = m_user.Find<QWidget>(QString::fromLatin1(strWindow));
    const QString path = m_folder.filePath(QString::fromLatin1(strName) + QStringLiteral(".png"));
    Expect(window.grab().save(path), "the picture could be written");
    Show(QStringLiteral("picture"), path);
    window.close();
    TourUser::Settle();
  }

  void Modes() {
    Step(QStringLiteral("Triggered bursts of 12 pulses; upload; spoil; download"));
    m_user.Click(QStringLiteral("optTriggerMode(1)"));
    m_user.Click(QStringLiteral("optPulseMode(1)"));
    m_user.Enter(QStringLiteral("esBurstLength"), QStringLiteral("12"));
    Picture(QStringLiteral("2-mode"));
    Upload();
    m_user.Click(QStringLiteral("optTriggerMode(0)"));
    m_user.Enter(QStringLiteral("esBurstLength"), QStringLiteral("99"));
    Download();
    Expect(m_user.Find<QRadioButton>(QStringLiteral("optTriggerMode(1)")).isChecked(), "the trigger mode came back");
    Expect(m_user.Find<EngrSpin>(QStringLiteral("esBurstLength")).Value() == 12, "the burst length came back");
    Step(QStringLiteral("Pattern mode, continuous"));
    m_user.Click(QStringLiteral("optTriggerMode(0)"));
    m_user.Click(QStringLiteral("optPulseMode(2)"));
    Upload();
  }

  ByteArray Bits(Long eChannel) {
    auto &editor = m_user.Find<BitPattern>(QStringLiteral("BitPattern1"));
    ByteArray arr(1, std::vector<Byte>(2048));
    Long lngSize = 0;
    editor.GetPattern(eChannel, arr, lngSize);
    arr.Elements().resize(static_cast<std::size_t>(lngSize));
    return arr;
  }

  void Patterns() {
    Step(QStringLiteral("A pattern of 1024 bits: a clock on channel 1, a pseudo-random sequence on channel 2"));
    m_user.ClickTab(TabPattern);
    m_user.Enter(QStringLiteral("esLast"), QStringLiteral("1024"));
    m_user.Enter(QStringLiteral("esAddress"), QStringLiteral("1"));
    m_host.Answers = {"8", "9"};
    m_user.TakeMenu(QStringLiteral("toolPopup(0)"), QStringLiteral("Clock/n"));
    m_user.TakeMenu(QStringLiteral("toolPopup(1)"), QStringLiteral("PRBS"));
    Picture(QStringLiteral("5-pattern"));
    m_user.Click(QStringLiteral("cmdNumOrGraph"));
    Picture(QStringLiteral("5-pattern-numerical"));
    m_user.Click(QStringLiteral("cmdNumOrGraph"));
    const auto clock = Bits(1).Elements(), prbs = Bits(2).Elements();
    Step(QStringLiteral("Upload; clear both; download"));
    Upload();
    m_user.TakeMenu(QStringLiteral("toolPopup(2)"), QStringLiteral("Fill0"));
    Expect(Bits(1).Elements() != clock, "the editor was cleared");
    Download();
    const bool fBack = Bits(1).Elements() == clock && Bits(2).Elements() == prbs;
    Show(QStringLiteral("bits read back"), fBack ? QStringLiteral("as they were sent") : QStringLiteral("different"));
    Expect(fBack, "the bits came back");
  }

  void OtherPages() {
    Step(QStringLiteral("The remaining pages"));
    const struct {
      int intTab;
      const char *strName;
    } pages[] = {
        {TabLevels, "4-levels"}, {TabLimits, "6-limits"}, {TabTrigLev, "7-trig-lev"}, {TabOptions, "9-options"}};
    for (const auto &page : pages) {
      m_user.ClickTab(page.intTab);
      Picture(QString::fromLatin1(page.strName));
    }
  }

  void EndSession() {
    Step(QStringLiteral("The tick is taken away"));
    m_user.ClickTab(TabInstr);
    m_user.Tick(0);
    Show(QStringLiteral("status"), QString::fromStdString(Status()));
    Expect(Status() == "Offline", "the session is closed");
  }

  TarvikGUI &m_panel;
  TourHost &m_host;
  QDir m_folder;
  TourUser m_user;
  int m_intSteps = 0;
  int m_intWrong = 0;
};

}  // namespace

int RunTour(const QString &folder) {
  const QDir dir(folder);
  if (!dir.mkpath(QStringLiteral("."))) {
    std::fprintf(stderr, "cannot make the folder %s\n", qPrintable(folder));
    return 1;
  }
  TourHost host;
  SetHost(&host);
  int intResult = 0;
  {
    TarvikGUI panel;
    panel.resize(panel.sizeHint());
    panel.show();
    TourUser::Settle();
    intResult = Tour(panel, host, dir).Run();
    panel.hide();
  }
  SetHost(nullptr);
  return intResult;
}

}  // namespace tarvik
