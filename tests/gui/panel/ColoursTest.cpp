#include <gmock/gmock.h>

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>

#include "Contrast.h"
#include "SimulatorSession.h"
#include "WidgetEnvironment.h"
#include "bitpattern/BitPattern.h"
#include "platform/PlainControls.h"

namespace tarvik::test {
namespace {

struct Theme {
  const char *strName;
  QRgb window, base, button, text;
};

constexpr Theme Themes[] = {
    {"Light", 0xFFEFEFEF, 0xFFFFFFFF, 0xFFEFEFEF, 0xFF000000},
    {"Dark", 0xFF353535, 0xFF2A2A2A, 0xFF353535, 0xFFFFFFFF},
    {"DarkBlue", 0xFF31363B, 0xFF232629, 0xFF31363B, 0xFFEFF0F1},
};

QPalette PaletteOf(const Theme &theme) {
  QPalette colours(QColor(theme.button), QColor(theme.window));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    colours.setColor(role, QColor(theme.text));
  colours.setColor(QPalette::Base, QColor(theme.base));
  return colours;
}

class ThemeInForce {
 public:
  explicit ThemeInForce(const Theme &theme) { Set(theme); }
  ~ThemeInForce() { QApplication::setPalette(QPalette()); }
  ThemeInForce(const ThemeInForce &) = delete;
  ThemeInForce &operator=(const ThemeInForce &) = delete;

  static void Set(const Theme &theme) {
    QApplication::setPalette(PaletteOf(theme));
    QCoreApplication::processEvents();
  }
};

/// A panel on a theme, with as much disabled as a one-channel instrument brings about.
class Colours : public testing::TestWithParam<Theme> {
 protected:
  Colours() { session.Open("VP-110"); }

  template <class Step>
  void ForEachText(Step step) {
    auto &tabs = session->Get<QTabWidget>("tabMain");
    for (int intPage = 0; intPage < eNumPages; ++intPage) {
      tabs.setCurrentIndex(intPage);
      QCoreApplication::sendPostedEvents();
      for (const QWidget *widget : session.panel->findChildren<QWidget *>()) {
        if (!widget->isVisible()) continue;
        if (const auto roles = RolesOf(*widget)) step(*widget, *roles);
      }
    }
  }

  /// Colours of the text and of what is behind it.
  struct Roles {
    QPalette::ColorRole text, back;
  };
  static std::optional<Roles> RolesOf(const QWidget &widget) {
    if (qobject_cast<const QLineEdit *>(&widget)) return Roles{QPalette::Text, QPalette::Base};
    if (qobject_cast<const QComboBox *>(&widget) || qobject_cast<const QPushButton *>(&widget) ||
        qobject_cast<const QToolButton *>(&widget))
      return Roles{QPalette::ButtonText, QPalette::Button};
    if (qobject_cast<const QLabel *>(&widget) || qobject_cast<const QGroupBox *>(&widget) ||
        widget.inherits("QRadioButton") || widget.inherits("QCheckBox"))
      return Roles{QPalette::WindowText, QPalette::Window};
    return std::nullopt;
  }
  static QColor ColourOf(const QWidget &widget, QPalette::ColorRole role) { return widget.palette().color(role); }
  static std::string NameOf(const QWidget &widget) {
    return widget.parentWidget()->objectName().toStdString() + "/" + widget.objectName().toStdString();
  }

