#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "support/Export.h"
#include "support/Types.h"
#include "support/Variant.h"

namespace tarvik {

/// Stored properties of a control: values by key. A form's table is one, the form designer is another
/// source of them.
class TARVIK_EXPORT PropertyBag {
 public:
  /// What a control wrote, in the order of writing.
  struct Entry {
    std::string strKey;
    Variant vValue;
    Variant vDefault;
  };

  PropertyBag() = default;
  PropertyBag(std::initializer_list<std::pair<const std::string, Variant>> values) : m_values(values) {}

  bool Contains(const std::string &strKey) const { return m_values.contains(strKey); }
  void Set(const std::string &strKey, Variant vValue) { m_values[strKey] = std::move(vValue); }

  /// The stored value, or the default where the key is missing. A value of another type is converted;
  /// error 13 where that cannot be done. Numbers in texts always have "." as separator.
  std::string ReadProperty(const std::string &strKey, const char *strDefault) const;
  std::string ReadProperty(const std::string &strKey, const std::string &strDefault) const;
  Boolean ReadProperty(const std::string &strKey, Boolean fDefault) const;
  Long ReadProperty(const std::string &strKey, Long lngDefault) const;
  Double ReadProperty(const std::string &strKey, Double dblDefault) const;
  Single ReadProperty(const std::string &strKey, Single sngDefault) const;

  /// Stores the value and notes it with its default; whoever saves the bag may leave out what equals it.
  void WriteProperty(const std::string &strKey, Variant vValue, Variant vDefault);

  const std::vector<Entry> &Written() const { return m_arrWritten; }
  const std::map<std::string, Variant> &Values() const { return m_values; }

 private:
  TARVIK_HIDDEN const Variant *Find(const std::string &strKey) const;

  std::map<std::string, Variant> m_values;
  std::vector<Entry> m_arrWritten;
};

}  // namespace tarvik
