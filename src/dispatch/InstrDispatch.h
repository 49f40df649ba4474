#pragma once

#include <map>
#include <memory>

#include "dispatch/DispatchObject.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik {

/// Numbers under which a sink is told of the events, each with one text as argument.
enum InstrEvent : std::int32_t { EventStatusMessage = 1, EventInstrWarnings = 2, EventInstrError = 3 };

/// The instrument interface of this thread as an automation object. All objects of a thread share the one
/// interface and its session. Besides the operations there are NewRecord, which makes the records that
/// operations take, and Advise and Unadvise for sinks of the events.
class InstrDispatch final : public DispatchObject {
 public:
  explicit InstrDispatch(std::shared_ptr<clsInstrInterface> instr);

  clsInstrInterface &Instr() { return *m_instr; }
  /// Each event is told to the sink until the cookie is given back: by its method with the event's name, or by its
  /// Invoke with the event's number where it has no names. A sink that fails is reported as a failing handler is; it
  /// need not know every event.
  Long Advise(automation::Ref<automation::IDispatch> sink);
  /// Whether there was a sink with this cookie.
  Boolean Unadvise(Long lngCookie);

 private:
  std::size_t MemberCount() const override;
  const MemberShape &Member(std::size_t number) const override;
  Value Run(std::size_t number, Arguments &arguments) override;
  std::string Source() const override;

  void Tell(InstrEvent eEvent, const std::string &strText) const;

  std::shared_ptr<clsInstrInterface> m_instr;
  std::map<Long, automation::Ref<automation::IDispatch>> m_sinks;
  Long m_lngLastCookie = 0;
  std::vector<Event<const std::string &>::Connection> m_arrConnections;
};

}  // namespace tarvik
