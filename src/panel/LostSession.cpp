#include "panel/LostSession.h"

#include <algorithm>
#include <string>

#include "support/Boxes.h"

namespace tarvik {

namespace {

constexpr const char *PageNames[eNumPages] = {"Instr.", "Mode/Trg", "Timing", "Levels", "Pattern",
                                              "Limits", "Trg-Lev",  "Config", "Options"};

std::string NamesOfChanged(const PageStates &arrStates) {
  std::string strNames;
  for (std::size_t i = 0; i < arrStates.size(); ++i)
    if (arrStates[i] == ePageIsDirty) strNames += (strNames.empty() ? "" : ", ") + std::string(PageNames[i]);
  return strNames;
}

bool HasChanges(const PageStates &arrStates) { return std::ranges::find(arrStates, ePageIsDirty) != arrStates.end(); }

}  // namespace

void LostSession::MarkPages(const PageStates &arrStates) {
  for (Long lngPage = 0; lngPage < eNumPages; ++lngPage)
    if (StateOf(arrStates, lngPage) == ePageIsDirty)
      m_panel.SetTabState(ePageIsDirty, static_cast<TabNumEnum>(lngPage));
}

void LostSession::Begin() {
  m_fLost = true;
  if (!m_arrChanged) m_arrChanged.emplace();
  if (m_arrBeforeUpload) MarkPages(*m_arrBeforeUpload);
}

void LostSession::NoteChanges() {
  if (!m_arrChanged) return;
  const PageStates &arrNow = m_panel.State().meTabState;
  for (std::size_t i = 0; i < arrNow.size(); ++i)
    if (arrNow[i] == ePageIsDirty) (*m_arrChanged)[i] = ePageIsDirty;
}

void LostSession::MarkChanges() {
  if (m_arrChanged) MarkPages(*m_arrChanged);
}

bool LostSession::KeepsChanges(bool fAutoDownload) {
  if (!m_arrChanged) return false;
  const PageStates arrChanged = *m_arrChanged;
  bool fKeeps = HasChanges(arrChanged);
  if (fKeeps && fAutoDownload)
    fKeeps = ShowBox("The connection was lost while these pages held changes that were not uploaded: " +
                         NamesOfChanged(arrChanged) +
                         "\r\nKeep my edits?\r\n\r\nYes: nothing is read now, and the next upload sends them.\r\n"
                         "No: the settings of the instrument are read over them.",
                     BoxIcon::Question, BoxButtons::YesNo) == BoxAnswer::Yes;
  m_arrChanged.reset();
  if (fKeeps) MarkPages(arrChanged);
  return fKeeps;
}

}  // namespace tarvik
