#include "platform/PropertyTable.h"

#include <algorithm>
#include <cstring>

namespace tarvik {

PropertyDescriptions DescriptionsOf(const PropertyTable &arrProperties) {
  PropertyDescriptions arrDescriptions;
  for (const ControlProperty &property : arrProperties)
    if (*property.strDescription) arrDescriptions.emplace_back(property.strKey, property.strDescription);
  return arrDescriptions;
}

void WriteStored(const FormControl &control, const PropertyTable &arrProperties, PropertyBag &bag) {
  std::vector<const ControlProperty *> arrStored;
  for (const ControlProperty &property : arrProperties)
    if (property.eKind == ControlProperty::Kind::Stored) arrStored.push_back(&property);
  std::sort(arrStored.begin(), arrStored.end(), [](const ControlProperty *left, const ControlProperty *right) {
    return std::strcmp(left->strKey, right->strKey) < 0;
  });
  for (const ControlProperty *property : arrStored)
    bag.WriteProperty(property->strKey, property->Get(control), property->vDefault);
}

}  // namespace tarvik
