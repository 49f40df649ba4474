#include "remote/ServerSession.h"

#include <algorithm>
#include <exception>

#include "automation/Activation.h"
#include "automation/ErrorInfo.h"
#include "remote/FolderlessText.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

using automation::StatusOk;
using automation::VariantBool;

namespace {

/// Places in the contract that the session itself has to know: what opens and closes an instrument.
struct Places {
  std::uint8_t intRoot, intInstrument, intOpen, intClose, intTransaction, intChannelList;
};

std::uint8_t PositionOf(const auto &row, std::string_view strName) {
  const auto found = std::ranges::find(row, strName, [](const auto &entry) { return entry.strName; });
  return static_cast<std::uint8_t>(found - row.begin());
}

const Places &ThePlaces() {
  static const Places places = [] {
    const auto contract = Contract();
    const auto intInstrument = PositionOf(contract, "IInstrument");
    const auto operations = contract[intInstrument].operations;
    return Places{PositionOf(contract, "IDriverRoot"),   intInstrument,
                  PositionOf(operations, "Open"),        PositionOf(operations, "Close"),
                  PositionOf(operations, "Transaction"), PositionOf(contract, "IChannelList")};
  }();
  return places;
}

std::string SuccessFrame() {
  Writer out;
  out.Put(static_cast<std::uint8_t>(Answer::Result));
  out.PutSuccess(StatusOk);
  return out.Take();
}

std::string FailedFrame(Answer eAnswer, const Failure &failure) {
  Writer out;
  out.Put(static_cast<std::uint8_t>(eAnswer));
  // Folders of the server are none of the client's business; the log has them.
  out.PutFailure({failure.fRunTimeNumber, failure.lngNumber, WithoutFolders(failure.strDescription),
                  WithoutFolders(failure.strSource)});
  return out.Take();
}

Failure DriverFailure(Status status) {
  Failure failure{false, status, {}, {}};
  if (const auto info = automation::TakeErrorInfo()) {
    failure.strDescription = info->strDescription;
    failure.strSource = info->strSource;
    if (info->lngRunTimeError) failure = {true, *info->lngRunTimeError, info->strDescription, info->strSource};
  }
  return failure;
}

/// Longest client-supplied text that is written to the log, bytes.
constexpr std::size_t MaxShown = 80;
/// Bytes of the answers to one frame.
constexpr std::size_t MostQueuedBytes = 4ul * 1024 * 1024;
/// Arguments of numbers alone are smaller, bytes.
constexpr std::size_t SmallCall = 256;
/// The resource is in use.
constexpr Status StatusHeld = static_cast<Status>(0x800700AA);

std::string Shortened(std::string_view strText) {
  if (strText.size() <= MaxShown) return std::string(strText);
  std::size_t lngEnd = MaxShown;
  while (lngEnd > 0 && (strText[lngEnd] & 0xC0) == 0x80) --lngEnd;  // not within a character
  return std::string(strText.substr(0, lngEnd)) + "...";
}

}  // namespace

ServerSession::ServerSession(DriverCreator creator, SessionLimits limits, Log log, SessionOwner owner)
    : m_creator(std::move(creator)),
      m_limits(limits),
      m_log(std::move(log)),
      m_owner(std::move(owner)),
      m_journal(m_log) {}

ServerSession::~ServerSession() { End(); }

std::string ServerSession::Handle(std::string_view strFrame) {
  if (strFrame.size() > m_limits.lngFrameBytes) throw ProtocolError("a frame is larger than the limit");
  Reader in(strFrame);
  if (in.AtEnd()) throw ProtocolError("a frame is empty");
  return Work(in);
}

