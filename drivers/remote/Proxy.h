#pragma once

/// What all proxies share. A proxy answers for one object of the server: it names the object by a number that
/// the client gave it, so that a fetch can be sent without waiting for what it brings.

#include <memory>

#include "automation/CallsAhead.h"
#include "automation/ErrorInfo.h"
#include "automation/Object.h"
#include "automation/ReadAhead.h"
#include "remote/Connection.h"
#include "remote/Marshal.h"

namespace tarvik::remote {

/// Makes the proxy of an interface by its number; empty for a number that no interface has.
using ProxyMaker = Ref<automation::IDispatch> (*)(std::shared_ptr<Connection> connection, ObjectId lngId);
ProxyMaker MakerOfKind(std::uint8_t intKind);

/// Proxy of an object whose interface is not in the contract: it supports reference counting only.
Ref<automation::IDispatch> MakeUnknownProxy(std::shared_ptr<Connection> connection, ObjectId lngId);

template <class Interface>
class Proxy : public automation::Object<Interface> {
 public:
  Proxy(std::shared_ptr<Connection> connection, ObjectId lngId, std::uint8_t intInterface)
      : m_connection(std::move(connection)), m_lngId(lngId), m_intInterface(intInterface) {}

  Status TARVIK_CALL QueryInterface(const automation::Guid &riid, void **ppvObject) override {
    return automation::Object<Interface>::QueryInterface(riid == automation::IidDistant ? Interface::Iid : riid,
                                                         ppvObject);
  }

 protected:
  /// The release of an instrument is sent at once, that of a block with the next call.
  ~Proxy() override { m_connection->Release(m_lngId, std::is_same_v<Interface, kolven::IInstrument>); }

  /// Sends the call and waits for its answer.
  template <class... Args>
  Status Ask(std::uint8_t intOperation, Args... args) {
    if (const Status status = CheckAll(args...); automation::Failed(status)) return status;
    return m_connection->Call(Described(intOperation, args...),
                              [&](Reader &in) { (Outgoing<Args>::Store(in, args), ...); });
  }

  /// Sends the call, waits, and hands out a proxy of what came.
  template <class... Args>
  Status AskForObject(std::uint8_t intOperation, automation::IDispatch **ppObject, Args... args) {
    if (!ppObject) return automation::StatusPointer;
    if (const Status status = CheckAll(args...); automation::Failed(status)) return status;
    return m_connection->CallForObject(Described(intOperation, args...), [&](Reader &in, ObjectId lngNewId) {
      const auto intKind = in.Get<std::uint8_t>();
      (Outgoing<Args>::Store(in, args), ...);
      *ppObject = Arrived(intKind, lngNewId).Detach();
    });
  }

  /// Sends the call with the next one that waits; the proxy of what it will bring is there at once.
  template <class Child, class Result, class... Args>
  Status Defer(std::uint8_t intOperation, Result **ppObject, Args... args) {
    if (!ppObject) return automation::StatusPointer;
    if (const Status status = m_connection->Failed(); automation::Failed(status)) return status;
    const ObjectId lngNewId = m_connection->Fetch(Described(intOperation, args...));
    *ppObject = automation::MakeObject<Child>(m_connection, lngNewId).Detach();
    return automation::StatusOk;
  }

 private:
  template <class... Args>
  static Status CheckAll(Args... args) {
    Status status = automation::StatusOk;
    // The first argument that cannot be marshalled decides.
    static_cast<void>(((status = Outgoing<Args>::Check(args), !automation::Failed(status)) && ...));
    return status;
  }

  /// The call for the wire. What only goes in tells it from others of its kind while reads are asked ahead.
  template <class... Args>
  Asked Described(std::uint8_t intOperation, Args... args) const {
    Asked asked{m_lngId, m_intInterface, intOperation, {}, {}};
    Writer arguments;
    (Outgoing<Args>::Send(arguments, args), ...);
    asked.strArguments = arguments.Take();
    if (!automation::ReadAhead::OfThread().strName) return asked;
    Writer inputs;
    [[maybe_unused]] const auto put = [&](auto arg) {
      if constexpr (!std::is_pointer_v<decltype(arg)>) Outgoing<decltype(arg)>::Send(inputs, arg);
    };
    (put(args), ...);
    asked.strInputs = inputs.Take();
    return asked;
  }

  Ref<automation::IDispatch> Arrived(std::uint8_t intKind, ObjectId lngId) {
    if (intKind == KindNothing) return nullptr;
    if (intKind == KindUnknown) return MakeUnknownProxy(m_connection, lngId);
    const ProxyMaker maker = MakerOfKind(intKind);
    if (!maker) throw ProtocolError("the server answers with an object of no known kind");
    return maker(m_connection, lngId);
  }

  const std::shared_ptr<Connection> m_connection;
  const ObjectId m_lngId;
  const std::uint8_t m_intInterface;
};

}  // namespace tarvik::remote
