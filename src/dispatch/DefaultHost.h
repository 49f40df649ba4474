#pragma once

namespace tarvik {

/// Installs a host unless there is one: that of the toolkit in a program with a QApplication, otherwise ConsoleHost. A
/// library without the toolkit has SystemHost.
void EnsureHost();

}  // namespace tarvik
