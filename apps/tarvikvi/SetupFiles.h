#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class QAction;
class QMainWindow;
class QMenu;
class QMimeData;

namespace tarvik {

class PanelArea;

/// Setup files in the program: the entries of the File and Instruments menus, the files that were used last, files that
/// are dropped on the window, and the questions before settings would be lost.
class SetupFiles : public QObject {
  Q_OBJECT

 public:
  SetupFiles(QMainWindow &window, PanelArea &area);

  void AddTo(QMenu &file);
  void AddCompareTo(QMenu &menu);
  /// After the area got another panel.
  void WatchPanel();

  /// Asks the user where something would be lost. False when the user keeps it.
  bool MayClose();
  /// "demo.json[*] - ", or empty without a file.
  QString TitlePart() const;

 Q_SIGNALS:
  /// Another file, or its modified mark changed.
  void TitleChanged();

 protected:
  /// A file may be dropped anywhere on the window, also on a field that would take its name as text.
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  QAction *AddAction(QMenu &menu, const char *strName, const QString &strText, void (SetupFiles::*slot)());
  void Open();
  void Save();
  void SaveAs();
  void Compare();
  void OpenFile(const QString &strFile);
  bool SaveTo(const QString &strFile);
  bool MayOpen();
  bool Agrees(const QString &strQuestion) const;
  QString Folder() const;
  void Remember(const QString &strFile);
  void ShowRecent();
  static QString FileIn(const QMimeData &data);

  QMainWindow &m_window;
  PanelArea &m_area;
  QMenu *m_mnuRecent = nullptr;
  QStringList m_arrRecent;  ///< the latest first
};

}  // namespace tarvik
