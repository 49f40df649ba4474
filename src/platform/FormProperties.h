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

/// The properties of a control as a form of the toolkit knows them.
///
/// A form sets properties one by one, in the order of its file, which need not be the order that the control needs;
/// compiled forms set the texts after all others.
/// So until the control is shown for the first time each property that comes in joins what came before, and the control
/// reads all of it anew, in its own order. Afterwards, and as soon as the host has changed a property by the control's
/// own operations, an assignment goes to the control's property alone. What a value cannot be made of leaves the
/// default, and a message tells of it; at design time a refused assignment shows its message in a box.
class FormProperties {
 public:
  FormProperties(FormControl &control, ControlSite &site, const PropertyTable &arrProperties,
                 std::function<void(const PropertyBag &)> ReadAll);

  /// On a form that has told nothing yet: the control reads its defaults.
  void Begin();

  /// A control that was newly placed on a form: init gives it the state of one, which the container is told of.
  void BeginNew(const std::function<void()> &init);

  QVariant Read(const char *strKey) const;
  void Write(const char *strKey, const QVariant &value);
  void Reset(const char *strKey);

  /// To be called with each event of the widget: the first showing ends the loading, and a property that the control
  /// does not have is told of.
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
  /// What a form assigned besides, in the order of assignment: reading anew undoes it.
  std::vector<std::pair<const ControlProperty *, PropertyBag>> m_arrPassed;
  /// The properties as the latest one of the form left them; empty before that.
  std::vector<Variant> m_arrStanding;
  bool m_fLoading = true;
};

}  // namespace tarvik
