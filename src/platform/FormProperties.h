#pragma once

#include <QVariant>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ControlSite.h"
#include "platform/PropertyBag.h"
#include "platform/PropertyTable.h"
#include "support/Variant.h"

class QEvent;

namespace tarvik {

/// Sets the properties of a control on behalf of a Qt form.
///
/// A form sets properties one by one in the order of its file, compiled forms set texts last, but the control needs an
/// order of its own. So while the form is loading, each assignment is collected and the control reads all collected
/// properties again, in the order of its table. Loading ends with the first show, or as soon as the host has changed a
/// property directly; from then on an assignment sets its property alone. A value that cannot be converted is reported
/// with qWarning and leaves the default; an assignment that is rejected at design time shows its message in a box.
class FormProperties {
 public:
  FormProperties(FormControl &control, ControlSite &site, const PropertyTable &arrProperties,
                 std::function<void(const PropertyBag &)> ReadAll);

  /// Assigns the defaults.
  void Begin();

  /// For a control that was newly placed on a form: runs init and reports what differs from the defaults.
  void BeginNew(const std::function<void()> &init);

  QVariant Read(const char *strKey) const;
  void Write(const char *strKey, const QVariant &value);
  void Reset(const char *strKey);

  /// To be called with each event of the widget: the polish before the first show ends the loading, and an unknown
  /// property is reported.
  void NoteEvent(QEvent &event);

 private:
  const ControlProperty *Find(const char *strKey) const;
  std::vector<Variant> Standing() const;
  bool ChangedByHost(const ControlProperty &besides) const;
  void Load(const ControlProperty &property, const PropertyBag &single);
  void Assign(const ControlProperty &property, const PropertyBag &bag);
  void Tell(const std::string &strWhat) const;

  FormControl &m_control;
  ControlSite &m_site;
  const PropertyTable &m_arrProperties;
  std::function<void(const PropertyBag &)> m_readAll;
  PropertyBag m_loaded;
  /// Assignments of properties that are not stored, in order; repeated after each reading, which resets them.
  std::vector<std::pair<const ControlProperty *, PropertyBag>> m_arrPassed;
  /// All properties after the last assignment of the form, to detect changes by the host; empty before the first.
  std::vector<Variant> m_arrStanding;
  bool m_fLoading = true;
};

}  // namespace tarvik
