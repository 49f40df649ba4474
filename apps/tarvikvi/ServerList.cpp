#include "ServerList.h"

#include <QCoreApplication>

#include "Kept.h"
#include "support/Host.h"

namespace tarvik {

namespace {

constexpr const char *ServersSection = "Servers", *ChosenKey = "Chosen", *KnownKey = "Known";
/// Between the addresses that are kept; no address that somebody typed into a line has it.
constexpr char Between = '\n';

/// Where the instrument interface keeps its address, and what it takes for "never stored".
constexpr const char *InterfaceSection = "LastUsed", *InterfaceKey = "ServerURL", *NeverStored = "Unknown";

}  // namespace

ServerList::ServerList() {
  m_arrKnown =
      QString::fromStdString(Kept(ServersSection, KnownKey, {})).split(QLatin1Char(Between), Qt::SkipEmptyParts);
  const std::string strChosen = Kept(ServersSection, ChosenKey, NeverStored);
  if (strChosen == NeverStored) {
    // Taken over once and kept: later on an address there may be one that was meant for a single run.
    const std::string strStored = Kept(InterfaceSection, InterfaceKey, NeverStored);
    Choose(strStored == NeverStored ? QString() : QString::fromStdString(strStored));
  } else {
    m_strCurrent = m_strChosen = QString::fromStdString(strChosen);
  }
}

void ServerList::Choose(const QString &strAddress) {
  m_strCurrent = m_strChosen = strAddress.trimmed();
  if (!m_strChosen.isEmpty()) {
    m_arrKnown.removeAll(m_strChosen);
    m_arrKnown.prepend(m_strChosen);
  }
  KeepAll();
}

void ServerList::Forget(const QString &strAddress) {
  m_arrKnown.removeAll(strAddress);
  KeepAll();
}

void ServerList::HandOver() const {
  const std::string strCurrent = m_strCurrent.toStdString();
  const std::string strStored = TheHost().GetSetting(AppTitle, InterfaceSection, InterfaceKey, NeverStored);
  // Nothing stored means this machine as well, and the question for an address says so by its default.
  if (strStored == strCurrent || (strStored == NeverStored && strCurrent.empty())) return;
  TheHost().SaveSetting(AppTitle, InterfaceSection, InterfaceKey, strCurrent);
}

QString ServerList::NameOf(const QString &strAddress) {
  return strAddress.isEmpty() ? QCoreApplication::translate("ServerList", "this machine") : strAddress;
}

void ServerList::KeepAll() const {
  Keep(ServersSection, ChosenKey, m_strChosen.toStdString());
  Keep(ServersSection, KnownKey, m_arrKnown.join(QLatin1Char(Between)).toStdString());
}

}  // namespace tarvik
