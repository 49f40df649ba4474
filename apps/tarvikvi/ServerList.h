#pragma once

#include <QString>
#include <QStringList>

namespace tarvik {

/// The driver servers that the user works with, and the one that the program connects to. The list is the program's
/// own: what the instrument interface stores of an address is gone after each start that needs no question. An empty
/// address is this machine.
class ServerList {
 public:
  /// Reads what the program kept. Where it never kept anything, the address that the instrument interface stored last
  /// is the chosen one.
  ServerList();

  /// What the program connects to.
  const QString &Current() const { return m_strCurrent; }
  /// All servers that were ever chosen, the latest first; this machine is none of them.
  const QStringList &Known() const { return m_arrKnown; }

  /// Connects there from now on, also at the next start.
  void Choose(const QString &strAddress);
  /// Connects there until the program ends.
  void UseOnce(const QString &strAddress) { m_strCurrent = strAddress.trimmed(); }
  /// Takes a server off the list. What the program connects to stays.
  void Forget(const QString &strAddress);

  /// Puts the current address where the instrument interface reads it when a panel starts. Raises RunTimeError where
  /// the settings cannot be read or written.
  void HandOver() const;

  /// The address, or "this machine".
  static QString NameOf(const QString &strAddress);

 private:
  void KeepAll() const;

  QString m_strChosen;
  QString m_strCurrent;
  QStringList m_arrKnown;
};

}  // namespace tarvik
