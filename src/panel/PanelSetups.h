#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "panel/Panel.h"

namespace tarvik {

/// Setups that come to the pages from elsewhere than the instrument, and the file that the pages belong to.
class PanelSetups {
 public:
  explicit PanelSetups(TarvikGUI::Panel &panel) : m_panel(panel) {}

  /// Shows the file's setup, tells in one box what had to be left out, and makes it the panel's file. Error 321 and the
  /// errors of reading a file tell all reasons; nothing changes then.
  void Open(const std::filesystem::path &file);
  /// Writes what the pages show, and makes it the panel's file. A failure leaves the old file whole.
  void Save(const std::filesystem::path &file);
  /// Shows a setup of the open instrument as one step of the history; pages that an upload has to send for it turn
  /// dirty.
  void Show(const Setup &setup, const QString &strStep);
  /// Opens the dialog that compares panel, instrument and a file.
  void Compare();
  /// Tells the host where file or modified mark changed.
  void TellFile();
  /// An entry that is being typed counts, as it does for a click on a button.
  void TakeOpenEntry() const;

  /// Empty before a file was opened or saved.
  const std::filesystem::path &File() const { return m_file; }
  /// The pages show something else than the file has. False without a file.
  bool IsModified() const;

 private:
  std::optional<Setup> ReadInstrument() const;
  std::optional<Setup> ReadFile(QString &strName) const;
  void MakeFile(const std::filesystem::path &file, const Setup &setup);

  TarvikGUI::Panel &m_panel;
  std::filesystem::path m_file;
  std::optional<Setup> m_inFile;  ///< as the pages show it
  bool m_fToldModified = false;
};

}  // namespace tarvik
