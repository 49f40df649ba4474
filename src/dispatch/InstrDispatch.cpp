#include "dispatch/InstrDispatch.h"

#include <optional>

#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "dispatch/InstrOperations.h"
#include "dispatch/InstrRecord.h"
#include "dispatch/Registration.h"
#include "instrument/Reported.h"

namespace tarvik {

using namespace automation;

namespace {

/// Members besides the operations.
struct FaceMember {
  MemberShape shape;
  Value (*Run)(InstrDispatch &face, Arguments &arguments);
};

const std::vector<FaceMember> &FaceMembers() {
  static const std::vector<FaceMember> arrMembers{
      {{"NewRecord", 101, CallMethod, {{"strName", ValueKind::StringValue}}},
       [](InstrDispatch &, Arguments &args) {
         auto record = InstrRecord::Make(args.Get<std::string>(0));
         if (!record) RaiseError(ErrTypeMismatch);
         return Value(std::move(record));
       }},
      {{"Advise", 102, CallMethod, {{"Sink", ValueKind::ObjectValue}}},
       [](InstrDispatch &face, Arguments &args) { return Value(face.Advise(args.Get<Ref<IDispatch>>(0))); }},
      {{"Unadvise", 103, CallMethod, {{"Cookie", ValueKind::LongValue}}},
       [](InstrDispatch &face, Arguments &args) { return Value(face.Unadvise(args.Get<Long>(0))); }},
  };
  return arrMembers;
}

}  // namespace

namespace {

/// By the numbers of InstrEvent.
constexpr const char *EventNames[] = {"", "StatusMessage", "InstrWarnings", "InstrError"};

/// The number under which the sink wants to be told: that of its method with the event's name, as scripts have them, or
/// the event's own where the sink has no names. Empty for a sink that has names and not this one.
std::optional<MemberId> NumberAtSink(IDispatch &sink, InstrEvent eEvent) {
  String name(EventNames[eEvent]);
  AutomationChar *strName = name.Get();
  MemberId lngNumber = 0;
  const Status status = sink.GetIDsOfNames(GuidNull, &strName, 1, 0, &lngNumber);
  if (status == StatusUnknownName) return std::nullopt;
  return Failed(status) ? MemberId{eEvent} : lngNumber;
}

/// A failure of the sink becomes a run-time error. A sink need not know every event.
void InvokeSink(IDispatch &sink, InstrEvent eEvent, AutomationDispParams &params) {
  const auto lngNumber = NumberAtSink(sink, eEvent);
  if (!lngNumber) return;
  AutomationExcepInfo exception{};
  ForgetErrorInfo();
  const Status status = sink.Invoke(*lngNumber, GuidNull, 0, CallMethod, &params, nullptr, &exception, nullptr);
  const String source = String::Adopt(exception.bstrSource), description = String::Adopt(exception.bstrDescription);
  const String helpFile = String::Adopt(exception.bstrHelpFile);
  if (!Failed(status) || status == StatusMemberNotFound || status == StatusNotImplemented) return;
  if (status == StatusException && description.Get())
    throw RunTimeError(exception.scode ? exception.scode : status, description.Text(), source.Text());
  RaiseStatus(status);
}

}  // namespace

InstrDispatch::InstrDispatch(std::shared_ptr<clsInstrInterface> instr) : m_instr(std::move(instr)) {
  const auto connect = [this](Event<const std::string &> &event, InstrEvent eEvent) {
    m_arrConnections.push_back(
        event.ConnectScoped([this, eEvent](const std::string &strText) { Tell(eEvent, strText); }));
  };
  connect(m_instr->StatusMessage, EventStatusMessage);
  connect(m_instr->InstrWarnings, EventInstrWarnings);
  connect(m_instr->InstrError, EventInstrError);
}

Long InstrDispatch::Advise(Ref<IDispatch> sink) {
  m_sinks[++m_lngLastCookie] = std::move(sink);
  return m_lngLastCookie;
}

Boolean InstrDispatch::Unadvise(Long lngCookie) { return m_sinks.erase(lngCookie) > 0; }

void InstrDispatch::Tell(InstrEvent eEvent, const std::string &strText) const {
  // A sink may be added or removed during delivery.
  const auto sinks = m_sinks;
  for (const auto &[lngCookie, sink] : sinks) {
    AutomationVariant vText = ToVariant(strText);
    AutomationDispParams params{&vText, nullptr, 1, 0};
    RunUserEvent(InstrModule, EventNames[eEvent], [&, &sink = sink] { InvokeSink(*sink, eEvent, params); });
    ClearVariant(vText);
  }
}

std::size_t InstrDispatch::MemberCount() const { return InstrOperations().size() + FaceMembers().size(); }

const MemberShape &InstrDispatch::Member(std::size_t number) const {
  const std::size_t operations = InstrOperations().size();
  return number < operations ? InstrOperations()[number].shape : FaceMembers()[number - operations].shape;
}

Value InstrDispatch::Run(std::size_t number, Arguments &arguments) {
  const std::size_t operations = InstrOperations().size();
  if (number < operations) return InstrOperations()[number].Run(*m_instr, arguments);
  return FaceMembers()[number - operations].Run(*this, arguments);
}

std::string InstrDispatch::Source() const { return InstrProgId; }

}  // namespace tarvik
