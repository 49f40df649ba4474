#include "panel/UndoStep.h"

#include <algorithm>

namespace tarvik {

UndoStep::UndoStep(const QString &strName, std::vector<Change> arrChanges, Pages pages, std::optional<int> intRun)
    : QUndoCommand(strName), m_arrChanges(std::move(arrChanges)), m_pages(pages), m_intRun(intRun) {}

bool UndoStep::mergeWith(const QUndoCommand *next) {
  const auto &later = static_cast<const UndoStep &>(*next);
  for (const Change &change : later.m_arrChanges) {
    const auto found = std::ranges::find(m_arrChanges, change.lngPart, &Change::lngPart);
    if (found == m_arrChanges.end())
      m_arrChanges.push_back(change);
    else
      found->after = change.after;
  }
  m_pages |= later.m_pages;
  m_fieldName.strAfter = later.m_fieldName.strAfter;
  setText(m_fieldName.strName + QStringLiteral(": ") + m_fieldName.strBefore + QStringLiteral(" to ") +
          m_fieldName.strAfter);
  // A run that ends where it began has changed no setting.
  setObsolete(std::ranges::all_of(
      m_arrChanges, [](const Change &change) { return change.before->strSettings == change.after->strSettings; }));
  return true;
}

}  // namespace tarvik
