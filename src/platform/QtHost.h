#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/MessageList.h"
#include "support/Export.h"
#include "support/Host.h"

namespace tarvik {

/// The host with the toolkit's dialogs, its settings store and its pointer. Needs a running application object. It
/// keeps the text of every box in a list. A box that follows another one of the same action, and has OK alone, offers
/// to show the rest of the action in the list only.
class TARVIK_EXPORT QtHost : public Host {
 public:
  ~QtHost() override;

  /// The QtHost in force; null where a host of another class is installed, or none.
  static QtHost *Installed();

  enum class Boxes {
    Shown,
    ListOnly,  ///< what has OK alone comes into the list without a box; questions are asked all the same
  };
  void SetBoxes(Boxes eBoxes) { m_eBoxes = eBoxes; }

  MessageList &Messages() { return m_messages; }
  const MessageList &Messages() const { return m_messages; }
  /// Opens the list of messages beside the window of this widget, which may be null, or brings it to the front.
  void ShowMessages(QWidget *beside);

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) override;
  std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                       const std::string &strDefault) override;
  void Beep() override;
  void ConnectionLost(const std::string &strText) override;
  Integer MousePointer() const override;
  void SetMousePointer(Integer intPointer) override;
  std::string GetSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strDefault) override;
  void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                   const std::string &strValue) override;
  char DecimalSeparator() const override;
  void DoEvents() override;
  void Repaint() override;
  void DropInput() override;

 private:
  /// With fOffersList the box offers to show the rest of the action in the list only.
  BoxAnswer Show(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle,
                 bool fOffersList);
  void Keep(const std::string &strText, BoxIcon icon);

  Boxes m_eBoxes = Boxes::Shown;
  MessageList m_messages;
  QPointer<QWidget> m_window;  ///< of the messages, while it is open
  /// The hourglass is among the pointers that were set over the program's own.
  mutable bool m_fHourglass = false;
};

/// Installs a QtHost for this process where no host is installed yet.
TARVIK_EXPORT void EnsureQtHost();

}  // namespace tarvik
