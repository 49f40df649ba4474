// The controls in layouts of the toolkit, as a host's programmer puts them there: in boxes, grids and forms, at three
// sizes of the font.
#include <gmock/gmock.h>

#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolTip>

#include "RecordingHost.h"
#include "WidgetEnvironment.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/Twips.h"

namespace tarvik::test {
namespace {

enum class Kind { Box, Grid, Form };

QWidget &Part(const QWidget &control, const char *strName) {
  return *control.findChild<QWidget *>(QString::fromLatin1(strName));
}

QRect Place(const QWidget &control, const char *strName) { return Part(control, strName).geometry(); }

/// The lowest row of pixels that is darker than half, in the window's own rows: where its digits and capitals stand.
int BaselineOf(const QWidget &widget) {
  const QImage picture = widget.window()->grab().toImage();
  const QRect place(widget.mapTo(widget.window(), QPoint()), widget.size());
  // The frame of a text box is no text.
  const QRect inner = place.adjusted(4, 3, -4, -3);
  for (int y = inner.bottom(); y >= inner.top(); --y)
    for (int x = inner.left(); x <= inner.right(); ++x)
      if (qGray(picture.pixel(x, y)) < 110) return y;
  return -1;
}

struct Window {
  Window(Kind eKind, double dblPoints) {
    QFont font = window.font();
    font.setPointSizeF(dblPoints);
    window.setFont(font);
    volts = new EngrSpin(&window);
    volts->setProperty("BaseUnit", QStringLiteral("V"));
    volts->setProperty("DefaultValue", 8.0);
    captioned = new EngrSpin(&window);
    captioned->setProperty("Caption", QStringLiteral("Delay"));
    captioned->setProperty("CaptionWidth", 740.0);
    captioned->setProperty("BaseUnit", QStringLiteral("s"));
    plain = new EngrSpin(&window);
    list = new CboEnhanced(&window);
    list->AddItemData("Internal", 1);
    list->AddItemData("External", 2);
    list->SetListIndex(0);
    button = new QPushButton(QStringLiteral("Apply"), &window);
    const std::vector<std::pair<const char *, QWidget *>> arrRows{
        {"&HHH", volts}, {"&Delay", captioned}, {"&Plain", plain}, {"&EEE", list}, {"&Button", button}};
    for (const auto &[strText, widget] : arrRows) {
      auto *label = new QLabel(QString::fromLatin1(strText), &window);
      label->setBuddy(widget);
      arrLabels.push_back(label);
    }
    LayOut(eKind, arrRows);
  }

  void LayOut(Kind eKind, const std::vector<std::pair<const char *, QWidget *>> &arrRows) {
    auto *box = eKind == Kind::Box ? new QVBoxLayout(&window) : nullptr;
    auto *grid = eKind == Kind::Grid ? new QGridLayout(&window) : nullptr;
    auto *form = eKind == Kind::Form ? new QFormLayout(&window) : nullptr;
    for (std::size_t i = 0; i < arrRows.size(); ++i) {
      QWidget *widget = arrRows[i].second;
      if (form) form->addRow(arrLabels[i], widget);
      if (grid) grid->addWidget(arrLabels[i], static_cast<int>(i), 0);
      if (grid) grid->addWidget(widget, static_cast<int>(i), 1);
      if (!box) continue;
      auto *row = new QHBoxLayout;
      row->addWidget(arrLabels[i]);
      row->addWidget(widget, 1);
      box->addLayout(row);
    }
  }

  std::vector<EngrSpin *> Fields() const { return {volts, captioned, plain}; }

  void Show(const char *strPicture = nullptr) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QCoreApplication::processEvents();
    const QString folder = qEnvironmentVariable("TARVIK_PICTURES");
    if (strPicture && !folder.isEmpty()) window.grab().save(folder + '/' + QString::fromLatin1(strPicture));
  }

