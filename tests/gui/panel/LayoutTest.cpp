#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>
#include <QTabWidget>

#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "bitpattern/BitPattern.h"
#include "controls/FrameEnhanced.h"
#include "platform/Highlight.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

/// Pages of a panel on an instrument with everything, at several fonts.
class Layout : public testing::TestWithParam<double> {
 protected:
  Layout() {
    session.Open("VP-210");
    QFont font = session.panel->font();
    font.setPointSizeF(font.pointSizeF() * GetParam());
    session.panel->setFont(font);
    session.panel->resize(session.panel->sizeHint());
    QCoreApplication::sendPostedEvents();
  }

  template <class Step>
  void OnEachPage(Step step) {
    auto &tabs = session->Get<QTabWidget>("tabMain");
    for (int intPage = 0; intPage < eNumPages; ++intPage) {
      tabs.setCurrentIndex(intPage);
      QCoreApplication::sendPostedEvents();
      step(*tabs.currentWidget(), tabs.tabText(intPage).toStdString());
    }
  }

  static bool IsSeen(const QWidget *widget) { return widget->isVisible() && dynamic_cast<const Control *>(widget); }

  /// The controls that stand directly in a page or a box, plain containers replaced by what stands in them.
  static QList<QWidget *> ControlsIn(const QWidget &parent) {
    QList<QWidget *> found;
    for (QWidget *child : parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
      if (dynamic_cast<PlainContainer *>(child))
        found << ControlsIn(*child);
      else if (IsSeen(child) && !dynamic_cast<Highlight *>(child))
        found << child;
    }
    return found;
  }

  static QRect PlaceIn(const QWidget &parent, const QWidget &widget) {
    return QRect(widget.mapTo(&parent, QPoint(0, 0)), widget.size());
  }

  /// The line that a box draws around its contents, below the title.
  static QRect FrameOf(const QGroupBox &box) {
    QStyleOptionGroupBox option;
    option.initFrom(&box);
    option.text = box.title();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    return box.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxFrame, &box);
  }

  /// A fifth of a line of text: what separates a control from the line around it.
  int Hair() const { return session.panel->fontMetrics().height() / 5; }

  SimulatorSession session;
};

TEST_P(Layout, WhatStandsInABoxStandsWithinItsLine) {
  OnEachPage([&](const QWidget &page, const std::string &strPage) {
    for (const auto *box : page.findChildren<QGroupBox *>()) {
      if (!box->isVisible()) continue;
      const QRect room = FrameOf(*box).adjusted(Hair(), Hair(), -Hair(), -Hair());
      for (const QWidget *control : ControlsIn(*box))
        EXPECT_TRUE(room.contains(PlaceIn(*box, *control)))
            << strPage << ": " << control->objectName().toStdString() << " in " << box->title().toStdString();
    }
  });
}

TEST_P(Layout, NothingOverlaps) {
  OnEachPage([&](const QWidget &page, const std::string &strPage) {
    QList<const QWidget *> arrParents{&page, session.panel.get()};
    for (const auto *box : page.findChildren<QGroupBox *>()) arrParents << box;
    for (const auto *editor : page.findChildren<BitPattern *>()) arrParents << editor;
    for (const QWidget *parent : arrParents) {
      const auto arrControls = ControlsIn(*parent);
      for (int i = 0; i < arrControls.size(); ++i)
        for (int k = 0; k < i; ++k)
          EXPECT_FALSE(PlaceIn(*parent, *arrControls[i]).intersects(PlaceIn(*parent, *arrControls[k])))
              << strPage << ": " << arrControls[i]->objectName().toStdString() << " and "
              << arrControls[k]->objectName().toStdString();
    }
  });
}

TEST_P(Layout, ThePagesHaveTheSameMarginsOnBothSides) {
  const int margin = TwipsToPixels(*session->Get<QTabWidget>("tabMain").widget(0), 120);
  OnEachPage([&](const QWidget &page, const std::string &strPage) {
    QRect all;
    for (const QWidget *control : ControlsIn(page)) all |= PlaceIn(page, *control);
    const int right = page.width() - all.right() - 1, bottom = page.height() - all.bottom() - 1;
    // The lines around the page are as wide at every font.
    EXPECT_NEAR(all.left(), right, 2 + 2 * GetParam()) << strPage;
    EXPECT_GE(all.left(), margin - 1) << strPage;
    EXPECT_GE(all.top(), margin - 1) << strPage;
    EXPECT_GE(bottom, margin - 8) << strPage;
  });
}

TEST_P(Layout, EveryListHasRoomForItsTextAndItsBorder) {
  OnEachPage([&](const QWidget &page, const std::string &strPage) {
    for (const auto *list : page.findChildren<QComboBox *>()) {
      if (!list->isVisible()) continue;
      const std::string strList = strPage + ": " + list->parentWidget()->objectName().toStdString();
      EXPECT_TRUE(list->parentWidget()->rect().contains(list->geometry())) << strList;
      QStyleOptionComboBox option;
      option.initFrom(list);
      const QRect text =
          list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list);
      EXPECT_GE(text.height(), list->fontMetrics().height()) << strList;
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Fonts, Layout, testing::Values(1.0, 1.25, 1.5, 2.0), [](const auto &test) {
  return "Times" + std::to_string(static_cast<int>(test.param * 100)) + "Percent";
});

}  // namespace
}  // namespace tarvik::test
