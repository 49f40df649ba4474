#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <optional>

class QActionGroup;
class QMenu;

namespace tarvik {

/// The drivers of this machine to choose from, as a submenu that looks for them each time it opens. The choice is kept
/// for the next start; one for a single run is not.
class DriverMenu : public QObject {
  Q_OBJECT

 public:
  /// Chooses what was kept, or the driver of this run. mayChange is asked whether the program may change its driver
  /// before a choice of the user counts.
  DriverMenu(QMenu &menu, const std::optional<std::string> &strForThisRun, std::function<bool()> mayChange);

  /// The name of the driver in use; empty for the one without a name.
  static QString Current();

 Q_SIGNALS:
  void Chosen();

 private:
  void Fill();
  void Choose(const QString &strName);

  QMenu *m_menu;
  QActionGroup *m_group;
  std::function<bool()> m_mayChange;
};

}  // namespace tarvik