  RecordingHost host;
  QWidget window;
  EngrSpin *volts, *captioned, *plain;
  CboEnhanced *list;
  QPushButton *button;
  std::vector<QLabel *> arrLabels;
};

class Layouts : public testing::TestWithParam<std::tuple<Kind, double>> {
 protected:
  Window bench{std::get<0>(GetParam()), std::get<1>(GetParam())};
  int Twips(Single sngTwips) const { return TwipsToPixels(*bench.volts, sngTwips); }
  std::string Picture(const char *strName) const {
    const char *arrKinds[] = {"box", "grid", "form"};
    return std::string(strName) + "-" + arrKinds[static_cast<int>(std::get<0>(GetParam()))] + "-" +
           std::to_string(static_cast<int>(std::get<1>(GetParam()))) + ".png";
  }
};

INSTANTIATE_TEST_SUITE_P(AtThreeFonts, Layouts,
                         testing::Combine(testing::Values(Kind::Box, Kind::Grid, Kind::Form),
                                          testing::Values(9.0, 13.0, 18.0)));

TEST_P(Layouts, AFieldThatGetsExactlyItsSizeHintIsLaidOut) {
  for (EngrSpin *field : bench.Fields()) field->setFixedSize(field->sizeHint());
  bench.Show(Picture("hint").c_str());
  for (const EngrSpin *field : bench.Fields()) {
    ASSERT_EQ(field->size(), field->sizeHint());
    const QRect text = Place(*field, "txtNumber"), spin = Place(*field, "spinCtl");
    EXPECT_GE(text.width(), Twips(1800));
    EXPECT_GT(spin.left(), text.right());
    EXPECT_TRUE(field->rect().contains(text)) << text.left() << " " << text.right();
    EXPECT_TRUE(field->rect().contains(spin));
  }
  EXPECT_GT(Place(*bench.volts, "lblUnits").left(), Place(*bench.volts, "spinCtl").right());
  EXPECT_EQ(Place(*bench.volts, "lblUnits").right(), bench.volts->width() - 1);
  EXPECT_EQ(Place(*bench.captioned, "lblCaption").left(), 0);
  EXPECT_GT(Place(*bench.captioned, "txtNumber").left(), Place(*bench.captioned, "lblCaption").right());
  EXPECT_NEAR(Place(*bench.plain, "spinCtl").right(), bench.plain->width() - 1, 1);
}

TEST_P(Layouts, HintsAreTheControlsOwnWhateverSizeItHas) {
  std::vector<QSize> arrBefore;
  const std::vector<QWidget *> arrControls{bench.volts, bench.captioned, bench.plain, bench.list};
  for (const QWidget *control : arrControls)
    arrBefore.insert(arrBefore.end(), {control->sizeHint(), control->minimumSizeHint()});
  bench.Show();
  const QSize least = bench.window.minimumSizeHint();
  for (const int intWidth : {2000, 500, 1000}) {
    bench.window.resize(intWidth, 300);
    QCoreApplication::processEvents();
  }
  std::vector<QSize> arrAfter;
  for (const QWidget *control : arrControls)
    arrAfter.insert(arrAfter.end(), {control->sizeHint(), control->minimumSizeHint()});
  EXPECT_EQ(arrAfter, arrBefore);
  EXPECT_EQ(bench.window.minimumSizeHint(), least);
  for (const QWidget *control : arrControls) {
    // A list of the toolkit asks for its items' width at least, too.
    const int intSpare = control->sizeHint().width() - control->minimumSizeHint().width();
    EXPECT_GE(intSpare, control == bench.list ? 0 : 10);
    EXPECT_LE(control->minimumSizeHint().height(), control->sizeHint().height());
  }
}

TEST_P(Layouts, AWindowCanBeMadeAsSmallAsItsControlsNeedAndTheirPartsStayApart) {
  bench.Show();
  bench.window.resize(bench.window.minimumSizeHint());
  QCoreApplication::processEvents();
  bench.Show(Picture("least").c_str());
  for (const EngrSpin *field : bench.Fields()) {
    const QRect text = Place(*field, "txtNumber"), spin = Place(*field, "spinCtl");
    EXPECT_GT(spin.left(), text.right());
    EXPECT_LE(spin.right(), field->width());
    // Sign, four digits and the separator.
    EXPECT_GE(text.width(), field->fontMetrics().horizontalAdvance(QStringLiteral("-0.000")) + 4);
  }
  EXPECT_GT(Place(*bench.volts, "lblUnits").left(), Place(*bench.volts, "spinCtl").right());
}

TEST_P(Layouts, AControlTakesTheWidthThatTheLayoutHasForIt) {
  bench.Show();
  bench.window.resize(1000, bench.window.height());
  QCoreApplication::processEvents();
  bench.Show(Picture("wide").c_str());
  for (EngrSpin *field : bench.Fields()) {
    EXPECT_GE(field->width(), field->sizeHint().width());
    EXPECT_NEAR(field->geometry().right(), bench.window.layout()->contentsRect().right(), 1);
    // The parts of a field stand within 5000 twips.
    EXPECT_EQ(Place(*field, "txtNumber").top(), 0);
    EXPECT_LE(Place(*field, "spinCtl").right(), Twips(5000));
    EXPECT_LE(Place(*field, "lblUnits").right(), Twips(5000));
  }
  EXPECT_GT(Place(*bench.plain, "txtNumber").width(), Twips(1815));
  EXPECT_NEAR(bench.list->geometry().right(), bench.window.layout()->contentsRect().right(), 1);
  EXPECT_NEAR(Place(*bench.list, "cbo").right(), bench.list->width() - 1, 1);
}

TEST_P(Layouts, ALargerFontLeavesTheWindowItsWidth) {
  bench.Show();
  bench.window.resize(1000, bench.window.height());
  QFont font = bench.window.font();
  font.setPointSizeF(18);
  bench.window.setFont(font);
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  EXPECT_EQ(bench.window.width(), 1000);
  for (const EngrSpin *field : bench.Fields()) {
    EXPECT_GT(Place(*field, "spinCtl").left(), Place(*field, "txtNumber").right());
    EXPECT_EQ(Place(*field, "txtNumber").height(), field->height());
  }
  EXPECT_EQ(Place(*bench.list, "cbo").height(), bench.list->height());
}

TEST_P(Layouts, TheLabelOfARowStandsOnTheLineOfTheNumber) {
  bench.volts->setProperty("BaseUnit", QStringLiteral("H"));
  bench.arrLabels[0]->setText(QStringLiteral("HHH"));
  bench.arrLabels[3]->setText(QStringLiteral("HHH"));
  bench.list->SetCaption("HHH");
  bench.button->setFocus();
  bench.Show();
  const int intNumber = BaselineOf(Part(*bench.volts, "txtNumber"));
  EXPECT_GT(intNumber, 0);
  EXPECT_NEAR(BaselineOf(*bench.arrLabels[0]), intNumber, 1);
  EXPECT_NEAR(BaselineOf(Part(*bench.volts, "lblUnits")), intNumber, 1);
  EXPECT_NEAR(BaselineOf(*bench.arrLabels[3]), BaselineOf(Part(*bench.list, "lblCaption")), 1);
}

TEST_P(Layouts, AListWithoutCaptionTakesNoRoomForOne) {
  bench.Show();
  EXPECT_EQ(Place(*bench.list, "cbo").left(), 0);
  EXPECT_EQ(Place(*bench.list, "cbo").width(), bench.list->width());
  const int intBefore = bench.list->sizeHint().width();
  bench.list->SetCaption("Source");
  QCoreApplication::processEvents();
  EXPECT_EQ(Place(*bench.list, "lblCaption").width(), Twips(1215));
  EXPECT_GT(Place(*bench.list, "cbo").left(), Place(*bench.list, "lblCaption").right());
  EXPECT_NEAR(bench.list->sizeHint().width(), intBefore + Twips(1315), 2);
}

TEST_P(Layouts, TheLabelOfARowGivesTheFocusToItsControl) {
  bench.Show();
  QTest::keyClick(&bench.window, Qt::Key_E, Qt::AltModifier);
  EXPECT_EQ(QApplication::focusWidget(), &Part(*bench.list, "cbo"));
  QTest::keyClick(&bench.window, Qt::Key_P, Qt::AltModifier);
  EXPECT_EQ(QApplication::focusWidget(), &Part(*bench.plain, "txtNumber"));
  QTest::keyClick(&bench.window, Qt::Key_H, Qt::AltModifier);
  EXPECT_EQ(QApplication::focusWidget(), &Part(*bench.volts, "txtNumber"));
}

TEST_P(Layouts, TabGoesFromControlToControlInSingleSteps) {
  bench.Show();
  bench.volts->SetFocus();
  const std::vector<QWidget *> arrWay{&Part(*bench.captioned, "txtNumber"), &Part(*bench.plain, "txtNumber"),
                                      &Part(*bench.list, "cbo"), bench.button};
  for (QWidget *next : arrWay) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next);
  }
  for (auto next = arrWay.rbegin() + 1; next != arrWay.rend(); ++next) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), *next);
  }
}

