#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "automation/Ref.h"
#include "remote/CallingAhead.h"
#include "remote/ServerAddress.h"
#include "remote/Wire.h"

namespace tarvik::remote {

/// Statuses of a connection that has failed; the numbers are the platform's own for its remote calls.
inline constexpr Status StatusServerUnavailable = static_cast<Status>(0x800706BA);
inline constexpr Status StatusCallLost = static_cast<Status>(0x800706BE);
inline constexpr Status StatusServerTooBusy = static_cast<Status>(0x800706BB);
inline constexpr Status StatusNoSecurity = static_cast<Status>(0x80070721);

/// How long the client waits.
struct Patience {
  /// From the first packet to the server's first sign of life.
  std::chrono::milliseconds connect{10'000};
  /// Without a sign of life while a call is on its way. The server gives one every second.
  std::chrono::milliseconds silence{10'000};
  /// For the server to end its side when the last object is let go.
  std::chrono::milliseconds farewell{2'000};
  /// For the whole greeting, in which the server loads its driver, whatever signs of life it gives.
  std::chrono::milliseconds greeting{60'000};
  /// For a whole call. Above the longest calibration.
  std::chrono::milliseconds call{900'000};
};

/// PEM texts of the client's certificate, its key and the authority it trusts.
struct ClientCredentials {
  std::string strAuthority;
  std::string strCertificate;
  std::string strKey;
};

/// The files ca.pem, client.pem and client.key of the user's configuration folder. A missing one raises RunTimeError 53
/// that names it; one that cannot be used, because it holds something else, has run out or does not fit the others,
/// raises RunTimeError 5 that tells which and why.
ClientCredentials LoadClientCredentials();

/// One stream to a driver server. All objects of one connection share it; it ends when the last of them is released.
/// Calls come from the one thread that owns the connection, which also does the waiting.
class Connection {
 public:
  using Take = std::function<void(Reader &)>;
  using TakeObject = std::function<void(Reader &, ObjectId)>;

  Connection(const ServerAddress &address, const ClientCredentials *pCredentials, const Patience &patience);
  ~Connection();
  Connection(const Connection &) = delete;
  Connection &operator=(const Connection &) = delete;

  /// Has the server create the driver; answers whether there is a root. Raises RunTimeError.
  bool Greet(const std::string &strProgId);

  /// Writes a fetch, which travels with the next call, and answers the number of its object.
  ObjectId Fetch(const Asked &asked);
  /// Writes a call, sends it with all that was written, and waits. A failure leaves its description as a driver does.
  Status Call(const Asked &asked, const Take &take);
  /// The same for a call that hands out an object, whose number `take` is told.
  Status CallForObject(const Asked &asked, const TakeObject &take);
  /// Releases an object, with the next call or at once.
  void Release(ObjectId lngId, bool fAtOnce);
  /// Waits until the server has done everything posted.
  Status Sync();
  /// The failing status of a connection that is lost, with its description left; else a success.
  Status Failed();

  /// Frames that were answered, heartbeats not counted: the round trips.
  std::uint64_t RoundTrips() const { return m_lngRoundTrips; }

 private:
  class Stream;
  struct Register;

  static std::shared_ptr<Register> TheRegister();
  friend void SynchroniseConnections();
  friend std::uint64_t RoundTripsSoFar();

  Status Answered(const std::string &strAnswer, const Take &take);
  Status Make(const Asked &asked, ObjectId lngNewId, const TakeObject &take);
  Status CallPlainly(const Writer &call, const Take &take);
  bool AskAhead();
  void ApplyCorrection();
  bool SendPending(std::chrono::milliseconds limit);
  bool Fits(std::size_t lngBytes) const { return lngBytes + FrameSlack <= m_lngLargestFrame; }
  void SendWhenLarge();
  std::string Exchange(std::chrono::milliseconds limit, std::chrono::milliseconds whole);
  void Lose(Status status, const std::string &strWhy);
  static Status LeaveFailure(const Failure &failure);

  /// Bytes that stay free in a frame for what the transport adds.
  static constexpr std::size_t FrameSlack = 1024;

  /// Shared ownership: the last connection may outlive the register's other users.
  const std::shared_ptr<Register> m_register = TheRegister();
  const ServerAddress m_address;
  const Patience m_patience;
  /// For SynchroniseConnections, which may come from another thread.
  std::mutex m_mutex;
  Writer m_pending;
  Writer m_lateReleases;  ///< of objects whose fetches wait for a trail
  CallingAhead m_ahead;
  std::size_t m_lngLargestFrame = 0;
  ObjectId m_lngLastId = RootId;
  std::atomic<std::uint64_t> m_lngRoundTrips = 0;
  Status m_statusLost = automation::StatusOk;
  std::string m_strLost;
  std::unique_ptr<Stream> m_stream;
};

/// Creates the driver on the server and answers its root, or nothing when the creation handed back nothing.
/// Raises RunTimeError: the creation's own, or one that tells what is wrong with address, files or connection.
automation::Ref<automation::IUnknown> ConnectDriver(const std::string &strProgId, const std::string &strUrl,
                                                    const Patience &patience = {});

/// Waits until the servers of all open connections of this process have done everything sent to them, releases
/// included. For tests that count what a server holds.
void SynchroniseConnections();
/// Round trips of all connections of this process, ended ones included.
std::uint64_t RoundTripsSoFar();

}  // namespace tarvik::remote
