#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include "PanelSession.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "bitpattern/BitPattern.h"
#include "platform/FieldLabel.h"
#include "platform/PictureBox.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

using testing::IsEmpty;

QString Place(const QWidget &widget) {
  QString path = widget.objectName();
  for (const QWidget *parent = widget.parentWidget(); parent; parent = parent->parentWidget())
    if (!parent->objectName().isEmpty() && !parent->objectName().startsWith(QLatin1String("qt_")))
      path = parent->objectName() + QLatin1Char('/') + path;
  return path;
}

/// A panel on an instrument with everything, walked through page by page.
class Look : public testing::Test {
 protected:
  Look() { session.Open("VP-210"); }

  void EnlargeFont(double dblFactor) {
    QFont font = session.panel->font();
    font.setPointSizeF(font.pointSizeF() * dblFactor);
    session.panel->setFont(font);
    session.panel->resize(session.panel->sizeHint());
    QCoreApplication::sendPostedEvents();
  }

  /// Texts that need more room than they have.
  QStringList Clipped() {
    QStringList found;
    for (int intPage = 0; intPage < eNumPages; ++intPage) {
      session->Get<QTabWidget>("tabMain").setCurrentIndex(intPage);
      QCoreApplication::sendPostedEvents();
      for (const QWidget *widget : session.panel->findChildren<QWidget *>()) {
        if (!widget->isVisible()) continue;
        if (const QString missing = Missing(*widget); !missing.isEmpty()) found << Place(*widget) + missing;
      }
    }
    found.removeDuplicates();
    return found;
  }

  /// Controls that reach out of what they stand in.
  QStringList Outside() {
    QStringList found;
    for (int intPage = 0; intPage < eNumPages; ++intPage) {
      session->Get<QTabWidget>("tabMain").setCurrentIndex(intPage);
      QCoreApplication::sendPostedEvents();
      for (const QWidget *widget : session.panel->findChildren<QWidget *>()) {
        if (!widget->isVisible() || !dynamic_cast<const Control *>(widget) || !widget->parentWidget()) continue;
        // Edges are rounded on each level, so a pixel is no overlap.
        const QRect room = widget->parentWidget()->rect().adjusted(-1, -1, 1, 1);
        if (!room.contains(widget->geometry())) found << Place(*widget);
      }
    }
    found.removeDuplicates();
    return found;
  }

  static QString Missing(const QWidget &widget) {
    const QFontMetrics metrics(widget.font());
    const auto shortBy = [&](int intNeeded, int intHas) {
      return intNeeded > intHas ? QStringLiteral(" lacks %1 pixels").arg(intNeeded - intHas) : QString();
    };
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
      if (label->text().isEmpty()) return {};
      const QRect room = label->contentsRect();
      // A field draws a caption that is a little too wide narrower instead of cutting it.
      const double dblSqueeze = dynamic_cast<const FieldLabel *>(label) ? 1.1 : 1;
      if (!label->wordWrap())
        return shortBy(metrics.size(Qt::TextShowMnemonic, label->text()).width(),
                       static_cast<int>(room.width() * dblSqueeze));
      return shortBy(metrics.boundingRect(QRect(0, 0, room.width(), 10000), Qt::TextWordWrap, label->text()).height(),
                     room.height());
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
      if (button->text().isEmpty() || button->objectName().startsWith(QLatin1String("qt_"))) return {};
      if (button->inherits("QToolButton")) return shortBy(button->sizeHint().width(), button->width());
      QStyleOptionButton option;
      option.initFrom(button);
      option.text = button->text();
      const bool fPush = button->inherits("QPushButton");
      const auto element = fPush                           ? QStyle::SE_PushButtonContents
                           : button->inherits("QCheckBox") ? QStyle::SE_CheckBoxContents
                                                           : QStyle::SE_RadioButtonContents;
      const QRect room = button->style()->subElementRect(element, &option, button);
      return shortBy(metrics.size(Qt::TextShowMnemonic, button->text()).width(), room.width());
    }
    if (const auto *box = qobject_cast<const QGroupBox *>(&widget))
      return shortBy(metrics.size(Qt::TextShowMnemonic, box->title()).width(), box->width() - 8);
    return {};
  }

  SimulatorSession session;
};