TEST(LayoutsOfFrames, AFrameIsAsLargeAsWhatStandsInItsContainer) {
  QWidget window;
  QVBoxLayout rows(&window);
  auto *frame = new FrameEnhanced;
  rows.addWidget(frame);
  auto *inner = new QVBoxLayout(frame->Container());
  auto *first = new QRadioButton(QStringLiteral("First"));
  inner->addWidget(first);
  window.show();
  QCoreApplication::processEvents();
  EXPECT_TRUE(frame->Container()->contentsRect().contains(first->geometry()));
  EXPECT_GE(first->height(), first->sizeHint().height());
  EXPECT_EQ(frame->sizeHint(), frame->Container()->sizeHint());
  const int intBefore = frame->height();
  auto *second = new QRadioButton(QStringLiteral("Second"));
  inner->addWidget(second);
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  EXPECT_GE(frame->height(), intBefore + second->sizeHint().height());
  EXPECT_TRUE(frame->Container()->contentsRect().contains(second->geometry()));
}

TEST(LayoutsOfFrames, AFrameIsNoNarrowerThanItsCaption) {
  for (const bool fInContainer : {true, false}) {
    QWidget window;
    QVBoxLayout rows(&window);
    auto *frame = new FrameEnhanced;
    rows.addWidget(frame);
    frame->SetCaption("Source of the trigger and of the reference");
    QWidget *parent = fInContainer ? frame->Container() : frame;
    auto *inner = new QVBoxLayout(parent);
    inner->addWidget(new QRadioButton(QStringLiteral("On")));
    window.show();
    window.resize(window.minimumSizeHint());
    QCoreApplication::processEvents();
    EXPECT_GE(frame->width(), frame->fontMetrics().horizontalAdvance(QString::fromStdString(frame->Caption())));
  }
}

