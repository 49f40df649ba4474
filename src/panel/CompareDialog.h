#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "settings/SetupComparison.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace tarvik {

/// Panel, instrument and a setup file side by side: what differs, by page and by text, and what of it the panel takes
/// over. The dialog changes nothing by itself.
class CompareDialog : public QDialog {
  Q_OBJECT

 public:
  /// Where the setups come from. What fails has told so in a box and gives none.
  struct Sources {
    std::function<std::optional<Setup>()> panel, instrument;
    /// Asks the user for a file, and tells its name.
    std::function<std::optional<Setup>(QString &strName)> file;
    /// Shows this setup on the panel.
    std::function<void(const Setup &setup)> show;
  };

  CompareDialog(Sources sources, QWidget *parent);

 private:
  QWidget *MakeFilters();
  QWidget *MakeTable();
  QWidget *MakeSources();
  QWidget *MakeButtons();
  QPushButton *MakeButton(const char *strName, const QString &strText, void (CompareDialog::*slot)());

  void ReadInstrument();
  void OpenFile();
  void TakeFromInstrument() { Take(ComparedSide::Instrument); }
  void TakeFromFile() { Take(ComparedSide::File); }
  void Copy();
  void Take(ComparedSide eFrom);
  /// Lists the differences anew.
  void Refresh();
  void EnableButtons();
  std::vector<ComparedRow> Chosen() const;

  const Sources m_sources;
  SetupComparison m_comparison;
  std::vector<ComparedRow> m_arrRows;  ///< as the table lists them
  QString m_strFile;
  QLineEdit *m_txtFilter = nullptr;
  QComboBox *m_cboPage = nullptr;
  QTableWidget *m_tblDifferences = nullptr;
  QLabel *m_lblCount = nullptr;
  QPushButton *m_cmdTakeInstrument = nullptr;
  QPushButton *m_cmdTakeFile = nullptr;
  QPushButton *m_cmdCopy = nullptr;
};

}  // namespace tarvik