/// The commands of a frame, of which a Hello, a Call or a Sync is the last.
std::string ServerSession::Work(Reader &in) {
  std::vector<std::string> arrAnswers;
  bool fQueued = m_fQueueStopped = false;
  do {
    const auto eCommand = static_cast<Command>(in.Get<std::uint8_t>());
    if (m_fGreeted == (eCommand == Command::Hello)) throw ProtocolError("the greeting is not where it belongs");
    std::string strAnswer;
    switch (eCommand) {
      case Command::Hello: strAnswer = Greet(in); break;
      case Command::Call: strAnswer = Call(in); break;
      case Command::Fetch: Fetch(in); continue;
      case Command::Queue:
        fQueued = true;
        Queue(in, arrAnswers);
        continue;
      case Command::Expect: Expect(in, arrAnswers); continue;
      case Command::Release: Release(in); continue;
      case Command::ReleaseIfThere:
        if (Reader id = in; m_objects.contains(id.Get<ObjectId>()))
          Release(in);
        else
          in.Get<ObjectId>();
        continue;
      case Command::Untaken:
        m_log({"untaken",
               std::to_string(in.Get<std::uint32_t>()) + " calls were made ahead and their answers not taken"});
        continue;
      case Command::Sync: strAnswer = SuccessFrame(); break;
      default: throw ProtocolError("a command is not known");
    }
    // A client waits for each answer; pipelined calls would queue unread answers without bound.
    if (fQueued || !in.AtEnd()) throw ProtocolError("a frame goes on behind a call");
    return strAnswer;
  } while (!in.AtEnd());
  if (!fQueued) return {};
  Writer out;
  out.Put(static_cast<std::uint8_t>(Answer::Results));
  out.Put(static_cast<std::uint32_t>(arrAnswers.size()));
  for (const std::string &strAnswer : arrAnswers) out.PutText(strAnswer);
  return out.Take();
}

/// One of several calls in a frame. They are bounded together, as one call is by itself.
void ServerSession::Queue(Reader &in, std::vector<std::string> &arrAnswers) {
  if (arrAnswers.size() >= MostQueued) throw ProtocolError("a frame has too many calls");
  if (m_fQueueStopped) return SkipCall(in);
  m_fQueuing = true;
  arrAnswers.push_back(Call(in));
  m_fQueuing = false;
  std::size_t lngBytes = 0;
  for (const std::string &strAnswer : arrAnswers) lngBytes += strAnswer.size();
  const bool fFailed = arrAnswers.back()[1] != 0;
  m_fQueueStopped = fFailed || lngBytes > MostQueuedBytes;
}

/// What follows in the frame was written by a client that foresaw how the answer would end.
void ServerSession::Expect(Reader &in, const std::vector<std::string> &arrAnswers) {
  const std::string_view strEnd = in.GetText();
  if (arrAnswers.empty()) throw ProtocolError("an answer is expected before any call");
  if (!arrAnswers.back().ends_with(strEnd)) m_fQueueStopped = true;
}

/// A call of the frame behind one that failed: it is not made, and its objects do not come to be.
void ServerSession::SkipCall(Reader &in) {
  in.Get<ObjectId>();
  const auto intInterface = in.Get<std::uint8_t>(), intOperation = in.Get<std::uint8_t>();
  in.Get<ObjectId>();
  const auto contract = Contract();
  if (intInterface >= contract.size() || intOperation >= contract[intInterface].operations.size())
    throw ProtocolError("a call is not in the contract");
  contract[intInterface].operations[intOperation].skip(in);
}

std::string ServerSession::Greet(Reader &in) {
  if (in.Get<std::uint16_t>() != WireVersion) throw ProtocolError("the client speaks another version of the protocol");
  if (in.Get<std::uint64_t>() != ContractFingerprint())
    throw ProtocolError("the client was built with another driver contract");
  const std::string strProgId(in.GetText());
  m_fGreeted = true;
  m_strProgId = strProgId;
  Failure failure;
  try {
    if (!automation::IsProgId(strProgId))
      throw RunTimeError(ErrCannotCreateObject, "The driver server is sent no ProgID");
    automation::ForgetErrorInfo();
    Ref<IUnknown> root = m_creator(strProgId);
    const auto &iid = Contract()[ThePlaces().intRoot].iid;
    Ref<IUnknown> narrowed;
    if (root && automation::Failed(root->QueryInterface(iid, reinterpret_cast<void **>(narrowed.Out()))))
      throw RunTimeError(ErrTypeMismatch, StandardDescription(ErrTypeMismatch));
    const bool fRoot = static_cast<bool>(narrowed);
    m_log({"created",
           fRoot ? "created " + Shortened(strProgId) : "creation of " + Shortened(strProgId) + " gave nothing"});
    if (fRoot) Hold(RootId, {.object = std::move(narrowed), .intKind = ThePlaces().intRoot});
    Writer out;
    out.Put(static_cast<std::uint8_t>(Answer::Welcome));
    out.PutSuccess(StatusOk);
    out.Put(fRoot ? ThePlaces().intRoot : KindNothing);
    out.Put(m_limits.lngFrameBytes);
    return out.Take();
  } catch (const RunTimeError &error) {
    failure = {true, error.Number(), error.Description(), error.Source()};
  } catch (const std::exception &error) {
    failure = {false, automation::StatusUnexpected, error.what(), {}};
  }
  m_log({"created", "creation of " + Shortened(strProgId) + " failed: " + failure.strDescription});
  return FailedFrame(Answer::Welcome, failure);
}