TEST_F(Look, NoTextIsClippedAtTheDesignSize) { EXPECT_EQ(Clipped().join('\n').toStdString(), ""); }

TEST_F(Look, NoTextIsClippedAtALargerFont) {
  EnlargeFont(1.5);
  EXPECT_EQ(Clipped().join('\n').toStdString(), "");
}

TEST_F(Look, NoTextIsClippedAtTwiceTheFont) {
  EnlargeFont(2);
  EXPECT_EQ(Clipped().join('\n').toStdString(), "");
}

TEST_F(Look, NoTextIsClippedAndNothingStandsOutsideAtAnyZoomThatCanBeRead) {
  for (const Long lngZoom : {75, 80, 90, 110, 125, 150, 175, 250, 300}) {
    session.panel->SetZoom(lngZoom);
    session.panel->resize(session.panel->sizeHint());
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(Clipped().join('\n').toStdString(), "") << lngZoom << " %";
    EXPECT_EQ(Outside().join('\n').toStdString(), "") << lngZoom << " %";
  }
}

TEST_F(Look, EveryControlStandsWithinItsPage) { EXPECT_EQ(Outside().join('\n').toStdString(), ""); }

TEST_F(Look, EveryControlStandsWithinItsPageAtALargerFont) {
  EnlargeFont(1.5);
  EXPECT_EQ(Outside().join('\n').toStdString(), "");
}

TEST_F(Look, TheHighlightsStandOutBehindTheirButtonsAtEveryFont) {
  for (const double dblFactor : {1.0, 1.6}) {
    EnlargeFont(dblFactor);
    for (const auto &[strHighlight, strButton] :
         {std::pair{"picDownloadHighlight", "cmdDownload"}, std::pair{"picUploadHighlight", "cmdUpload"}}) {
      const QRect button = session->Get<QWidget>(strButton).geometry();
      const QRect highlight = session->Get<QWidget>(strHighlight).geometry();
      EXPECT_EQ(highlight.size(), button.size()) << strHighlight;
      EXPECT_GT(highlight.left(), button.left()) << strHighlight;
      EXPECT_GT(highlight.top(), button.top()) << strHighlight;
    }
  }
}

TEST_F(Look, AStyleSheetsFontPlacesTheControlsAsAnyOther) {
  const QFont before = session.panel->font();
  const auto places = [&] {
    QStringList arrPlaces;
    for (const int intPage : {ePageMode, ePageTiming, ePageLevels, ePageLimits, ePageTrigLev, ePageConfig}) {
      session->Get<QTabWidget>("tabMain").setCurrentIndex(intPage);
      QCoreApplication::sendPostedEvents();
      for (const QWidget *widget : session.panel->findChildren<QWidget *>())
        if (widget->isVisible() &&
            (dynamic_cast<const EngrSpin *>(widget) || dynamic_cast<const CboEnhanced *>(widget)))
          arrPlaces << QStringLiteral("%1 %2 %3").arg(widget->objectName()).arg(widget->x()).arg(widget->width());
    }
    arrPlaces.sort();
    return arrPlaces.join('\n').toStdString();
  };
  QFont large = before;
  large.setPointSizeF(18);
  session.panel->setFont(large);
  session.panel->resize(session.panel->sizeHint());
  const std::string strExpected = places();
  session.panel->setFont(before);
  session.panel->setStyleSheet(QStringLiteral("QWidget { font-size: 18pt; }"));
  session.panel->resize(session.panel->sizeHint());
  EXPECT_EQ(places(), strExpected);
}

