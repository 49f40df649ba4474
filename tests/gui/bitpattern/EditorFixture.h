#pragma once

#include <gmock/gmock.h>

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <string>

#include "RecordingHost.h"
#include "bitpattern/BitPattern.h"
#include "bitpattern/HScrollBar.h"
#include "bitpattern/WavePicture.h"
#include "engrspin/EngrSpin.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"
#include "support/RunTimeError.h"
#include "support/modGlobals.h"

namespace tarvik::test {

/// The editor in a shown window of the offscreen platform, with channel 2, driven by keys and clicks.
class EditorFixture : public testing::Test, private PanelReference {
 protected:
  EditorFixture() {
    gobjPanel() = this;
    m_editor.setObjectName(QStringLiteral("BitPattern1"));
    m_editor.EnableChannel2(True);
    m_editor.resize(m_editor.sizeHint());
    m_editor.show();
    m_editor.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_editor));
    m_editor.SetFocus();
    m_intDirty = 0;
  }
  ~EditorFixture() override { gobjPanel() = nullptr; }

  template <class Child>
  Child &Find(const char *strName) {
    return dynamic_cast<Child &>(*m_editor.findChild<QWidget *>(QString::fromLatin1(strName)));
  }
  WavePicture &picWave() { return Find<WavePicture>("picWave"); }
  HScrollBar &HScroll1() { return Find<HScrollBar>("HScroll1"); }
  EngrSpin &esAddress() { return Find<EngrSpin>("esAddress"); }
  EngrSpin &esLast() { return Find<EngrSpin>("esLast"); }
  ToolPopup &Tool(int intIndex) { return Find<ToolPopup>(("toolPopup(" + std::to_string(intIndex) + ")").c_str()); }
  OptionButton &Option(int intIndex) {
    return Find<OptionButton>(("optChannelRzNrz(" + std::to_string(intIndex) + ")").c_str());
  }

  void Click(QWidget &widget, QPoint place = {}) { QTest::mouseClick(&widget, Qt::LeftButton, {}, place); }
  /// Left click on the picture at a height in twips.
  void ClickRow(Single sngY) {
    Click(picWave(), QPoint(20, static_cast<int>(sngY * static_cast<Single>(picWave().height()) / 2175)));
  }
  void Keys(std::initializer_list<Qt::Key> arrKeys) {
    for (const Qt::Key key : arrKeys) QTest::keyClick(&picWave(), key);
  }
  void TypeBits(const char *strBits) { QTest::keyClicks(&picWave(), QString::fromLatin1(strBits)); }
  /// Types a number into a field and presses Enter.
  void TypeNumber(EngrSpin &field, const char *strText) {
    auto *txtNumber = field.findChild<QLineEdit *>(QStringLiteral("txtNumber"));
    txtNumber->setFocus();
    QTest::keyClick(txtNumber, Qt::Key_Delete);
    txtNumber->selectAll();
    QTest::keyClicks(txtNumber, QString::fromLatin1(strText));
    QTest::keyClick(txtNumber, Qt::Key_Return);
  }
  /// Chooses an entry of a drop-down menu.
  void Menu(int intIndex, const char *strKey) {
    for (QAction *action : Tool(intIndex).menu()->actions())
      if (action->objectName() == QLatin1String(strKey)) action->trigger();
  }
  void Deliver(Byte byChan1, Byte byChan2, Byte byStrobe, Long lngNumBits = 8) {
    m_editor.SetPatternInit();
    EXPECT_TRUE(m_editor.SetPattern(1, ByteArray(1, {byChan1}), lngNumBits));
    EXPECT_TRUE(m_editor.SetPattern(2, ByteArray(1, {byChan2}), lngNumBits));
    EXPECT_TRUE(m_editor.SetPattern(8, ByteArray(1, {byStrobe}), lngNumBits));
  }
  /// The first bytes of a stream at the present length.
  std::vector<Byte> Stream(Long eChannel) {
    ByteArray arr(1, std::vector<Byte>(static_cast<std::size_t>(m_editor.GetPatternArraySize())));
    Long lngSize = 0;
    EXPECT_TRUE(m_editor.GetPattern(eChannel, arr, lngSize));
    return arr.Elements();
  }
  Byte FirstByte(Long eChannel) { return Stream(eChannel).front(); }

  RecordingHost m_host;
  BitPattern m_editor;
  int m_intDirty = 0;
  bool m_fPanelFails = false;  ///< when it is told of a change

 private:
  void SetTabState(TabStates eState, TabNumEnum ePage) override {
    EXPECT_EQ(eState, ePageIsDirty);
    EXPECT_EQ(ePage, eCurrPage);
    ++m_intDirty;
    if (m_fPanelFails) RaiseError(ErrTypeMismatch);
  }
};

}  // namespace tarvik::test
