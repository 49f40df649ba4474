#include "panel/CompareDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "support/Host.h"

namespace tarvik {

namespace {

enum Column { ColumnPage, ColumnSetting, ColumnPanel, ColumnInstrument, ColumnFile, ColumnCount };

constexpr TabNumEnum ComparedPages[] = {ePageMode,   ePageTiming,  ePageLevels, ePagePattern,
                                        ePageLimits, ePageTrigLev, ePageConfig};

QString ToQString(std::string_view strText) {
  return QString::fromUtf8(strText.data(), static_cast<qsizetype>(strText.size()));
}

QString CountText(std::size_t count) {
  if (count == 0) return CompareDialog::tr("No difference.");
  return count == 1 ? CompareDialog::tr("1 difference") : CompareDialog::tr("%1 differences").arg(count);
}

}  // namespace

CompareDialog::CompareDialog(Sources sources, QWidget *parent) : QDialog(parent), m_sources(std::move(sources)) {
  setObjectName(QStringLiteral("CompareDialog"));
  setWindowTitle(tr("Compare settings"));
  auto *column = new QVBoxLayout(this);
  column->addWidget(MakeFilters());
  column->addWidget(MakeTable());
  column->addWidget(MakeSources());
  column->addWidget(MakeButtons());
  resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 28);
  Refresh();
}

// ---- Controls ----

QWidget *CompareDialog::MakeFilters() {
  auto *row = new QWidget;
  auto *layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  m_txtFilter = new QLineEdit;
  m_txtFilter->setObjectName(QStringLiteral("txtFilter"));
  m_txtFilter->setClearButtonEnabled(true);
  connect(m_txtFilter, &QLineEdit::textChanged, this, &CompareDialog::Refresh);
  auto *lblFilter = new QLabel(tr("&Filter"));
  lblFilter->setBuddy(m_txtFilter);
  m_cboPage = new QComboBox;
  m_cboPage->setObjectName(QStringLiteral("cboPage"));
  m_cboPage->addItem(tr("All pages"), static_cast<int>(eAllPages));
  for (const TabNumEnum ePage : ComparedPages)
    m_cboPage->addItem(ToQString(PageCaption(ePage)), static_cast<int>(ePage));
  connect(m_cboPage, &QComboBox::currentIndexChanged, this, &CompareDialog::Refresh);
  auto *lblPage = new QLabel(tr("&Page"));
  lblPage->setBuddy(m_cboPage);
  for (QWidget *widget : {static_cast<QWidget *>(lblFilter), static_cast<QWidget *>(m_txtFilter),
                          static_cast<QWidget *>(lblPage), static_cast<QWidget *>(m_cboPage)})
    layout->addWidget(widget);
  return row;
}

QWidget *CompareDialog::MakeTable() {
  m_tblDifferences = new QTableWidget(0, ColumnCount);
  m_tblDifferences->setObjectName(QStringLiteral("tblDifferences"));
  m_tblDifferences->setAccessibleName(tr("Differences"));
  m_tblDifferences->setHorizontalHeaderLabels({tr("Page"), tr("Setting"), tr("Panel"), tr("Instrument"), tr("File")});
  m_tblDifferences->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  m_tblDifferences->horizontalHeader()->setStretchLastSection(true);
  m_tblDifferences->verticalHeader()->hide();
  m_tblDifferences->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_tblDifferences->setSelectionMode(QAbstractItemView::ExtendedSelection);
  m_tblDifferences->setEditTriggers(QAbstractItemView::NoEditTriggers);
  // The Tab key leaves the table, and the arrow keys walk in it.
  m_tblDifferences->setTabKeyNavigation(false);
  connect(m_tblDifferences, &QTableWidget::itemSelectionChanged, this, &CompareDialog::EnableButtons);
  auto *copy = new QShortcut(QKeySequence(QKeySequence::Copy), m_tblDifferences, nullptr, nullptr, Qt::WidgetShortcut);
  connect(copy, &QShortcut::activated, this, &CompareDialog::Copy);
  return m_tblDifferences;
}

QWidget *CompareDialog::MakeSources() {
  auto *row = new QWidget;
  auto *layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  m_lblCount = new QLabel;
  m_lblCount->setObjectName(QStringLiteral("lblCount"));
  m_lblCount->setTextFormat(Qt::PlainText);
  layout->addWidget(m_lblCount, 1);
  layout->addWidget(MakeButton("cmdReadInstrument", tr("&Read instrument"), &CompareDialog::ReadInstrument));
  layout->addWidget(MakeButton("cmdOpenFile", tr("&Open file..."), &CompareDialog::OpenFile));
  return row;
}