ServerSession::Target ServerSession::ReadTarget(Reader &in) const {
  Target target{};
  target.lngId = in.Get<ObjectId>();
  target.intInterface = in.Get<std::uint8_t>();
  target.intOperation = in.Get<std::uint8_t>();
  target.lngNewId = in.Get<ObjectId>();
  const auto contract = Contract();
  if (target.intInterface >= contract.size() || target.intOperation >= contract[target.intInterface].operations.size())
    throw ProtocolError("a call is not in the contract");
  target.pOperation = &contract[target.intInterface].operations[target.intOperation];
  const bool fGivesObject = target.pOperation->intResultKind != KindNothing;
  if (fGivesObject != (target.lngNewId != 0)) throw ProtocolError("a number is given for no object");
  if (fGivesObject && m_objects.contains(target.lngNewId)) throw ProtocolError("a number is given twice");
  return target;
}

ServerSession::Entry &ServerSession::Find(ObjectId lngId, std::uint8_t intInterface) {
  const auto found = m_objects.find(lngId);
  if (found == m_objects.end()) throw ProtocolError("a call is on an object that is not there");
  if (found->second.intKind != intInterface) throw ProtocolError("a call is on an object of another kind");
  return found->second;
}

/// Calls the driver; the failure is filled when the outcome's status is one.
Outcome ServerSession::Run(Entry &entry, const Target &target, Reader &in, Failure &failure) {
  Outcome outcome;
  // The client of a read may by then hold another array than it had when it was asked ahead.
  outcome.fAllArrays = m_fQueuing && IsRead(*target.pOperation);
  const Reader before = in;
  static_cast<void>(automation::TakeErrorInfo());
  try {
    target.pOperation->serve(*entry.object.Get(), in, outcome);
    if (automation::Failed(outcome.status)) failure = DriverFailure(outcome.status);
  } catch (const ProtocolError &) {
    throw;
  } catch (const std::exception &error) {
    // Drivers report failures by status; an exception from one must not end the server.
    outcome.status = automation::StatusUnexpected;
    failure = {false, outcome.status, error.what(), {}};
  }
  if (target.intInterface == ThePlaces().intInstrument) Watch(entry, target, before, outcome);
  return outcome;
}

/// Keeps in mind what would have to be closed if the client vanished.
void ServerSession::Watch(Entry &entry, const Target &target, Reader before, const Outcome &outcome) {
  const Places &places = ThePlaces();
  const bool fDone = !automation::Failed(outcome.status);
  if (target.intOperation == places.intOpen) {
    // Open has one output: whether it succeeded.
    const bool fOpened = fDone && Reader(outcome.filled.Bytes()).Get<automation::VariantBool>() != 0;
    if (fDone) entry.fOpen = fOpened;
    if (!entry.fOpen) FreeInstrument(entry);
    m_log({"opened", (fOpened ? "opened " : "could not open ") + Shortened(entry.strName)});
  } else if (target.intOperation == places.intClose) {
    // Counts as closed even if Close failed: the server does not repeat it.
    entry.fOpen = entry.fTransaction = false;
    FreeInstrument(entry);
    m_log({"closed", (fDone ? "closed " : "failed to close ") + Shortened(entry.strName)});
  } else if (target.intOperation == places.intTransaction) {
    const auto lngCommand = before.Get<Long>();
    if (lngCommand != kolven::TransactionBegin)
      entry.fTransaction = false;
    else if (fDone)
      entry.fTransaction = true;
  }
  if (!IsInTransaction()) m_lngTransactionBytes = 0;
}

bool ServerSession::IsInTransaction() const {
  return std::ranges::any_of(m_objects, [](const auto &object) { return object.second.fTransaction; });
}

/// Instrument and channel that an object belongs to, for the log.
void ServerSession::Descend(const Entry &parent, const Target &target, Reader arguments, Entry &child) const {
  const bool fInstrument = target.pOperation->intResultKind == ThePlaces().intInstrument;
  const bool fChannel = target.intInterface == ThePlaces().intChannelList;
  child.lngInstrument = fInstrument ? target.lngNewId : parent.lngInstrument;
  child.lngChannel = fChannel ? arguments.Get<Long>() : parent.lngChannel;
}

