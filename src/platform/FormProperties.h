#pragma once

#include <QVariant>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/ControlSite.h"
#include "platform/PropertyBag.h"
#include "support/Export.h"
#include "support/Variant.h"

class QEvent;
class QWidget;

namespace tarvik {

/// The properties of a control as a form of the toolkit knows them.
///
/// A form sets properties one by one, in the order of its file, which need not be the order that the control needs;
/// compiled forms set the texts after all others.
/// So until the control is shown for the first time each property that comes in joins what came before, and the control
/// reads all of it anew, in its own order. Afterwards, and as soon as the host has changed a property by the control's
/// own operations, an assignment goes to the control's property alone. What a value cannot be made of leaves the
/// default, and a message tells of it; at design time a refused assignment shows its message in a box.
class TARVIK_EXPORT FormProperties {
 public:
  struct Property {
    const char *strKey;
    /// Default of the stored property; its type is the property's.
    Variant vDefault;
    std::function<Variant()> Get;
    /// Empty for a property that is only read.
    std::function<void(const PropertyBag &)> Assign;
    /// Among the stored properties of the control.
    bool fStored = true;
    /// An assignment is taken and does nothing.
    bool fDeaf = false;
  };

  /// A stored property of a control, by the control's own operations.
  template <class Control, class Default, class Get, class Set>
  static Property Stored(Control &control, const char *strKey, Default vDefault, Get get, Set set) {
    return {strKey, AsVariant(vDefault), [&control, get] { return AsVariant((control.*get)()); },
            [&control, strKey, vDefault, set](const PropertyBag &bag) {
              (control.*set)(bag.ReadProperty(strKey, vDefault));
            }};
  }
  /// One that does not go into the file.
  template <class Control, class Default, class Get, class Set>
  static Property Passing(Control &control, const char *strKey, Default vDefault, Get get, Set set) {
    Property property = Stored(control, strKey, vDefault, get, set);
    property.fStored = false;
    return property;
  }
  /// One whose assignment does nothing.
  template <class Control, class Default, class Get>
  static Property Deaf(Control &control, const char *strKey, Default vDefault, Get get) {
    return {strKey,
            AsVariant(vDefault),
            [&control, get] { return AsVariant((control.*get)()); },
            [](const PropertyBag &) {},
            false,
            true};
  }
  /// One that is only read.
  template <class Control, class Default, class Get>
  static Property Reading(Control &control, const char *strKey, Default vDefault, Get get) {
    return {strKey, AsVariant(vDefault), [&control, get] { return AsVariant((control.*get)()); }, nullptr, false};
  }

  FormProperties(QWidget &widget, ControlSite &site, std::vector<Property> arrProperties,
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
  template <class T>
  static Variant AsVariant(const T &value) {
    if constexpr (std::is_same_v<T, Single>)
      return Double{value};
    else if constexpr (std::is_convertible_v<T, std::string>)
      return std::string(value);
    else
      return Variant(value);
  }

  const Property *Find(const char *strKey) const;
  std::vector<Variant> Standing() const;
  bool ChangedByHost(const Property &besides) const;
  void Load(const Property &property, const PropertyBag &single);
  void Assign(const Property &property, const PropertyBag &bag);
  void Tell(const std::string &strWhat) const;

  QWidget &m_widget;
  ControlSite &m_site;
  std::vector<Property> m_arrProperties;
  std::function<void(const PropertyBag &)> m_readAll;
  PropertyBag m_loaded;
  /// What a form assigned besides, in the order of assignment: reading anew undoes it.
  std::vector<std::pair<const Property *, PropertyBag>> m_arrPassed;
  /// The properties as the latest one of the form left them; empty before that.
  std::vector<Variant> m_arrStanding;
  bool m_fLoading = true;
};

}  // namespace tarvik

/// Declares one stored property of the form in a control that has a member m_form of the class above.
#define TARVIK_FORM_PROPERTY(key)                                                 \
  Q_PROPERTY(QVariant key READ Form##key WRITE SetForm##key RESET ResetForm##key) \
  TARVIK_FORM_ACCESS(key)

/// The same for one that does not go into the file; behind the name whatever else the toolkit is to know of it.
#define TARVIK_FORM_PASSING(key, ...)                                                                      \
  Q_PROPERTY(QVariant key READ Form##key WRITE SetForm##key RESET ResetForm##key STORED false __VA_ARGS__) \
  TARVIK_FORM_ACCESS(key)

/// Declares the property by which the form designer says that the control was newly placed on a form. It never goes
/// into a file, so a control that is read from one is not new.
#define TARVIK_FORM_NEW                                                                                       \
  Q_PROPERTY(bool NewOnForm READ FormIsNew WRITE SetFormIsNew DESIGNABLE false SCRIPTABLE false STORED false) \
  bool FormIsNew() const { return false; }                                                                    \
  void SetFormIsNew(bool fNew) {                                                                              \
    if (fNew) m_form.BeginNew([this] { InitProperties(); });                                                  \
  }

#define TARVIK_FORM_ACCESS(key)                                           \
  QVariant Form##key() const { return m_form.Read(#key); }                \
  void SetForm##key(const QVariant &value) { m_form.Write(#key, value); } \
  void ResetForm##key() { m_form.Reset(#key); }

/// The same for one that is only read.
#define TARVIK_FORM_READING(key, ...)                              \
  Q_PROPERTY(QVariant key READ Form##key STORED false __VA_ARGS__) \
  QVariant Form##key() const { return m_form.Read(#key); }
