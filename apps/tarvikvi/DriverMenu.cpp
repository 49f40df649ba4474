#include "DriverMenu.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <algorithm>

#include "Kept.h"
#include "automation/Activation.h"
#include "instrument/KolvenDriver.h"

namespace tarvik {

namespace {

constexpr const char *DriverSection = "Driver", *NameKey = "Name";

}  // namespace

DriverMenu::DriverMenu(QMenu &menu, const std::optional<std::string> &strForThisRun, std::function<bool()> mayChange)
    : QObject(&menu),
      m_menu(menu.addMenu(tr("&Driver"))),
      m_group(new QActionGroup(this)),
      m_mayChange(std::move(mayChange)) {
  m_menu->setObjectName(QStringLiteral("menuDriver"));
  m_menu->menuAction()->setObjectName(QStringLiteral("actionDriver"));
  automation::ChooseDriver(kolven::DriverProgId, strForThisRun ? *strForThisRun : Kept(DriverSection, NameKey, {}));
  connect(m_menu, &QMenu::aboutToShow, this, &DriverMenu::Fill);
  Fill();
}

QString DriverMenu::Current() { return QString::fromStdString(automation::ChosenDriver(kolven::DriverProgId)); }

void DriverMenu::Fill() {
  m_menu->clear();
  std::vector<std::string> arrNames = automation::DriversOf(kolven::DriverProgId);
  const std::string strCurrent = Current().toStdString();
  const bool fMissing = !strCurrent.empty() && std::ranges::find(arrNames, strCurrent) == arrNames.end();
  if (fMissing) arrNames.push_back(strCurrent);
  const auto add = [this](const QString &text, const QString &strName) {
    QAction *action = m_menu->addAction(text, this, [this, strName] { Choose(strName); });
    action->setObjectName(QStringLiteral("actionDriver") + strName);
    action->setActionGroup(m_group);
    action->setCheckable(true);
    action->setChecked(strName == Current());
  };
  add(tr("&As installed"), {});
  for (const std::string &strName : arrNames) {
    const QString name = QString::fromStdString(strName);
    add(fMissing && strName == strCurrent ? tr("%1 (not installed)").arg(name) : name, name);
  }
}

void DriverMenu::Choose(const QString &strName) {
  if (strName == Current()) return;
  if (m_mayChange()) {
    automation::ChooseDriver(kolven::DriverProgId, strName.toStdString());
    Keep(DriverSection, NameKey, strName.toStdString());
    Q_EMIT Chosen();
  }
  // An action ticks itself when it is taken, also where the answer was no.
  Fill();
}

}  // namespace tarvik
