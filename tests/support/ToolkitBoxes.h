#pragma once

#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "platform/QtHost.h"

namespace tarvik::test {

/// The host with real boxes; settings, prompts and the error log are those of the host before, which comes back at the
/// end.
/// Each box is answered by keys as soon as it stands on the screen.
class ToolkitBoxes : public QtHost, private QObject {
 public:
  struct Box {
    std::string strText;
    bool fOffersList = false;
    bool fListChosen = false;  ///< as it came up
  };

  ToolkitBoxes() : m_before(SetHost(this)) { qApp->installEventFilter(this); }
  ~ToolkitBoxes() override { SetHost(m_before); }

  /// From now on the user ticks the offer to show the rest in the list only.
  bool fTakesListOnly = false;
  /// The key that answers questions.
  Qt::Key eAnswer = Qt::Key_Return;
  std::vector<Box> arrBoxes;
  /// Called with each box that stands, before it is answered.
  std::function<void(QMessageBox &box)> OnBox;
  /// Called ahead of each call of the driver.
  std::function<void()> OnDriverCall;

  void Repaint() override {
    if (OnDriverCall) OnDriverCall();
    QtHost::Repaint();
  }

  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override {
    return m_before->InputBox(strPrompt, strTitle, strDefault);
  }
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override {
    return m_before->GetSetting(strApplication, strSection, strKey, strDefault);
  }
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override {
    m_before->SaveSetting(strApplication, strSection, strKey, strValue);
  }
  std::string ErrorLogPath() const override { return m_before->ErrorLogPath(); }
  void AppendToFile(const std::string &strPath, std::string_view strBytes) override {
    m_before->AppendToFile(strPath, strBytes);
  }

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override {
    auto *box = event->type() == QEvent::Show ? qobject_cast<QMessageBox *>(watched) : nullptr;
    if (box) QTimer::singleShot(0, box, [this, box] { Answer(*box); });
    return false;
  }

 private:
  void Answer(QMessageBox &box) {
    const QCheckBox *offer = box.checkBox();
    arrBoxes.push_back({box.text().toStdString(), offer != nullptr, offer && offer->isChecked()});
    if (OnBox) OnBox(box);
    if (offer && fTakesListOnly && !offer->isChecked()) QTest::keyClick(box.checkBox(), Qt::Key_Space);
    const bool fQuestion = box.standardButtons().testFlag(QMessageBox::Yes);
    QTest::keyClick(&box, fQuestion ? eAnswer : Qt::Key_Return);
  }

  Host *m_before;
};

}  // namespace tarvik::test
