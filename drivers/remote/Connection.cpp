#include "remote/Connection.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "automation/ErrorInfo.h"
#include "remote/ConnectionStream.h"
#include "remote/Proxy.h"
#include "remote/Stub.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

using automation::StatusOk;

/// The connections of this process, for those who wait for all of them or count.
struct Connection::Register {
  std::mutex mutex;
  std::vector<Connection *> connections;
  std::uint64_t lngEndedRoundTrips = 0;
};

std::shared_ptr<Connection::Register> Connection::TheRegister() {
  static const auto instance = std::make_shared<Register>();
  return instance;
}

Connection::Connection(const ServerAddress &address, const ClientCredentials *pCredentials, const Patience &patience)
    : m_address(address), m_patience(patience), m_stream(std::make_unique<Stream>(address, pCredentials)) {
  const std::lock_guard lock(m_register->mutex);
  m_register->connections.push_back(this);
}

Connection::~Connection() {
  {
    const std::lock_guard lock(m_register->mutex);
    std::erase(m_register->connections, this);
    m_register->lngEndedRoundTrips += m_lngRoundTrips;
  }
  m_ahead.Stop();
  ApplyCorrection();
  if (m_stream && !m_pending.Empty()) m_stream->Send(m_pending.Take(), m_patience.farewell);
  // Wait, so that objects are destroyed when the last reference is released, as with a local driver.
  if (m_stream) m_stream->Farewell(m_patience.farewell);
}

bool Connection::Greet(const std::string &strProgId) {
  const std::lock_guard lock(m_mutex);
  m_pending.Put(static_cast<std::uint8_t>(Command::Hello));
  m_pending.Put(WireVersion);
  m_pending.Put(ContractFingerprint());
  m_pending.PutText(strProgId);
  const std::string strAnswer = Exchange(m_patience.connect, m_patience.greeting);
  if (m_statusLost != StatusOk) throw RunTimeError(m_statusLost, m_strLost);
  try {
    Reader in(strAnswer);
    if (in.Get<std::uint8_t>() != static_cast<std::uint8_t>(Answer::Welcome))
      throw ProtocolError("the server does not answer the greeting");
    if (const auto intForm = in.Get<std::uint8_t>(); intForm != 0) {
      Failure failure = in.GetFailure(intForm);
      throw RunTimeError(failure.lngNumber, std::move(failure.strDescription), std::move(failure.strSource));
    }
    in.GetSuccess();
    const bool fRoot = in.Get<std::uint8_t>() != KindNothing;
    m_lngLargestFrame = in.Get<std::uint32_t>();
    // The other half is for what is pending.
    m_ahead.SetRoom(m_lngLargestFrame > FrameSlack ? (m_lngLargestFrame - FrameSlack) / 2 : 0);
    return fRoot;
  } catch (const ProtocolError &error) {
    Lose(StatusCallLost, std::string("is not understood: ") + error.what());
    throw RunTimeError(m_statusLost, m_strLost);
  }
}

namespace {

void WriteCommand(Writer &out, Command eCommand, const Asked &asked, ObjectId lngNewId) {
  out.Put(static_cast<std::uint8_t>(eCommand));
  out.Put(asked.lngId);
  out.Put(asked.intInterface);
  out.Put(asked.intOperation);
  out.Put(lngNewId);
  out.PutBytes(asked.strArguments);
}

}  // namespace

/// What a trail that was given up leaves to be sent, and what was released while it was waited for.
void Connection::ApplyCorrection() {
  m_pending.PutBytes(m_ahead.TakeCorrection());
  if (!m_ahead.IsHolding()) m_pending.PutBytes(m_lateReleases.Take());
}

ObjectId Connection::Fetch(const Asked &asked) {
  const std::lock_guard lock(m_mutex);
  ObjectId lngNewId = ++m_lngLastId;
  if (m_statusLost != StatusOk) return lngNewId;
  const auto eWay = m_ahead.Next(asked, false, lngNewId, m_lngLastId);
  ApplyCorrection();
  if (eWay != CallingAhead::Way::Plain) return lngNewId;
  WriteCommand(m_pending, Command::Fetch, asked, lngNewId);
  SendWhenLarge();
  return lngNewId;
}

Status Connection::Call(const Asked &asked, const Take &take) {
  const std::lock_guard lock(m_mutex);
  return Make(asked, 0, [&](Reader &in, ObjectId) { take(in); });
}

Status Connection::CallForObject(const Asked &asked, const TakeObject &take) {
  const std::lock_guard lock(m_mutex);
  return Make(asked, ++m_lngLastId, take);
}

