#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Ref.h"
#include "remote/InstrumentHolders.h"
#include "remote/SessionJournal.h"
#include "remote/Stub.h"
#include "remote/Wire.h"

namespace tarvik::remote {

/// Makes the driver's root for a client; nothing is an allowed answer. May raise RunTimeError.
using DriverCreator = std::function<Ref<IUnknown>(const std::string &strProgId)>;

struct SessionLimits {
  std::size_t lngObjects = 1000;                ///< that one client holds at a time
  std::uint32_t lngFrameBytes = 1024u * 1024u;  ///< of one frame of a client
  /// Arguments of the calls within a transaction, which the driver keeps until it ends.
  std::size_t lngTransactionBytes = 16ul * 1024 * 1024;
};

/// Who a session belongs to, and where it says what it has open.
struct SessionOwner {
  Holder self{};
  InstrumentHolders *pHolders = nullptr;  ///< null: instruments are shared
};

/// The server's side of one connection: the objects that the client holds and the calls on them. Knows nothing of
/// the transport, so that whatever bytes arrive can be tried on it. All its procedures call the driver and are to be
/// called under the driver's lock.
///
/// A deferred fetch that fails stops what follows it, as it would have stopped a caller that waited: further fetches
/// fail with it and the next call brings its failure, unless the client has let go of the object by then.
class ServerSession {
 public:
  using Log = SessionJournal::Log;

  ServerSession(DriverCreator creator, SessionLimits limits, Log log, SessionOwner owner = {});
  /// Ends the session, if End has not done it.
  ~ServerSession();
  ServerSession(const ServerSession &) = delete;
  ServerSession &operator=(const ServerSession &) = delete;

  /// Works off one frame. Answers the frame to be sent back; empty when none is due. Bytes that are no frame of a
  /// client raise ProtocolError; the connection is then to be ended.
  std::string Handle(std::string_view strFrame);

  /// Closes what the client left open, aborting its transaction, and lets go of everything.
  void End();

  std::size_t Objects() const { return m_objects.size(); }
  /// Whether the client has been greeted and a root made.
  bool HasRoot() const { return m_objects.contains(RootId); }

 private:
  struct Entry {
    Ref<IUnknown> object{};  ///< empty: the fetch handed back nothing, or failed
    std::uint8_t intKind = KindUnknown;
    bool fFailed = false;
    Failure failure{};
    std::string strName{};       ///< of an instrument: the key it was found by
    ObjectId lngInstrument = 0;  ///< that it belongs to
    Long lngChannel = 0;         ///< that it belongs to; 0: to none
    bool fByNumber = false;      ///< found by its place in the list; strName is no name then
    std::string strHeld{};       ///< of an instrument that the client holds: its key among the holders
    bool fOpen = false;
    bool fTransaction = false;
  };
  struct Target {
    ObjectId lngId;
    std::uint8_t intInterface;
    std::uint8_t intOperation;
    ObjectId lngNewId;
    const Operation *pOperation;
  };

  std::string Greet(Reader &in);
  std::string Call(Reader &in);
  void Queue(Reader &in, std::vector<std::string> &arrAnswers);
  void Expect(Reader &in, const std::vector<std::string> &arrAnswers);
  static void SkipCall(Reader &in);
  std::string Work(Reader &in);
  void Fetch(Reader &in);
  void Release(Reader &in);

  Target ReadTarget(Reader &in) const;
  Entry &Find(ObjectId lngId, std::uint8_t intInterface);
  std::optional<Failure> Hindrance(const Entry &entry, const Target &target, std::size_t lngArguments) const;
  Outcome Run(Entry &entry, const Target &target, Reader &in, Failure &failure);
  void Watch(Entry &entry, const Target &target, Reader before, const Outcome &outcome);
  static Entry Narrowed(const Target &target, Ref<IUnknown> object);
  void Hold(ObjectId lngId, Entry entry);
  void HoldFailed(ObjectId lngId, std::uint8_t intKind, const Failure &failure);
  void CloseInstrument(Entry &entry);
  std::optional<Failure> TakeInstrument(Entry &entry);
  void FreeInstrument(Entry &entry);
  bool IsInTransaction() const;
  void Descend(const Entry &parent, const Target &target, Reader arguments, Entry &child) const;
  void Journal(const Entry &entry, const Target &target, Reader arguments, const Failure &failure, bool fTransaction);
  static std::string NameOf(const Target &target, Reader arguments, bool &fByNumber);
  static Failure NoObject();
  Failure TooManyObjects() const;

  const DriverCreator m_creator;
  const SessionLimits m_limits;
  const Log m_log;
  const SessionOwner m_owner;
  SessionJournal m_journal;
  std::map<ObjectId, Entry> m_objects;
  /// Objects whose fetch failed and whose failure the client does not know yet.
  std::set<ObjectId> m_unreported;
  bool m_fGreeted = false;
  std::string m_strProgId;
  std::size_t m_lngTransactionBytes = 0;
  bool m_fQueuing = false;       ///< the call is one of several in a frame
  bool m_fQueueStopped = false;  ///< a queued call of the frame has failed or surprised its client
};

}  // namespace tarvik::remote
