#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "remote/Stub.h"
#include "remote/Wire.h"

namespace tarvik::remote {

/// Writes a client's frames by hand.
class Frame {
 public:
  Frame &Hello(const std::string &strProgId = "KolvenAtl.Kolven") {
    Begin(Command::Hello);
    m_out.Put(WireVersion);
    m_out.Put(ContractFingerprint());
    m_out.PutText(strProgId);
    return *this;
  }
  Frame &Call(ObjectId lngId, std::string_view strInterface, std::string_view strOperation, ObjectId lngNew = 0) {
    return Target(Command::Call, lngId, strInterface, strOperation, lngNew);
  }
  Frame &Fetch(ObjectId lngId, std::string_view strInterface, std::string_view strOperation, ObjectId lngNew) {
    return Target(Command::Fetch, lngId, strInterface, strOperation, lngNew);
  }
  Frame &Queue(ObjectId lngId, std::string_view strInterface, std::string_view strOperation) {
    return Target(Command::Queue, lngId, strInterface, strOperation, 0);
  }
  /// The end of the answer to the queued call before it.
  Frame &Expect(std::string_view strEnd) {
    Begin(Command::Expect);
    m_out.PutText(strEnd);
    return *this;
  }
  Frame &Release(ObjectId lngId) {
    Begin(Command::Release);
    m_out.Put(lngId);
    return *this;
  }
  Frame &Sync() {
    Begin(Command::Sync);
    return *this;
  }
  template <class Number>
  Frame &Argument(Number value) {
    m_out.Put(value);
    return *this;
  }
  Frame &Raw(std::string_view strBytes) {
    m_out.PutBytes(strBytes);
    return *this;
  }
  Frame &Key(const std::string &strName) {
    const automation::String text(strName);
    AutomationVariant key{};
    key.vt = automation::VtString;
    key.bstrVal = text.Get();
    PutVariant(m_out, key);
    return *this;
  }
  const std::string &Bytes() const { return m_out.Bytes(); }

 private:
  void Begin(Command eCommand) { m_out.Put(static_cast<std::uint8_t>(eCommand)); }
  Frame &Target(Command eCommand, ObjectId lngId, std::string_view strInterface, std::string_view strOperation,
                ObjectId lngNew) {
    const auto contract = Contract();
    const auto interface = std::ranges::find(contract, strInterface, &InterfaceTable::strName);
    const auto operation = std::ranges::find(interface->operations, strOperation, &Operation::strName);
    Begin(eCommand);
    m_out.Put(lngId);
    m_out.Put(static_cast<std::uint8_t>(interface - contract.begin()));
    m_out.Put(static_cast<std::uint8_t>(operation - interface->operations.begin()));
    m_out.Put(lngNew);
    return *this;
  }

  Writer m_out;
};

}  // namespace tarvik::remote