TEST(LayoutsOfLists, AListThatWasFilledBehindItsLayoutShowsItsItemsWhole) {
  QWidget window;
  QHBoxLayout row(&window);
  auto *list = new CboEnhanced;
  row.addWidget(list);
  row.addStretch(1);
  EXPECT_GT(window.sizeHint().width(), 0);
  const std::string strItem = "An item of far more letters than any list was made for";
  list->AddItemData(strItem, 2);
  window.show();
  window.resize(1000, 100);
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  EXPECT_GT(list->width(), list->fontMetrics().horizontalAdvance(QString::fromStdString(strItem)));
}

TEST(LayoutsOfCaptions, ALongCaptionIsDrawnNarrowerAndThenCutWithAToolTip) {
  RecordingHost host;
  QWidget window;
  QVBoxLayout rows(&window);
  auto *field = new EngrSpin;
  auto *list = new CboEnhanced;
  rows.addWidget(field);
  rows.addWidget(list);
  const std::string strCaption = "Source of the trigger and of the reference";
  field->SetCaption(strCaption);
  field->SetCaptionWidth(1215);
  list->SetCaption(strCaption);
  window.show();
  QCoreApplication::processEvents();
  for (QWidget *control : std::initializer_list<QWidget *>{field, list}) {
    QWidget &label = Part(*control, "lblCaption");
    // It ends in dots: nothing stands above the line there.
    const QImage picture = label.grab().toImage();
    int intInk = 0;
    for (int x = picture.width() - 5; x < picture.width(); ++x)
      for (int y = 0; y < picture.height() / 2; ++y) intInk += qGray(picture.pixel(x, y)) < 110;
    EXPECT_EQ(intInk, 0);
    QHelpEvent event(QEvent::ToolTip, QPoint(3, 3), label.mapToGlobal(QPoint(3, 3)));
    QCoreApplication::sendEvent(&label, &event);
    EXPECT_THAT(QToolTip::text().toStdString(), testing::HasSubstr(strCaption));
    QToolTip::hideText();
  }
}

}  // namespace
}  // namespace tarvik::test
