#pragma once

#include <QUndoCommand>
#include <bitset>
#include <optional>
#include <vector>

#include "panel/PanelMemento.h"

namespace tarvik {

/// What one action changed: the parts of the panel that differ, before and after it.
class UndoStep : public QUndoCommand {
 public:
  struct Change {
    std::size_t lngPart;
    KeptPart before, after;
  };
  using Pages = std::bitset<eNumPages>;

  UndoStep(const QString &strName, std::vector<Change> arrChanges, Pages pages, std::optional<int> intRun);

  const std::vector<Change> &Changes() const { return m_arrChanges; }
  /// The pages that the step changes.
  Pages ChangedPages() const { return m_pages; }

  /// Steps of one run of the digit cursor become one.
  int id() const override { return m_intRun.value_or(-1); }
  bool mergeWith(const QUndoCommand *next) override;

  /// The name of a field, and what it showed before and after.
  struct FieldName {
    QString strName, strBefore, strAfter;
  };
  void SetFieldName(FieldName name) { m_fieldName = std::move(name); }

 private:
  std::vector<Change> m_arrChanges;
  Pages m_pages;
  std::optional<int> m_intRun;
  FieldName m_fieldName;
};

}  // namespace tarvik
