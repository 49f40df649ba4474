#pragma once

#include <QDialog>

#include "platform/MessageList.h"

class QTableView;

namespace tarvik {

/// Shows a list of messages as it grows, and where the error log is. Stays open beside the panel.
class MessageWindow : public QDialog {
 public:
  /// The list has to outlive the window.
  MessageWindow(MessageList &messages, const QString &strLogPath, QWidget *parent);

 private:
  void Follow();
  /// The selected messages, all where none is selected; a line each.
  void Copy() const;

  MessageList &m_messages;
  QTableView *m_table;
  Event<>::Connection m_connection;
};

}  // namespace tarvik
