#pragma once

#include "LineProtocol.h"
#include "RecordFields.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik::test {

inline Json ToJson(Boolean fValue) { return fValue.Word(); }
inline Json ToJson(Long lngValue) { return lngValue; }
inline Json ToJson(Double dblValue) { return ToText17(dblValue); }
inline Json ToJson(const std::string &strText) { return strText; }
template <class T>
Json ToJson(const ChannelArray<T> &arr) {
  return Json::array({ToJson(arr[1]), ToJson(arr[2])});
}

inline void FromJson(const Json &value, Boolean &fValue) { fValue = value.get<double>() != 0; }
inline void FromJson(const Json &value, Long &lngValue) { lngValue = static_cast<Long>(value.get<std::int64_t>()); }
inline void FromJson(const Json &value, Integer &intValue) {
  intValue = static_cast<Integer>(value.get<std::int64_t>());
}
inline void FromJson(const Json &value, Double &dblValue) { dblValue = value.get<double>(); }
inline void FromJson(const Json &value, std::string &strText) { strText = value.get<std::string>(); }
template <class T>
void FromJson(const Json &value, ChannelArray<T> &arr) {
  FromJson(value.at(0), arr[1]);
  FromJson(value.at(1), arr[2]);
}

template <class Record>
Record ReadRecord(const Json &value) {
  Record record;
  VisitFields(record, [&](const char *strName, auto &field) {
    if (const auto found = value.find(strName); found != value.end()) FromJson(*found, field);
  });
  return record;
}

template <class Record>
Json WriteRecord(Record record) {
  Json result = Json::object();
  VisitFields(record, [&](const char *strName, auto &field) { result[strName] = ToJson(field); });
  return result;
}

}  // namespace tarvik::test