QWidget *CompareDialog::MakeButtons() {
  auto *box = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  m_cmdTakeInstrument =
      MakeButton("cmdTakeInstrument", tr("Take over from &instrument"), &CompareDialog::TakeFromInstrument);
  m_cmdTakeFile = MakeButton("cmdTakeFile", tr("&Take over from file"), &CompareDialog::TakeFromFile);
  m_cmdCopy = MakeButton("cmdCopy", tr("&Copy as text"), &CompareDialog::Copy);
  for (QPushButton *button : {m_cmdTakeInstrument, m_cmdTakeFile, m_cmdCopy})
    box->addButton(button, QDialogButtonBox::ActionRole);
  return box;
}

QPushButton *CompareDialog::MakeButton(const char *strName, const QString &strText, void (CompareDialog::*slot)()) {
  auto *button = new QPushButton(strText);
  button->setObjectName(QString::fromLatin1(strName));
  // Enter in the filter presses none of them.
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, slot);
  return button;
}

// ---- Work ----

void CompareDialog::ReadInstrument() {
  auto setup = m_sources.instrument();
  if (!setup) return;
  m_comparison.Set(ComparedSide::Instrument, std::move(setup));
  Refresh();
}

void CompareDialog::OpenFile() {
  QString strName;
  auto setup = m_sources.file(strName);
  if (!setup) return;
  m_strFile = strName;
  m_comparison.Set(ComparedSide::File, std::move(setup));
  Refresh();
}

void CompareDialog::Refresh() {
  m_comparison.Set(ComparedSide::Panel, m_sources.panel());
  const auto ePage = static_cast<TabNumEnum>(m_cboPage->currentData().toInt());
  m_arrRows = m_comparison.Rows(ePage, m_txtFilter->text().trimmed().toStdString(), TheHost().DecimalSeparator());
  m_tblDifferences->clearSelection();
  m_tblDifferences->setRowCount(static_cast<int>(m_arrRows.size()));
  for (int row = 0; row < m_tblDifferences->rowCount(); ++row) {
    const ComparedRow &compared = m_arrRows[static_cast<std::size_t>(row)];
    const auto set = [&](int column, std::string_view strText) {
      m_tblDifferences->setItem(row, column, new QTableWidgetItem(ToQString(strText)));
    };
    set(ColumnPage, PageCaption(compared.setting->ePage));
    set(ColumnSetting, compared.setting->Caption(compared.lngChannel));
    for (int side = 0; side < 3; ++side) set(ColumnPanel + side, compared.arrTexts[static_cast<std::size_t>(side)]);
  }
  const bool fOther = m_comparison.Has(ComparedSide::Instrument) || m_comparison.Has(ComparedSide::File);
  m_lblCount->setText(fOther ? CountText(m_arrRows.size())
                             : tr("Read the instrument or open a file to compare the panel with it."));
  m_tblDifferences->horizontalHeaderItem(ColumnFile)->setText(m_strFile.isEmpty() ? tr("File") : m_strFile);
  EnableButtons();
}

void CompareDialog::EnableButtons() {
  const bool fChosen = !Chosen().empty();
  m_cmdTakeInstrument->setEnabled(fChosen && m_comparison.Has(ComparedSide::Instrument));
  m_cmdTakeFile->setEnabled(fChosen && m_comparison.Has(ComparedSide::File));
  m_cmdCopy->setEnabled(!m_arrRows.empty());
}

std::vector<ComparedRow> CompareDialog::Chosen() const {
  std::vector<ComparedRow> arrChosen;
  for (const QModelIndex &index : m_tblDifferences->selectionModel()->selectedRows())
    arrChosen.push_back(m_arrRows[static_cast<std::size_t>(index.row())]);
  return arrChosen;
}

void CompareDialog::Copy() {
  const std::vector<ComparedRow> arrChosen = Chosen();
  QApplication::clipboard()->setText(ToQString(ToText(arrChosen.empty() ? m_arrRows : arrChosen)));
}

void CompareDialog::Take(ComparedSide eFrom) {
  if (!m_comparison.Has(ComparedSide::Panel)) return;
  m_sources.show(m_comparison.Taken(eFrom, Chosen()));
  Refresh();
}

}  // namespace tarvik
