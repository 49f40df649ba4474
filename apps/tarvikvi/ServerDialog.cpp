#include "ServerDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ServerList.h"

namespace tarvik {

namespace {

/// Room for a long host name with its port.
constexpr int AddressCharacters = 40;

}  // namespace

ServerDialog::ServerDialog(ServerList &servers, QWidget *parent)
    : QDialog(parent), m_servers(servers), m_cboAddress(new QComboBox), m_cmdRemove(nullptr) {
  setObjectName(QStringLiteral("ServerDialog"));
  setWindowTitle(tr("Server Address"));

  auto *question =
      new QLabel(tr("&Address of the driver server, such as tarvik://host or tarvik://host:17830.\n"
                    "Leave it blank for the instruments of this machine."));
  question->setBuddy(m_cboAddress);
  m_cboAddress->setObjectName(QStringLiteral("cboAddress"));
  m_cboAddress->setAccessibleName(tr("Server address"));
  m_cboAddress->setEditable(true);
  m_cboAddress->setInsertPolicy(QComboBox::NoInsert);
  m_cboAddress->setMinimumContentsLength(AddressCharacters);
  m_cboAddress->lineEdit()->setClearButtonEnabled(true);
  m_cboAddress->lineEdit()->setPlaceholderText(ServerList::NameOf({}));
  m_cboAddress->addItems(servers.Known());
  m_cboAddress->setCurrentText(servers.Current());
  m_cboAddress->lineEdit()->selectAll();

  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  QPushButton *connectButton = buttons->addButton(tr("C&onnect"), QDialogButtonBox::AcceptRole);
  connectButton->setObjectName(QStringLiteral("cmdConnectTo"));
  m_cmdRemove = buttons->addButton(tr("&Remove From List"), QDialogButtonBox::ActionRole);
  m_cmdRemove->setObjectName(QStringLiteral("cmdRemove"));
  m_cmdRemove->setAutoDefault(false);

  auto *rows = new QVBoxLayout(this);
  rows->addWidget(question);
  rows->addWidget(m_cboAddress);
  rows->addWidget(buttons);
  // Only within its dialog can a button become the default one.
  connectButton->setDefault(true);
  m_cboAddress->setFocus();

  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_cmdRemove, &QPushButton::clicked, this, &ServerDialog::RemoveShown);
  connect(m_cboAddress, &QComboBox::editTextChanged, this, &ServerDialog::ShowWhatCanBeRemoved);
  ShowWhatCanBeRemoved();
}

QString ServerDialog::Address() const { return m_cboAddress->currentText().trimmed(); }

void ServerDialog::RemoveShown() {
  const int intItem = m_cboAddress->findText(Address(), Qt::MatchFixedString | Qt::MatchCaseSensitive);
  if (intItem < 0) return;
  m_servers.Forget(Address());
  m_cboAddress->removeItem(intItem);
  m_cboAddress->clearEditText();
  m_cboAddress->setFocus();
}

void ServerDialog::ShowWhatCanBeRemoved() { m_cmdRemove->setEnabled(m_servers.Known().contains(Address())); }

}  // namespace tarvik