Status Connection::Make(const Asked &asked, ObjectId lngNewId, const TakeObject &take) {
  if (m_statusLost != StatusOk) return automation::Fail(m_statusLost, m_strLost);
  const auto eWay = m_ahead.Next(asked, true, lngNewId, m_lngLastId);
  ApplyCorrection();
  const Take takeFilled = [&](Reader &in) {
    m_ahead.Succeeded(asked, in);
    take(in, lngNewId);
  };
  switch (eWay) {
    case CallingAhead::Way::Over: return automation::StatusFail;
    case CallingAhead::Way::Noted:
      if (m_ahead.Foreseen()) {
        Reader filled(m_ahead.Foreseen()->strFilled);
        take(filled, 0);
      }
      return StatusOk;
    case CallingAhead::Way::Ask:
      if (!AskAhead()) return automation::Fail(m_statusLost, m_strLost);
      [[fallthrough]];
    case CallingAhead::Way::Take: return Answered(m_ahead.TakeAnswer(), takeFilled);
    default: break;
  }
  Writer call;
  WriteCommand(call, Command::Call, asked, lngNewId);
  return CallPlainly(call, takeFilled);
}

/// Has the trail made from where it stands. False when the connection was lost over it.
bool Connection::AskAhead() {
  m_pending.PutBytes(m_ahead.Frame());
  const std::string strResults = Exchange(m_patience.silence, m_patience.call);
  if (m_statusLost != StatusOk) return false;
  try {
    Reader in(strResults);
    if (in.Get<std::uint8_t>() != static_cast<std::uint8_t>(Answer::Results))
      throw ProtocolError("an answer of an unknown kind");
    std::vector<std::string> arrAnswers(std::min<std::size_t>(in.Get<std::uint32_t>(), in.Left()));
    for (std::string &strAnswer : arrAnswers) strAnswer = in.GetText();
    if (arrAnswers.empty() || !in.AtEnd()) throw ProtocolError("the answers are not those of the questions");
    m_ahead.Arrived(std::move(arrAnswers));
  } catch (const ProtocolError &error) {
    Lose(StatusCallLost, std::string("is not understood: ") + error.what());
    return false;
  }
  m_pending.PutBytes(m_lateReleases.Take());
  return true;
}

Status Connection::CallPlainly(const Writer &call, const Take &take) {
  // Flush posted commands first if the call would exceed the frame size.
  if (!m_pending.Empty() && !Fits(m_pending.Size() + call.Size()) && !SendPending(m_patience.silence))
    return automation::Fail(m_statusLost, m_strLost);
  if (!Fits(call.Size()))
    return automation::Fail(
        automation::StatusInvalidArgument,
        "The call is larger than the " + std::to_string(m_lngLargestFrame) + " bytes that the driver server takes");
  m_pending.Append(call);
  const std::string strAnswer = Exchange(m_patience.silence, m_patience.call);
  if (m_statusLost != StatusOk) return automation::Fail(m_statusLost, m_strLost);
  return Answered(strAnswer, take);
}

Status Connection::Answered(const std::string &strAnswer, const Take &take) {
  try {
    Reader in(strAnswer);
    if (in.Get<std::uint8_t>() != static_cast<std::uint8_t>(Answer::Result))
      throw ProtocolError("an answer of an unknown kind");
    if (const auto intForm = in.Get<std::uint8_t>(); intForm != 0) return LeaveFailure(in.GetFailure(intForm));
    const auto status = in.GetSuccess();
    take(in);
    if (!in.AtEnd()) throw ProtocolError("an answer is too long");
    return status;
  } catch (const ProtocolError &error) {
    Lose(StatusCallLost, std::string("is not understood: ") + error.what());
    return automation::Fail(m_statusLost, m_strLost);
  }
}

void Connection::Release(ObjectId lngId, bool fAtOnce) {
  const std::lock_guard lock(m_mutex);
  if (m_statusLost != StatusOk || m_ahead.IsRehearsed(lngId)) return;
  Writer &out = m_ahead.IsHolding() ? m_lateReleases : m_pending;
  out.Put(static_cast<std::uint8_t>(Command::Release));
  out.Put(lngId);
  if (fAtOnce)
    SendPending(m_patience.silence);
  else
    SendWhenLarge();
}