void ServerSession::Journal(const Entry &entry, const Target &target, Reader arguments, const Failure &failure,
                            bool fTransaction) {
  const auto instrument = m_objects.find(entry.lngInstrument);
  if (instrument == m_objects.end()) return;
  const std::string strInstrument = Shortened(instrument->second.strName);
  const bool fDone = failure.lngNumber == 0;
  if (target.intInterface == ThePlaces().intInstrument && target.intOperation == ThePlaces().intTransaction) {
    switch (arguments.Get<Long>()) {
      case kolven::TransactionCommit: return m_journal.NoteCommit(strInstrument, fDone, failure.strDescription);
      case kolven::TransactionAbort: return m_journal.NoteAbort(strInstrument);
      default: return;
    }
  }
  const auto &interface = Contract()[target.intInterface];
  const bool fSwitch = arguments.Left() >= sizeof(VariantBool) && arguments.Get<VariantBool>() != 0;
  m_journal.Note({strInstrument, interface.strName, target.pOperation->strName, entry.lngChannel, fTransaction, fSwitch,
                  fDone, failure.strDescription});
}

/// Makes this client the holder of an instrument that it is about to open; the failure tells who holds it.
std::optional<Failure> ServerSession::TakeInstrument(Entry &entry) {
  if (!m_owner.pHolders || !entry.strHeld.empty()) return std::nullopt;
  std::string strName = entry.strName;
  if (entry.fByNumber) {
    automation::String name;
    if (!automation::Failed(static_cast<kolven::IInstrument &>(*entry.object).GetName(name.Out())))
      strName = name.Text();
  }
  Holder self = m_owner.self;
  self.since = std::chrono::system_clock::now();
  std::string strKey = m_strProgId + " " + strName;
  if (const auto holder = m_owner.pHolders->Take(strKey, self)) {
    const std::string strWhy = Shortened(strName) + " is held by " + TextOf(*holder);
    m_log({"held", "refused to open: " + strWhy});
    return Failure{false, StatusHeld, strWhy, {}};
  }
  entry.strHeld = std::move(strKey);
  return std::nullopt;
}

void ServerSession::FreeInstrument(Entry &entry) {
  if (!entry.strHeld.empty()) m_owner.pHolders->Free(entry.strHeld, m_owner.self.lngSession);
  entry.strHeld.clear();
}

/// What the client will hold for an object that the driver handed out.
ServerSession::Entry ServerSession::Narrowed(const Target &target, Ref<IUnknown> object) {
  Entry entry;
  entry.intKind = target.pOperation->intResultKind;
  if (!object) return entry;
  const auto &iid = Contract()[entry.intKind].iid;
  if (automation::Failed(object->QueryInterface(iid, reinterpret_cast<void **>(entry.object.Out())))) {
    entry.fFailed = true;
    entry.failure = {true, ErrTypeMismatch, StandardDescription(ErrTypeMismatch), {}};
    entry.object = std::move(object);
  }
  return entry;
}

/// The key by which an instrument was found, for the log.
std::string ServerSession::NameOf(const Target &target, Reader arguments, bool &fByNumber) {
  if (target.pOperation->intResultKind != ThePlaces().intInstrument) return {};
  automation::String text;
  const AutomationVariant key = GetVariant(arguments, text);
  fByNumber = key.vt != automation::VtString;
  return key.vt == automation::VtString ? text.Text() : "instrument " + std::to_string(key.iVal);
}

/// Why a call or fetch cannot be made; empty if it can.
std::optional<Failure> ServerSession::Hindrance(const Entry &entry, const Target &target,
                                                std::size_t lngArguments) const {
  if (!m_unreported.empty()) return m_objects.at(*m_unreported.begin()).failure;
  if (entry.fFailed) return entry.failure;
  if (!entry.object) return NoObject();
  if (target.lngNewId != 0 && m_objects.size() >= m_limits.lngObjects) return TooManyObjects();
  // Small calls pass: a commit or an abort has to.
  if (lngArguments > SmallCall && m_lngTransactionBytes + lngArguments > m_limits.lngTransactionBytes)
    return Failure{false,
                   automation::StatusOutOfMemory,
                   "The driver server keeps no more than " + std::to_string(m_limits.lngTransactionBytes) +
                       " bytes for a transaction",
                   {}};
  return std::nullopt;
}