TEST_F(Look, TheColumnsOfTheInstrumentListGrowWithTheFont) {
  const ListView &list = session->Instruments();
  const int intColumns = list.columnCount();
  std::vector<int> arrBefore;
  for (int i = 0; i < intColumns; ++i) arrBefore.push_back(list.columnWidth(i));
  EnlargeFont(1.6);
  for (int i = 0; i < intColumns; ++i) {
    EXPECT_GT(list.columnWidth(i), 1.4 * arrBefore[static_cast<std::size_t>(i)]) << i;
    const QString header = list.headerItem()->text(i);
    EXPECT_GT(list.columnWidth(i), list.header()->fontMetrics().horizontalAdvance(header) + 8) << i;
  }
}

TEST_F(Look, ThePanelGrowsWithTheFont) {
  const QSize before = session.panel->sizeHint();
  EnlargeFont(2);
  EXPECT_NEAR(session.panel->sizeHint().width(), 2 * before.width(), before.width() * 0.1);
  EXPECT_TRUE(session.panel->rect().contains(session->Get<QWidget>("cmdUpload").geometry()));
}

/// Whatever of a control takes the focus or a click has to say what it is.
bool IsForTheUser(const QWidget &widget) {
  if (!dynamic_cast<const Control *>(&widget)) return false;
  return !dynamic_cast<const Label *>(&widget) && !dynamic_cast<const PlainContainer *>(&widget) &&
         !dynamic_cast<const FrameEnhanced *>(&widget) && !widget.inherits("QTabWidget");
}

QString SpokenName(QWidget &widget) { return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name); }

TEST_F(Look, EveryControlHasAnAccessibleName) {
  QStringList nameless;
  for (QWidget *widget : session.panel->findChildren<QWidget *>()) {
    if (!IsForTheUser(*widget)) continue;
    if (SpokenName(widget->focusProxy() ? *widget->focusProxy() : *widget).isEmpty()) nameless << Place(*widget);
  }
  EXPECT_EQ(nameless.join('\n').toStdString(), "");
}