Status Connection::Sync() {
  const std::lock_guard lock(m_mutex);
  if (m_statusLost != StatusOk) return automation::Fail(m_statusLost, m_strLost);
  m_ahead.Stop();
  ApplyCorrection();
  Writer sync;
  sync.Put(static_cast<std::uint8_t>(Command::Sync));
  return CallPlainly(sync, [](Reader &) {});
}

Status Connection::Failed() {
  const std::lock_guard lock(m_mutex);
  return m_statusLost == StatusOk ? StatusOk : automation::Fail(m_statusLost, m_strLost);
}

Status Connection::LeaveFailure(const Failure &failure) {
  if (failure.fRunTimeNumber) {
    automation::SetRunTimeErrorInfo(failure.lngNumber, failure.strDescription, failure.strSource);
    return automation::StatusException;
  }
  // Clears the description of an earlier failure.
  if (failure.strDescription.empty())
    static_cast<void>(automation::TakeErrorInfo());
  else
    automation::SetErrorInfo(failure.strDescription, failure.strSource);
  return failure.lngNumber;
}

namespace {

std::string SecondsText(std::chrono::milliseconds time) {
  char text[64];
  std::snprintf(text, sizeof text, "%g seconds", std::chrono::duration<double>(time).count());
  return text;
}

}  // namespace

/// Hands what is pending to the transport. False when the connection was lost over it.
bool Connection::SendPending(std::chrono::milliseconds limit) {
  if (m_stream->Send(m_pending.Take(), limit)) return true;
  const auto [status, strWhy] = m_stream->WhyEnded();
  Lose(status, strWhy);
  return false;
}

/// Flushes when the buffer is full: a caller that only fetches and releases would otherwise grow it without bound.
void Connection::SendWhenLarge() {
  if (!Fits(2 * m_pending.Size())) SendPending(m_patience.silence);
}

/// Sends what is pending and waits for an answer that is no heartbeat. Empty when the connection was lost.
std::string Connection::Exchange(std::chrono::milliseconds limit, std::chrono::milliseconds whole) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now(), end = start + whole;
  if (!SendPending(limit)) return {};
  auto until = std::min(start + limit, end);
  for (;;) {
    std::string strFrame;
    switch (m_stream->Receive(strFrame, until)) {
      case Stream::Received::Frame: break;
      case Stream::Received::Nothing: {
        if (Clock::now() < end)
          Lose(StatusCallLost, "gave no sign of life for " + SecondsText(limit));
        else
          Lose(StatusCallLost, "is alive and has not answered for " + SecondsText(whole));
        return {};
      }
      case Stream::Received::End: {
        const auto [status, strWhy] = m_stream->WhyEnded();
        Lose(status, strWhy);
        return {};
      }
    }
    if (strFrame.size() != 1 || strFrame[0] != static_cast<char>(Answer::Heartbeat)) {
      ++m_lngRoundTrips;
      return strFrame;
    }
    // A flood of heartbeats would otherwise be read without a look at the clock.
    if (Clock::now() >= end) {
      Lose(StatusCallLost, "is alive and has not answered for " + SecondsText(whole));
      return {};
    }
    limit = m_patience.silence;
    until = std::min(Clock::now() + limit, end);
  }
}

void Connection::Lose(Status status, const std::string &strWhy) {
  m_statusLost = status;
  m_strLost = "The driver server " + m_address.Text() + " " + strWhy;
  m_stream->Cancel();
  m_stream.reset();
}

Ref<IUnknown> ConnectDriver(const std::string &strProgId, const std::string &strUrl, const Patience &patience) {
  const ServerAddress address = ParseServerAddress(strUrl);
  ClientCredentials credentials;
  if (address.fSecure) credentials = LoadClientCredentials();
  auto connection = std::make_shared<Connection>(address, address.fSecure ? &credentials : nullptr, patience);
  if (!connection->Greet(strProgId)) return nullptr;
  const auto contract = Contract();
  const auto root = std::ranges::find(contract, "IDriverRoot", &InterfaceTable::strName);
  return MakerOfKind(static_cast<std::uint8_t>(root - contract.begin()))(std::move(connection), RootId);
}

void SynchroniseConnections() {
  const auto all = Connection::TheRegister();
  const std::lock_guard lock(all->mutex);
  for (Connection *connection : all->connections) connection->Sync();
}

std::uint64_t RoundTripsSoFar() {
  const auto all = Connection::TheRegister();
  const std::lock_guard lock(all->mutex);
  std::uint64_t lngTotal = all->lngEndedRoundTrips;
  for (const Connection *connection : all->connections) lngTotal += connection->RoundTrips();
  return lngTotal;
}

}  // namespace tarvik::remote
