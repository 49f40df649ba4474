#include <gmock/gmock.h>

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <string>
#include <vector>

#include "RecordingHost.h"
#include "WidgetEnvironment.h"
#include "platform/CommandButton.h"
#include "platform/ToolPopup.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A text box that tells when it is left, as a number field does that takes its entry over.
class EntryBox : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  std::function<void()> Left;

 protected:
  void focusOutEvent(QFocusEvent *event) override {
    QLineEdit::focusOutEvent(event);
    if (Left) Left();
  }
};

/// A host's dialog with an entry, a button of the panel and the dialog's own default button.
class PressedButton : public testing::Test {
 protected:
  PressedButton() {
    m_button->setObjectName("cmdTest");
    m_button->SetCaption("&Upload");
    m_tool->setObjectName("toolPopup(0)");
    m_ok->setDefault(true);
    m_entry->Left = [this] { m_arrOrder.emplace_back("entry left"); };
    m_button->Click.Connect([this] { m_arrOrder.emplace_back("click"); });
    m_tool->ButtonClick.Connect([this] { m_arrOrder.emplace_back("tool click"); });
    QObject::connect(m_ok, &QPushButton::clicked, m_ok, [this] { m_arrOrder.emplace_back("dialog's default"); });
    m_dialog.show();
    m_dialog.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_dialog));
    m_entry->setFocus();
  }

  RecordingHost m_host;
  std::vector<std::string> m_arrOrder;
  QDialog m_dialog;
  EntryBox *m_entry = new EntryBox(&m_dialog);
  CommandButton *m_button = new CommandButton(&m_dialog);
  ToolPopup *m_tool = new ToolPopup(&m_dialog);
  QPushButton *m_ok = new QPushButton("OK", &m_dialog);
};

TEST_F(PressedButton, TakesTheFocusBeforeTheClickOfItsAccessKey) {
  QTest::keyClick(&m_dialog, Qt::Key_U, Qt::AltModifier);
  EXPECT_THAT(m_arrOrder, ElementsAre("entry left", "click"));
  EXPECT_TRUE(m_button->hasFocus());
}

TEST_F(PressedButton, TakesTheFocusBeforeAClickThatAProgramMakes) {
  m_button->click();
  EXPECT_THAT(m_arrOrder, ElementsAre("entry left", "click"));
  m_arrOrder.clear();
  m_entry->setFocus();
  m_tool->click();
  EXPECT_THAT(m_arrOrder, ElementsAre("entry left", "tool click"));
}

TEST_F(PressedButton, IsPressedByEnterAndSpaceAndTheDialogsDefaultIsNot) {
  m_button->setFocus();
  m_arrOrder.clear();
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) QTest::keyClick(m_button, key);
  EXPECT_THAT(m_arrOrder, ElementsAre("click", "click", "click"));
}

TEST_F(PressedButton, ThatIsTheDialogsDefaultTakesTheFocusBeforeItsClickByEnter) {
  m_button->setDefault(true);
  QTest::keyClick(m_entry, Qt::Key_Return);
  EXPECT_THAT(m_arrOrder, ElementsAre("entry left", "click"));
}

TEST_F(PressedButton, ThatTheEntryDisablesIsNotClicked) {
  m_entry->Left = [this] { m_button->SetEnabled(False); };
  QTest::keyClick(&m_dialog, Qt::Key_U, Qt::AltModifier);
  EXPECT_THAT(m_arrOrder, IsEmpty());
}

TEST_F(PressedButton, ThatIsDisabledLeavesTheEntryAlone) {
  m_button->SetEnabled(False);
  QTest::keyClick(&m_dialog, Qt::Key_U, Qt::AltModifier);
  m_button->click();
  EXPECT_THAT(m_arrOrder, IsEmpty());
  EXPECT_TRUE(m_entry->hasFocus());
}

TEST_F(PressedButton, ThatCannotTakeTheFocusIsClickedAllTheSame) {
  m_button->setFocusPolicy(Qt::NoFocus);
  QTest::keyClick(&m_dialog, Qt::Key_U, Qt::AltModifier);
  EXPECT_THAT(m_arrOrder, ElementsAre("click"));
  EXPECT_TRUE(m_entry->hasFocus());
}

TEST_F(PressedButton, IsClickedOnceWhileItsAccessKeyIsHeldDown) {
  for (const bool fRepeat : {false, true, true})
    QTest::simulateEvent(m_dialog.windowHandle(), true, Qt::Key_U, Qt::AltModifier, "u", fRepeat);
  EXPECT_THAT(m_arrOrder, ElementsAre("entry left", "click"));
}

TEST_F(PressedButton, OneKeyOfTwoButtonsPressesThemInTurn) {
  auto *other = new CommandButton(&m_dialog);
  other->SetCaption("&Undo");
  other->Click.Connect([this] { m_arrOrder.emplace_back("other click"); });
  other->show();
  m_entry->Left = {};
  for (int i = 0; i < 3; ++i) QTest::keyClick(&m_dialog, Qt::Key_U, Qt::AltModifier);
  EXPECT_THAT(m_arrOrder, ElementsAre("click", "other click", "click"));
}

}  // namespace
}  // namespace tarvik::test
