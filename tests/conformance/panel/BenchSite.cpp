#include "BenchSite.h"

#include <map>

#include "Words.h"

namespace tarvik::paneltest {

Variant ToVariant(const Json &value) {
  if (value.is_boolean()) return Boolean(value.get<bool>());
  if (value.is_number_integer()) return value.get<Long>();
  if (value.is_number()) return value.get<Double>();
  if (value.is_string()) return value.get<std::string>();
  if (value.is_null()) return std::monostate{};
  throw BadLine("no simple value");
}

Json ToJsonValue(const Variant &value) {
  return std::visit(
      [](const auto &held) -> Json {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::monostate>)
          return nullptr;
        else if constexpr (std::is_same_v<Held, Boolean>)
          return static_cast<bool>(held);
        else
          return held;
      },
      value);
}

PropertyBag ToBag(const std::string &strJson) {
  PropertyBag bag;
  const auto values = Json::parse(strJson).get<std::map<std::string, Json>>();
  for (const auto &[strKey, value] : values) bag.Set(strKey, ToVariant(value));
  return bag;
}

Json Written(const PropertyBag &bag) {
  Json list = Json::array();
  for (const auto &[strKey, vValue, vDefault] : bag.Written())
    list.push_back(Json::array({strKey, ToJsonValue(vValue), ToJsonValue(vDefault)}));
  return list;
}

}  // namespace tarvik::paneltest
