#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>
#include <string>

#include "WidgetEnvironment.h"
#include "engrspin/EngrSpin.h"
#include "platform/PropertyBag.h"
#include "support/Host.h"

namespace tarvik::test {

class QuietHost : public Host {
 public:
  QuietHost() { SetHost(this); }
  ~QuietHost() override { SetHost(nullptr); }
  BoxAnswer MsgBox(const std::string &, BoxIcon, BoxButtons, const std::string &) override {
    ++intBoxes;
    return BoxAnswer::Ok;
  }
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  void Beep() override { ++intBeeps; }
  Integer MousePointer() const override { return 0; }
  void SetMousePointer(Integer) override {}
  std::string GetSetting(const std::string &, const std::string &, const std::string &,
                         const std::string &strDefault) override {
    return strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return chSeparator; }
  void AppendToFile(const std::string &, std::string_view) override {}
  void DoEvents() override {}

  int intBeeps = 0, intBoxes = 0;
  char chSeparator = '.';
};

struct Field : testing::Test {
  QuietHost host;
  QWidget form;
  EngrSpin *field = nullptr;
  QLineEdit *txt = nullptr;
  QWidget *spin = nullptr;
  int intUpdates = 0;

  void Make(const PropertyBag &bag) {
    form.setFocusPolicy(Qt::StrongFocus);
    form.resize(600, 200);
    field = new EngrSpin(&form);
    field->ReadProperties(bag);
    field->Move(300, 300, 3630, 315);
    field->AfterUpdate.Connect([this] { ++intUpdates; });
    txt = field->findChild<QLineEdit *>("txtNumber");
    spin = field->findChild<QWidget *>("spinCtl");
    form.show();
    form.activateWindow();
    form.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  }
  void MakeVolts(Double dblValue) {
    Make({{"BaseUnit", std::string("V")}, {"DefaultValue", dblValue}, {"Max", 999.5e3}, {"Min", -999.5e3}});
  }
  /// The digit, or the piece of the text, that is selected.
  std::string Selected() const { return txt->selectedText().toStdString(); }
  bool IsTyping() const { return txt->alignment().testFlag(Qt::AlignLeft); }
  bool Wheel(int intAngle) {
    const QPointF middle = txt->rect().center();
    QWheelEvent event(middle, txt->mapToGlobal(middle), {}, {0, intAngle}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(txt, &event);
    return event.isAccepted();
  }
};

}  // namespace tarvik::test
