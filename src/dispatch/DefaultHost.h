#pragma once

namespace tarvik {

/// Installs a host unless there is one: that of the toolkit in a program with a QApplication, otherwise ConsoleHost,
/// which is the only one in a library without the toolkit.
void EnsureHost();

}  // namespace tarvik
