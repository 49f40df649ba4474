#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/FormControl.h"
#include "platform/PropertyBag.h"
#include "support/Variant.h"

namespace tarvik {

/// One property of a control. Reading and writing of the stored properties, the forms of the toolkit and the form
/// designer all go by this row.
struct ControlProperty {
  enum class Kind {
    Stored,    ///< read and written with the control
    FormOnly,  ///< read with the control and kept by forms; WriteProperties leaves it out
    Passing,   ///< can be assigned, is never stored
    Deaf,      ///< an assignment is accepted and has no effect
    ReadOnly,
  };

  const char *strKey;
  Kind eKind;
  /// Its type is the type of the property.
  Variant vDefault;
  std::function<Variant(const FormControl &)> Get;
  /// Assigns the value that the bag has for the key, or the default. Empty for a read-only property.
  std::function<void(FormControl &, const PropertyBag &)> Assign;
  /// Text for the designer's property editor; empty for none.
  const char *strDescription = "";

  bool IsRead() const { return eKind == Kind::Stored || eKind == Kind::FormOnly; }
};

/// All properties of a class of controls, in the order in which they are read.
using PropertyTable = std::vector<ControlProperty>;

PropertyDescriptions DescriptionsOf(const PropertyTable &arrProperties);

/// Writes the stored properties with their defaults, in the order of their keys.
void WriteStored(const FormControl &control, const PropertyTable &arrProperties, PropertyBag &bag);

/// Rows of the table of one class. `get` and `set` are members of the class, or functions that take the control.
template <class Owner>
struct PropertyRow {
  template <class Default, class Get, class Set>
  static ControlProperty Stored(const char *strKey, Default vDefault, Get get, Set set,
                                const char *strDescription = "") {
    return Assigned(ControlProperty::Kind::Stored, strKey, vDefault, get, set, strDescription);
  }
  template <class Default, class Get, class Set>
  static ControlProperty FormOnly(const char *strKey, Default vDefault, Get get, Set set) {
    return Assigned(ControlProperty::Kind::FormOnly, strKey, vDefault, get, set, "");
  }
  template <class Default, class Get, class Set>
  static ControlProperty Passing(const char *strKey, Default vDefault, Get get, Set set,
                                 const char *strDescription = "") {
    return Assigned(ControlProperty::Kind::Passing, strKey, vDefault, get, set, strDescription);
  }
  template <class Default, class Get>
  static ControlProperty Deaf(const char *strKey, Default vDefault, Get get, const char *strDescription = "") {
    return {strKey, ControlProperty::Kind::Deaf, AsVariant(vDefault), Getter(get), [](auto &&...) {}, strDescription};
  }
  template <class Default, class Get>
  static ControlProperty ReadOnly(const char *strKey, Default vDefault, Get get) {
    return {strKey, ControlProperty::Kind::ReadOnly, AsVariant(vDefault), Getter(get), nullptr};
  }

 private:
  template <class Default, class Get, class Set>
  static ControlProperty Assigned(ControlProperty::Kind eKind, const char *strKey, Default vDefault, Get get, Set set,
                                  const char *strDescription) {
    return {strKey,
            eKind,
            AsVariant(vDefault),
            Getter(get),
            [strKey, vDefault, set](FormControl &control, const PropertyBag &bag) {
              std::invoke(set, static_cast<Owner &>(control), bag.ReadProperty(strKey, vDefault));
            },
            strDescription};
  }
  template <class Get>
  static std::function<Variant(const FormControl &)> Getter(Get get) {
    return
        [get](const FormControl &control) { return AsVariant(std::invoke(get, static_cast<const Owner &>(control))); };
  }
  template <class T>
  static Variant AsVariant(const T &value) {
    if constexpr (std::is_same_v<T, Single>)
      return Double{value};
    else if constexpr (std::is_convertible_v<T, std::string>)
      return std::string(value);
    else
      return Variant(value);
  }
};

}  // namespace tarvik
