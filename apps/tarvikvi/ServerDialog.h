#pragma once

#include <QDialog>

class QComboBox;
class QPushButton;

namespace tarvik {

class ServerList;

/// Asks for the driver server to connect to: one of the list, another one that is typed, or none for this machine. A
/// server can be taken off the list here, which counts at once.
class ServerDialog : public QDialog {
  Q_OBJECT

 public:
  ServerDialog(ServerList &servers, QWidget *parent);

  /// Without blanks around; empty for this machine.
  QString Address() const;

 private:
  void RemoveShown();
  void ShowWhatCanBeRemoved();

  ServerList &m_servers;
  QComboBox *m_cboAddress;
  QPushButton *m_cmdRemove;
};

}  // namespace tarvik
