#include "dispatch/DefaultHost.h"

#include <QApplication>

#include "platform/ConsoleHost.h"
#include "platform/QtHost.h"

namespace tarvik {

void EnsureHost() {
  static const bool fDone = [] {
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
      EnsureQtHost();
      return true;
    }
    static ConsoleHost host;
    if (Host *before = SetHost(&host)) SetHost(before);
    return true;
  }();
  static_cast<void>(fDone);
}

}  // namespace tarvik