  ThemeInForce theme{GetParam()};
  SimulatorSession session;
};

TEST_P(Colours, EveryTextIsReadableWhetherItsControlIsEnabledOrNot) {
  int intDisabled = 0;
  ForEachText([&](const QWidget &widget, const Roles &roles) {
    intDisabled += !widget.isEnabled();
    EXPECT_GE(Contrast(ColourOf(widget, roles.text), ColourOf(widget, roles.back)), Readable)
        << NameOf(widget) << (widget.isEnabled() ? "" : ", disabled");
  });
  EXPECT_GT(intDisabled, 30);
}

TEST_P(Colours, WhatIsDisabledIsNoBrighterThanWhatIsEnabled) {
  const double dblEnabled = std::min(Luminance(QColor(GetParam().base)), Luminance(QColor(GetParam().button)));
  ForEachText([&](const QWidget &widget, const Roles &roles) {
    if (widget.isEnabled() || roles.back == QPalette::Window) return;
    EXPECT_LE(Luminance(ColourOf(widget, roles.back)), dblEnabled) << NameOf(widget);
  });
}

TEST_P(Colours, WhatIsDisabledHasOneGrey) {
  std::set<std::string> backs, texts;
  ForEachText([&](const QWidget &widget, const Roles &roles) {
    if (widget.isEnabled()) return;
    texts.insert(ColourOf(widget, roles.text).name().toStdString());
    if (roles.back != QPalette::Window) backs.insert(ColourOf(widget, roles.back).name().toStdString());
  });
  EXPECT_EQ(backs.size(), 1u) << testing::PrintToString(backs);
  // The pattern editor's own grey is the same in every theme, and so is the text on it.
  EXPECT_LE(texts.size(), GetParam().strName == std::string("Light") ? 1u : 2u) << testing::PrintToString(texts);
}

TEST_P(Colours, WhatIsDisabledLooksOtherThanWhatIsEnabled) {
  ForEachText([&](const QWidget &widget, const Roles &roles) {
    if (widget.isEnabled()) return;
    EXPECT_NE(ColourOf(widget, roles.text), widget.palette().color(QPalette::Active, roles.text)) << NameOf(widget);
  });
}

INSTANTIATE_TEST_SUITE_P(Themes, Colours, testing::ValuesIn(Themes),
                         [](const auto &test) { return test.param.strName; });

TEST(DisabledGrey, IsThatOfListsAndFieldsWithADarkTextOnIt) {
  SimulatorSession session;
  session->List("cboTriggerSlope").SetEnabled(False);
  session->Field("esBurstLength").SetEnabled(False);
  const QComboBox &list = *session->List("cboTriggerSlope").findChild<QComboBox *>();
  const QLineEdit &field = *session->Field("esBurstLength").findChild<QLineEdit *>();
  EXPECT_EQ(list.palette().color(QPalette::Button), QColor(0xC0, 0xC0, 0xC0));
  EXPECT_EQ(list.palette().color(QPalette::ButtonText), QColor(0x40, 0x40, 0x40));
  EXPECT_EQ(field.palette().color(QPalette::Base), QColor(0xC0, 0xC0, 0xC0));
  EXPECT_EQ(field.palette().color(QPalette::Text), QColor(0x40, 0x40, 0x40));
}

TEST(DisabledGrey, FollowsAThemeThatChangesWhileThePanelRuns) {
  SimulatorSession session;
  session->List("cboTriggerSlope").SetEnabled(False);
  session->Field("esBurstLength").SetEnabled(False);
  const QWidget &list = *session->List("cboTriggerSlope").findChild<QComboBox *>();
  const QWidget &field = *session->Field("esBurstLength").findChild<QLineEdit *>();
  const QWidget &button = session->Get<QWidget>("cmdUpload"), &display = session->Get<QWidget>("txtSlot");
  ThemeInForce theme(Themes[1]);
  EXPECT_EQ(list.palette().color(QPalette::Button), QColor(0x2A, 0x2A, 0x2A));
  EXPECT_EQ(field.palette().color(QPalette::Base), QColor(0x2A, 0x2A, 0x2A));
  EXPECT_EQ(button.palette().color(QPalette::Button), QColor(0x2A, 0x2A, 0x2A));
  EXPECT_EQ(display.palette().color(QPalette::Base), QColor(0x35, 0x35, 0x35));
  ThemeInForce::Set(Themes[0]);
  EXPECT_EQ(list.palette().color(QPalette::Button), QColor(0xC0, 0xC0, 0xC0));
  EXPECT_EQ(field.palette().color(QPalette::Base), QColor(0xC0, 0xC0, 0xC0));
  EXPECT_EQ(button.palette().color(QPalette::Button), QColor(0xC0, 0xC0, 0xC0));
  EXPECT_EQ(display.palette().color(QPalette::Base), QColor(0xEF, 0xEF, 0xEF));
}

}  // namespace
}  // namespace tarvik::test