std::string ServerSession::Call(Reader &in) {
  const Target target = ReadTarget(in);
  Entry &entry = Find(target.lngId, target.intInterface);
  if (const auto hindrance = Hindrance(entry, target, in.Left())) {
    m_unreported.clear();
    target.pOperation->skip(in);
    return FailedFrame(Answer::Result, *hindrance);
  }
  if (target.intInterface == ThePlaces().intInstrument && target.intOperation == ThePlaces().intOpen)
    if (const auto held = TakeInstrument(entry)) {
      target.pOperation->skip(in);
      return FailedFrame(Answer::Result, *held);
    }

  Failure failure;
  const Reader before = in;
  const bool fTransaction = IsInTransaction();
  Outcome outcome = Run(entry, target, in, failure);
  Journal(entry, target, before, failure, fTransaction);
  if (automation::Failed(outcome.status)) return FailedFrame(Answer::Result, failure);
  if (fTransaction) m_lngTransactionBytes += before.Left() - in.Left();
  Writer out;
  out.Put(static_cast<std::uint8_t>(Answer::Result));
  out.PutSuccess(outcome.status);
  if (target.lngNewId != 0) {
    Entry child = Narrowed(target, std::move(outcome.object));
    if (!child.object) {
      out.Put(KindNothing);
    } else {
      child.strName = NameOf(target, before, child.fByNumber);
      Descend(entry, target, before, child);
      out.Put(child.fFailed ? KindUnknown : child.intKind);
      if (child.fFailed) child.intKind = KindUnknown;
      Hold(target.lngNewId, std::move(child));
    }
  }
  out.Append(outcome.filled);
  return out.Take();
}

void ServerSession::Fetch(Reader &in) {
  if (m_fQueueStopped) return SkipCall(in);
  const Target target = ReadTarget(in);
  if (!target.pOperation->fDeferred) throw ProtocolError("a call that has to wait is sent without");
  Entry &entry = Find(target.lngId, target.intInterface);
  const auto intKind = target.pOperation->intResultKind;
  if (const auto hindrance = Hindrance(entry, target, in.Left())) {
    target.pOperation->skip(in);
    return HoldFailed(target.lngNewId, intKind, *hindrance);
  }
  Failure failure;
  const Reader before = in;
  Outcome outcome = Run(entry, target, in, failure);
  if (automation::Failed(outcome.status)) return HoldFailed(target.lngNewId, intKind, failure);
  Entry child = Narrowed(target, std::move(outcome.object));
  Descend(entry, target, before, child);
  if (child.fFailed) return HoldFailed(target.lngNewId, intKind, child.failure);
  Hold(target.lngNewId, std::move(child));
}

void ServerSession::Release(Reader &in) {
  const auto lngId = in.Get<ObjectId>();
  const auto found = m_objects.find(lngId);
  if (found == m_objects.end()) throw ProtocolError("an object is let go that is not there");
  // The client would have no way to close it.
  if (found->second.fOpen) CloseInstrument(found->second);
  m_unreported.erase(lngId);
  m_objects.erase(found);
}

void ServerSession::Hold(ObjectId lngId, Entry entry) { m_objects.emplace(lngId, std::move(entry)); }

void ServerSession::HoldFailed(ObjectId lngId, std::uint8_t intKind, const Failure &failure) {
  // Failed fetches count as objects; a client that goes on fetching beyond them breaks the rules.
  if (m_objects.size() >= 2 * m_limits.lngObjects) throw ProtocolError("more objects are fetched than allowed");
  Hold(lngId, {.intKind = intKind, .fFailed = true, .failure = failure});
  m_unreported.insert(lngId);
}

Failure ServerSession::TooManyObjects() const {
  return {false,
          automation::StatusOutOfMemory,
          "The driver server gives a client no more than " + std::to_string(m_limits.lngObjects) + " objects at a time",
          {}};
}

Failure ServerSession::NoObject() { return {true, ErrObjectNotSet, StandardDescription(ErrObjectNotSet), {}}; }

void ServerSession::CloseInstrument(Entry &entry) {
  m_log("closes " + Shortened(entry.strName) + ", which was left open" +
        (entry.fTransaction ? " in a transaction" : ""));
  auto &instrument = static_cast<kolven::IInstrument &>(*entry.object);
  try {
    if (entry.fTransaction) instrument.Transaction(kolven::TransactionAbort);
    if (automation::Failed(instrument.Close())) m_log("failed to close " + Shortened(entry.strName));
  } catch (const std::exception &error) {
    m_log("failed to close " + Shortened(entry.strName) + ": " + error.what());
  }
  entry.fOpen = entry.fTransaction = false;
  FreeInstrument(entry);
}

void ServerSession::End() {
  for (auto &[lngId, entry] : m_objects)
    if (entry.fOpen) CloseInstrument(entry);
  m_unreported.clear();
  // In reverse order of creation, so that a block is released before its parent.
  while (!m_objects.empty()) m_objects.erase(std::prev(m_objects.end()));
}

}  // namespace tarvik::remote
