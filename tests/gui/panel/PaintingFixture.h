#pragma once

#include <gtest/gtest.h>

#include <QCursor>
#include <QEvent>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "PanelSession.h"
#include "platform/Highlight.h"
#include "platform/PlainControls.h"
#include "platform/QtHost.h"

namespace tarvik::test {

/// The toolkit's host with the boxes answered at once and settings that nobody keeps.
class PaintingHost : public QtHost {
 public:
  PaintingHost() : m_before(SetHost(this)) {}
  ~PaintingHost() override { SetHost(m_before); }
  PaintingHost(const PaintingHost &) = delete;
  PaintingHost &operator=(const PaintingHost &) = delete;

  BoxAnswer MsgBox(const std::string &strText, BoxIcon, BoxButtons buttons, const std::string &) override {
    arrBoxes.push_back(strText);
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
  }
  std::string GetSetting(const std::string &, const std::string &, const std::string &strKey,
                         const std::string &strDefault) override {
    // The instrument of the sessions is a box.
    return strKey == "WorkWithBoxes" ? "1" : strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}

  std::vector<std::string> arrBoxes;

 private:
  Host *m_before;
};

/// What a widget shows, as written now and as painted last.
class Shown : public QObject {
 public:
  Shown(QWidget &widget, std::function<std::string()> written)
      : m_written(std::move(written)), m_strPainted(m_written()) {
    widget.installEventFilter(this);
  }
  std::string Written() const { return m_written(); }
  const std::string &Painted() const { return m_strPainted; }
  int Paints() const { return m_intPaints; }
  /// Each change of what was painted.
  const std::vector<std::string> &History() const { return m_arrHistory; }
  void ForgetHistory() { m_arrHistory.clear(); }

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() != QEvent::Paint) return false;
    m_strPainted = m_written();
    ++m_intPaints;
    if (m_arrHistory.empty() || m_arrHistory.back() != m_strPainted) m_arrHistory.push_back(m_strPainted);
    return false;
  }

 private:
  std::function<std::string()> m_written;
  std::string m_strPainted;
  int m_intPaints = 0;
  std::vector<std::string> m_arrHistory;
};

inline bool IsBusy() {
  const QCursor *cursor = QGuiApplication::overrideCursor();
  return cursor && cursor->shape() == Qt::WaitCursor;
}

/// A panel on the toolkit's own host, watched at each call of its driver.
class Painting : public testing::Test {
 protected:
  Painting() {
    session.driver.Find("Alpha")->settings.rows = {PatternRow{{1}, 8}, PatternRow{{2}, 8}, PatternRow{{3}, 8}};
    QCoreApplication::processEvents();
  }
  std::string StateOfRow() const {
    auto &list = session.Get<ListView>("lvwInstruments");
    if (list.Count() == 0) return "none";
    return std::string(list.Item(0)->Selected() ? "selected" : "") + (list.Item(0)->Checked() ? " ticked" : "");
  }
  /// Collects each change of what is painted, as it stands when the driver is called.
  void Watch(std::vector<std::string> &arrSeen) {
    session.driver.OnTrace = [&](const std::string &strCall) {
      ++intCalls;
      EXPECT_EQ(row.Painted(), row.Written()) << strCall;
      EXPECT_EQ(status.Painted(), status.Written()) << strCall;
      EXPECT_EQ(highlight.Painted(), highlight.Written()) << strCall;
      const std::string strSeen =
          row.Painted() + ", " + status.Painted() + ", " + highlight.Painted() + (IsBusy() ? ", busy" : "");
      if (arrSeen.empty() || arrSeen.back() != strSeen) arrSeen.push_back(strSeen);
    };
  }

  PanelSession session{{.fAutoDownload = true, .fOpen = false}};
  PaintingHost host;
  int intCalls = 0;
  Shown row{*session.Get<ListView>("lvwInstruments").viewport(), [this] { return StateOfRow(); }};
  Shown status{*session.Get<DisplayBox>("txtStatus").viewport(),
               [this] { return session.Get<DisplayBox>("txtStatus").Text(); }};
  Shown highlight{session.Get<Highlight>("picDownloadHighlight"), [this] {
                    return std::string(session.Get<Highlight>("picDownloadHighlight").Visible() ? "lit" : "dark");
                  }};
};

}  // namespace tarvik::test
