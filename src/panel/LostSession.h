#pragma once

#include <optional>

#include "panel/Page.h"

namespace tarvik {

/// Keeps what the user changed from the loss of the connection until a session is open again: the values stand in the
/// controls, and this remembers which pages hold changes that no instrument has.
class LostSession {
 public:
  explicit LostSession(PanelServices &panel) : m_panel(panel) {}

  /// The connection is dead, and has not been made anew.
  bool IsLost() const { return m_fLost; }
  /// Pages that an upload had sent before the loss are changed again, since nothing of it was committed.
  void Begin();
  void ConnectionIsBack() { m_fLost = false; }

  /// An upload runs from here to the second call.
  void UploadBegins() { m_arrBeforeUpload = m_panel.State().meTabState; }
  void UploadEnds() { m_arrBeforeUpload.reset(); }

  /// Before a session ends or begins, which resets the page states: remembers the changed pages of the lost session.
  void NoteChanges();
  /// Marks those pages again.
  void MarkChanges();
  /// A session is open. True where the pages keep their changes: there are some, and, with an automatic download on the
  /// way that would overwrite them, the user wants to keep them. Afterwards the loss is forgotten.
  bool KeepsChanges(bool fAutoDownload);

 private:
  void MarkPages(const PageStates &arrStates);

  PanelServices &m_panel;
  bool m_fLost = false;
  std::optional<PageStates> m_arrBeforeUpload;
  std::optional<PageStates> m_arrChanged;  ///< empty without a loss since the last session was opened
};

}  // namespace tarvik
