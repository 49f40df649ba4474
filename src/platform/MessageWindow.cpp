#include "platform/MessageWindow.h"

#include <QAbstractTableModel>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>
#include <cstdio>

namespace tarvik {

namespace {

enum Column { ColumnTime, ColumnKind, ColumnCount, ColumnText, Columns };

QString TimeText(const std::tm &time) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", time.tm_hour, time.tm_min, time.tm_sec);
  return QString::fromLatin1(text);
}

QString DayText(const std::tm &time) {
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", time.tm_year + 1900, time.tm_mon + 1, time.tm_mday);
  return QString::fromLatin1(text);
}

/// Without empty lines: drivers end their texts with line breaks.
QString PlainText(const HostMessage &message) {
  return QString::fromStdString(message.strText).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).trimmed();
}

QStyle::StandardPixmap Sign(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Stop:
    case BoxIcon::Critical: return QStyle::SP_MessageBoxCritical;
    case BoxIcon::Question: return QStyle::SP_MessageBoxQuestion;
    case BoxIcon::Exclamation: return QStyle::SP_MessageBoxWarning;
    case BoxIcon::Information: return QStyle::SP_MessageBoxInformation;
  }
  return QStyle::SP_MessageBoxInformation;
}

class MessageTable : public QAbstractTableModel {
 public:
  MessageTable(const MessageList &messages, QWidget *view) : QAbstractTableModel(view), m_messages(messages) {}

  void Reset() {
    beginResetModel();
    endResetModel();
  }

  int rowCount(const QModelIndex &parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(m_messages.All().size());
  }
  int columnCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : Columns; }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    static constexpr const char *Headers[] = {"Time", "Kind", "Count", "Message"};
    if (orientation == Qt::Vertical || role != Qt::DisplayRole) return {};
    return QString::fromLatin1(Headers[section]);
  }

  QVariant data(const QModelIndex &index, int role) const override {
    const HostMessage &message = m_messages.All()[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole) return Text(message, index.column());
    if (role == Qt::ToolTipRole && index.column() == ColumnTime) return DayText(message.Time);
    if (role == Qt::TextAlignmentRole)
      return QVariant(Qt::AlignTop | (index.column() == ColumnCount ? Qt::AlignRight : Qt::AlignLeft));
    if (role == Qt::DecorationRole && index.column() == ColumnKind)
      return static_cast<QWidget *>(parent())->style()->standardIcon(Sign(message.icon));
    return {};
  }

 private:
  static QVariant Text(const HostMessage &message, int column) {
    switch (column) {
      case ColumnTime: return TimeText(message.Time);
      case ColumnKind: return QString::fromLatin1(KindName(message.icon));
      case ColumnCount: return static_cast<int>(message.lngCount);
      default: return PlainText(message);
    }
  }

  const MessageList &m_messages;
};

QTableView *MakeTable(QWidget *parent) {
  auto *table = new QTableView(parent);
  table->setObjectName(QStringLiteral("tblMessages"));
  table->setAccessibleName(QStringLiteral("Messages"));
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  table->setWordWrap(true);
  table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  table->verticalHeader()->hide();
  table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  return table;
}

}  // namespace

MessageWindow::MessageWindow(MessageList &messages, const QString &strLogPath, QWidget *parent)
    : QDialog(parent), m_messages(messages), m_table(MakeTable(this)) {
  setObjectName(QStringLiteral("MessageWindow"));
  setWindowTitle(QStringLiteral("Messages"));
  setAttribute(Qt::WA_DeleteOnClose);

  m_table->setModel(new MessageTable(messages, m_table));
  QHeaderView &header = *m_table->horizontalHeader();
  header.setSectionResizeMode(QHeaderView::ResizeToContents);
  header.setStretchLastSection(true);
  header.setHighlightSections(false);

  auto *log = new QLabel(QStringLiteral("Error log: ") + strLogPath +
                             QStringLiteral("\nThe list holds the last %1 "
                                            "messages of this run.")
                                 .arg(MessageList::MaxMessages),
                         this);
  log->setObjectName(QStringLiteral("lblLog"));
  log->setTextFormat(Qt::PlainText);
  log->setWordWrap(true);
  log->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  QPushButton *copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
  copy->setObjectName(QStringLiteral("cmdCopy"));
  copy->setToolTip(QStringLiteral("Copy the selected messages, or all"));
  connect(copy, &QPushButton::clicked, this, &MessageWindow::Copy);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);

  auto *rows = new QVBoxLayout(this);
  rows->addWidget(m_table);
  rows->addWidget(log);
  rows->addWidget(buttons);
  const int intLine = fontMetrics().height();
  resize(44 * intLine, 22 * intLine);
  m_connection = messages.Changed.ConnectScoped([this] { Follow(); });
  Follow();
}

void MessageWindow::Follow() {
  const int intRows = m_table->model()->rowCount();
  static_cast<MessageTable *>(m_table->model())->Reset();
  m_table->scrollToBottom();
  if (intRows > 0 && !m_table->currentIndex().isValid())
    m_table->setCurrentIndex(m_table->model()->index(intRows - 1, 0));
  m_messages.MarkSeen();
}

void MessageWindow::Copy() const {
  const QAbstractItemModel &model = *m_table->model();
  QStringList lines;
  const QModelIndexList selected = m_table->selectionModel()->selectedRows();
  for (int intRow = 0; intRow < model.rowCount(); ++intRow) {
    if (!selected.isEmpty() && !selected.contains(model.index(intRow, 0))) continue;
    QStringList cells;
    for (int intColumn = 0; intColumn < Columns; ++intColumn)
      cells << model.index(intRow, intColumn).data().toString().replace(QLatin1Char('\n'), QLatin1Char(' '));
    lines << DayText(m_messages.All()[static_cast<std::size_t>(intRow)].Time) + QLatin1Char(' ') +
                 cells.join(QLatin1Char('\t'));
  }
  QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

}  // namespace tarvik
