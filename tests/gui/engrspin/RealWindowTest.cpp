#include <QDialog>
#include <QProcess>

#include "FieldFixture.h"

namespace tarvik {
namespace {

using test::QuietHost;

/// A dialog with one field in a window of a real desktop, worked by keys and mouse of the X server.
struct RealWindow : testing::Test {
  QuietHost host;
  QDialog dialog;
  EngrSpin field{&dialog};
  QLineEdit *txt = field.findChild<QLineEdit *>("txtNumber");

  void SetUp() override {
    field.SetBaseUnit("V");
    field.SetMinExponent(-9);
    field.SetValue(1.234);
    field.Move(300, 300, 3630, 315);
    dialog.resize(400, 120);
    field.SetFocus();
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog, Patience));
    ASSERT_TRUE(ComesToTheFront(dialog));
    ASSERT_TRUE(txt->hasFocus());
    // The window manager may still be moving the window to its place.
    ASSERT_TRUE(QTest::qWaitFor(
        [this] {
          PointAway();
          PointAtText();
          return QTest::qWaitFor([this] { return txt->underMouse(); }, 500);
        },
        Patience));
  }
  void TearDown() override { PointAway(); }

  /// Milliseconds that anything may take on a busy machine.
  static constexpr int Patience = 30000;

  static QByteArray Ask(const QStringList &arguments) {
    QProcess tool;
    tool.start("xdotool", arguments);
    EXPECT_TRUE(tool.waitForFinished()) << "xdotool";
    return tool.readAllStandardOutput().trimmed();
  }
  static void Do(const QStringList &arguments) { Ask(arguments); }
  /// Whether the keys go to the window: by the toolkit's knowledge and by the server's.
  static bool ComesToTheFront(QWidget &window) {
    window.activateWindow();
    const auto inFront = [&] {
      return window.isActiveWindow() && Ask({"getwindowfocus", "-f"}) == QByteArray::number(window.winId());
    };
    return QTest::qWaitFor(inFront, Patience);
  }
  static void Press(const QString &strKeys) { Do({"key", "--clearmodifiers", strKeys}); }
  static void Type(const QString &strText) { Do({"type", strText}); }
  static void PointAway() { Do({"mousemove", "1", "1"}); }
  void PointAtText() const {
    const QPoint where = txt->mapToGlobal(QPoint(txt->width() - 8, txt->height() / 2));
    Do({"mousemove", QString::number(where.x()), QString::number(where.y())});
  }
  void Click(int intButton, int intTimes = 1) const {
    PointAtText();
    Do({"click", "--repeat", QString::number(intTimes), "--delay", "20", QString::number(intButton)});
  }
  bool Shows(const char *strText) {
    return QTest::qWaitFor([&] { return field.Text() == strText; }, Patience);
  }
  bool Selects(const char *strText) {
    return QTest::qWaitFor([&] { return txt->selectedText() == QLatin1String(strText); }, Patience);
  }
  bool IsTyping() const { return txt->alignment().testFlag(Qt::AlignLeft); }
};

TEST_F(RealWindow, TheFirstFocusSelectsADigitAndTheArrowKeysStepIt) {
  EXPECT_TRUE(Selects("1"));
  Press("Up");
  EXPECT_TRUE(Shows("2.234"));
}

TEST_F(RealWindow, TheMiddleButtonPastesOverTheNumberAndEnterTakesIt) {
  QApplication::clipboard()->setText("3.5m\n", QClipboard::Selection);
  Click(2);
  EXPECT_TRUE(Shows("3.5m\n"));
  EXPECT_TRUE(IsTyping());
  Press("Return");
  EXPECT_TRUE(Shows("3.500"));
  EXPECT_EQ(field.Value(), 3.5e-3);
  EXPECT_TRUE(Selects("3")) << "the digit is chosen again";
}

TEST_F(RealWindow, TheMiddleButtonDoesNothingInAListALockedOrADisabledField) {
  QApplication::clipboard()->setText("7", QClipboard::Selection);
  field.SetValueArray("1;2;5");
  Click(2);
  Press("Up");
  EXPECT_TRUE(Shows("2.000"));
  field.SetValueArray({});
  field.LockControl(True, False);
  Click(2);
  field.SetEnabled(False);
  Click(2);
  PointAway();
  EXPECT_TRUE(QTest::qWaitFor([] { return QCursor::pos() == QPoint(1, 1); }, Patience));
  QApplication::processEvents();
  EXPECT_EQ(field.Text(), "2.000");
  EXPECT_FALSE(IsTyping());
}

TEST_F(RealWindow, ShiftInsertBeginsTypingAndEscapeTakesItBackInAnOpenDialog) {
  QApplication::clipboard()->setText("\t3.5");
  Press("shift+Insert");
  EXPECT_TRUE(Shows("\t3.5"));
  EXPECT_TRUE(IsTyping());
  Press("Escape");
  EXPECT_TRUE(Shows("1.234"));
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(host.intBeeps, 1);
  Press("Escape");
  EXPECT_TRUE(QTest::qWaitFor([this] { return !dialog.isVisible(); }, Patience)) << "at rest the dialog gets the key";
}

TEST_F(RealWindow, FunctionKeysInsertAndChordsThatChangeNothingBeginNoTyping) {
  for (const char *strKeys : {"F5", "Insert", "Pause", "Print", "ctrl+z", "ctrl+c", "Num_Lock", "Num_Lock"})
    Press(strKeys);
  Press("Up");
  EXPECT_TRUE(Shows("2.234"));
  EXPECT_FALSE(IsTyping());
}

TEST_F(RealWindow, ADoubleClickAndATripleClickChooseTheNumberAndTypingReplacesIt) {
  for (const int intTimes : {2, 3}) {
    Click(1, intTimes);
    EXPECT_TRUE(QTest::qWaitFor([this] { return txt->selectionLength() == txt->text().size(); }, Patience));
    Type("2.5");
    Press("Return");
    EXPECT_TRUE(Shows("2.500"));
    EXPECT_EQ(field.Value(), 2.5);
    field.SetValue(1.234);
    // Longer than a click waits for the next one of its kind.
    Click(3);
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }, Patience));
    Press("Escape");
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() == nullptr; }, Patience));
  }
}

TEST_F(RealWindow, AnEntryWaitsWhileAnotherWindowIsInFront) {
  Type("7");
  EXPECT_TRUE(Shows("7.234"));
  QDialog other;
  other.show();
  ASSERT_TRUE(ComesToTheFront(other));
  EXPECT_TRUE(IsTyping());
  other.close();
  ASSERT_TRUE(ComesToTheFront(dialog));
  EXPECT_TRUE(IsTyping());
  Press("Return");
  EXPECT_TRUE(QTest::qWaitFor([this] { return field.Value() == 7.234; }, Patience));
}

}  // namespace
}  // namespace tarvik