TEST_F(Look, WhatHasTheFocusHasAnAccessibleName) {
  QStringList nameless;
  for (QWidget *widget : session.panel->findChildren<QWidget *>())
    if ((widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy() && SpokenName(*widget).isEmpty() &&
        !widget->inherits("QTabWidget") && widget->window() == session.panel.get())
      nameless << Place(*widget);
  EXPECT_EQ(nameless.join('\n').toStdString(), "");
}

TEST_F(Look, EveryControlHasAToolTip) {
  QStringList silent;
  for (const QWidget *widget : session.panel->findChildren<QWidget *>()) {
    if (!IsForTheUser(*widget) || widget->objectName().contains(QLatin1String("Highlight"))) continue;
    // The editor's parts have their own, and what they stand in needs none.
    if (dynamic_cast<const BitPattern *>(widget)) continue;
    const QWidget *parent = widget->parentWidget();
    const bool fPart = dynamic_cast<const EngrSpin *>(parent) || dynamic_cast<const CboEnhanced *>(parent);
    if (!fPart && widget->toolTip().isEmpty()) silent << Place(*widget);
  }
  EXPECT_EQ(silent.join('\n').toStdString(), "");
}

TEST_F(Look, EveryLabelHasItsText) {
  EXPECT_EQ(session->Get<Label>("lblStatus").text(), "Status");
  EXPECT_EQ(session->Get<Label>("Label1").text(), "Notes: ");
  EXPECT_EQ(session->Get<Label>("Label2(0)").text(),
            "1. Limits (max. and min.) do not reflect the actual limits of the connected instrument.");
  EXPECT_EQ(session->Get<Label>("Label2(1)").text(),
            "2. Where units are displayed; the unit prefix (and thus the exponent) may be changed by typing the prefix "
            "and base unit immediately after the number (i.e. 3.05uV)");
}

TEST_F(Look, TheTabsHaveTheirCaptions) {
  const auto &tabs = session->Get<QTabWidget>("tabMain");
  const char *const Captions[] = {"I&nstr.", "&Mode/Trg", "&Timing", "&Levels", "&Pattern",
                                  "L&imits", "T&rg-Lev",  "Co&nfig", "&Options"};
  ASSERT_EQ(tabs.count(), 9);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(tabs.tabText(i), QLatin1String(Captions[i]));
}

TEST_F(Look, AllTabsAreInReachWithoutScrolling) {
  const QTabBar &bar = *session->Get<QTabWidget>("tabMain").tabBar();
  for (int i = 0; i < eNumPages; ++i) EXPECT_TRUE(bar.rect().contains(bar.tabRect(i))) << i;
}

struct OrderRow {
  TabNumEnum ePage;
  std::vector<std::string> arrControls;
};

/// The control that a focused widget is or belongs to.
std::string ControlOf(const QWidget *widget) {
  std::string strName;
  for (; widget && !widget->inherits("QTabWidget"); widget = widget->parentWidget()) {
    const bool fControl = dynamic_cast<const Control *>(widget) != nullptr;
    if (fControl && strName.empty()) strName = widget->objectName().toStdString();
    if (dynamic_cast<const EngrSpin *>(widget) || dynamic_cast<const CboEnhanced *>(widget))
      return widget->objectName().toStdString();
  }
  return strName;
}

class TabOrder : public Look, public testing::WithParamInterface<OrderRow> {
 protected:
  /// The controls that a key leads through until it comes to the last one.
  static std::vector<std::string> Walk(QWidget *first, const std::string &strLast, Qt::Key key) {
    first->setFocus();
    std::vector<std::string> arrWalked{ControlOf(first)};
    constexpr int MoreThanAnyPage = 50;
    for (int i = 0; i < MoreThanAnyPage && arrWalked.back() != strLast; ++i) {
      QTest::keyClick(QApplication::focusWidget(), key);
      arrWalked.push_back(ControlOf(QApplication::focusWidget()));
    }
    return arrWalked;
  }
};

TEST_P(TabOrder, LeadsThroughThePageAndTheCommandsAsTheyAreReadBothWays) {
  session.panel->activateWindow();
  session->ShowPage(GetParam().ePage);
  const std::vector<std::string> &arrPage = GetParam().arrControls;
  std::vector<std::string> arrExpected{""};  // the tabs
  arrExpected.insert(arrExpected.end(), arrPage.begin(), arrPage.end());
  for (const char *strCommand : {"txtStatus", "cmdDownload", "cmdUpload", "cmdCheckErrors", "cmdCheckWarnings"})
    arrExpected.emplace_back(strCommand);
  EXPECT_EQ(Walk(session->Get<QTabWidget>("tabMain").tabBar(), "cmdCheckWarnings", Qt::Key_Tab), arrExpected);
  std::reverse(arrExpected.begin(), arrExpected.end());
  EXPECT_EQ(Walk(&session->Get<QWidget>("cmdCheckWarnings"), "", Qt::Key_Backtab), arrExpected);
}

// Of each group of options the one that is chosen.
INSTANTIATE_TEST_SUITE_P(
    Pages, TabOrder,
    testing::Values(
        OrderRow{ePageInstr, {"lvwInstruments", "cmdRefresh"}},
        OrderRow{ePageMode,
                 {"optTriggerMode(0)", "optPulseMode(0)", "cboPulseType1", "cboPulseType2", "cboPeriodSource"}},
        OrderRow{ePageTiming,
                 {"cmdPeriodOrFreq", "esPeriodOrFreq", "esDelay(0)", "esWidth(0)", "esLeadingEdge(0)",
                  "toolPopupTEdge(0)", "optChannel1Output(1)", "optChannel1InvOutput(1)", "esDelay(1)", "esWidth(1)",
                  "esLeadingEdge(1)", "toolPopupTEdge(1)", "optChannel2Output(1)", "optChannel2InvOutput(1)"}},
        OrderRow{ePageLevels,
                 {"cboLevelFormat(0)", "cboLevelUnits(0)", "esLevelHigh(0)", "esLevelLo(0)", "cboOutputImpedance(0)",
                  "esLoadCompensation(0)", "optNormalCompliment(0)", "optChannel1Output(3)", "optChannel1InvOutput(3)",
                  "cboLevelFormat(1)", "cboLevelUnits(1)", "esLevelHigh(1)", "esLevelLo(1)", "cboOutputImpedance(1)",
                  "esLoadCompensation(1)", "optNormalCompliment(2)", "optChannel2Output(3)", "optChannel2InvOutput(3)",
                  "optOutputs(0)"}},
        OrderRow{ePagePattern,
                 {"cmdNumOrGraph", "esAddress", "esLast", "toolPopup(0)", "toolPopup(1)", "toolPopup(2)",
                  "toolPopup(3)", "picWave", "optChannelRzNrz(0)", "optChannelRzNrz(2)"}},
        OrderRow{ePageLimits,
                 {"optLimitsChanel(1)", "esLimitHighVoltage(0)", "esLimitLowVoltage(0)", "esLimitHighCurrent(0)",
                  "esLimitLowCurrent(0)", "optLimitsChanel(3)", "esLimitHighVoltage(1)", "esLimitLowVoltage(1)",
                  "esLimitHighCurrent(1)", "esLimitLowCurrent(1)"}},
        OrderRow{ePageTrigLev,
                 {"optTrigLevelExtIn(0)", "esTrgLevExtInThreshold", "optTrigLevelExtInImp(0)", "optTrigLevelClkIn(0)",
                  "esTrgLevClkInThreshold", "optTrigLevelClkInImp(0)", "optTrigLevelTrigOut(0)",
                  "optTrigLevelStrobeOut(0)", "cboVxiTriggerEnable", "cboVxiTriggerSource"}},
        OrderRow{ePageConfig,
                 {"txtNumChannels", "txtSlot", "txtLogAddr", "txtModelCode", "txtProductId", "txtSerialNumber",
                  "txtVersion", "txtOptions", "cboPllRefSource", "cmdResetInstr", "cmdSelfTest", "cmdCalibrate"}},
        OrderRow{ePageOptions,
                 {"chkAutoErrors", "chkAutoWarnings", "chkAutoDownload", "chkAutoDownOnError", "chkAutoOutputOnOff",
                  "optDownload(0)", "optUpload(0)"}}),
    [](const testing::TestParamInfo<OrderRow> &test) {
      return "Page" + std::to_string(static_cast<int>(test.param.ePage));
    });

TEST_F(Look, AnAccessKeyThatTwoShareLeadsToOneAfterTheOther) {
  session.panel->activateWindow();
  session->ShowPage(ePageInstr);
  const auto press = [&](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key, Qt::AltModifier); };
  const auto page = [&] { return session->Get<QTabWidget>("tabMain").currentIndex(); };
  ASSERT_FALSE(session->Ticked().empty());
  press(Qt::Key_R);
  EXPECT_TRUE(session->Ticked().empty()) << "Refresh ends the session";
  EXPECT_TRUE(session->Get<QWidget>("cmdRefresh").hasFocus());
  EXPECT_EQ(page(), ePageInstr);
  press(Qt::Key_R);
  EXPECT_EQ(page(), ePageTrigLev);
  press(Qt::Key_N);
  EXPECT_EQ(page(), ePageInstr);
  press(Qt::Key_N);
  EXPECT_EQ(page(), ePageConfig);
}

TEST_F(Look, ThePagesCanBePaintedAtTwiceTheResolution) {
  for (int intPage = 0; intPage < eNumPages; ++intPage) {
    session->Get<QTabWidget>("tabMain").setCurrentIndex(intPage);
    QImage image(session.panel->size() * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(Qt::magenta);
    session.panel->render(&image);
    EXPECT_NE(image.pixelColor(image.width() / 2, image.height() / 2), QColor(Qt::magenta)) << intPage;
  }
}

}  // namespace
}  // namespace tarvik::test
