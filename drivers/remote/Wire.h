#pragma once

/// What travels on the stream: little-endian numbers, texts and byte rows with a 32-bit length before them.
/// A client frame is a row of commands, a server frame is one answer.

#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "automation/Abi.h"
#include "support/Types.h"

namespace tarvik::remote {

using automation::Status;

/// Changes whenever the layout of the commands themselves does; the contract has its own fingerprint.
inline constexpr std::uint16_t WireVersion = 3;

/// Calls in one frame at most.
inline constexpr std::size_t MostQueued = 256;

/// The client's number for an object; 0 is none. Numbers are never used again, and so wide that none runs out.
using ObjectId = std::uint64_t;
/// The driver's root on every connection.
inline constexpr ObjectId RootId = 1;

enum class Command : std::uint8_t {
  Hello = 1,    ///< version, contract fingerprint, ProgID; only as the first; answered by Welcome
  Call = 2,     ///< object, interface, operation, id for an object that comes back, arguments; answered
  Fetch = 3,    ///< the same without an answer: its failure waits for the next Call
  Release = 4,  ///< object
  Sync = 5,     ///< answered when all before it is done
  /// A Call among several: the frame is answered by Results. Behind one that fails nothing more of the frame is done.
  Queue = 6,
  ReleaseIfThere = 7,  ///< object, which may never have come to be
  Untaken = 8,         ///< number of queued calls whose answers nobody wanted, for the log
  Expect = 9,  ///< end of the answer to the queued call before it; behind another one nothing more of the frame is done
};

enum class Answer : std::uint8_t {
  Welcome = 1,    ///< outcome of the creation, object kind, largest client frame in bytes
  Result = 2,     ///< outcome, then object kind (where an object comes back) and filled arguments
  Heartbeat = 3,  ///< the server is at work on the call
  Results = 4,    ///< count, then a Result with its length for each queued call that was made
};

/// Kinds of what came back where the contract hands out an object; below these: the interface's number.
inline constexpr std::uint8_t KindUnknown = 0xFE, KindNothing = 0xFF;

/// How a call failed. A driver's status travels with its description; a failure that has a run-time error
/// number instead of a status says so.
struct Failure {
  bool fRunTimeNumber = false;
  std::int32_t lngNumber = 0;
  std::string strDescription;
  std::string strSource;
};

/// Bytes that break the rules of the stream.
class ProtocolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Appends to a frame.
class Writer {
 public:
  template <class Number>
  requires(std::is_arithmetic_v<Number>) void Put(Number value) {
    char arrBytes[sizeof value];
    std::memcpy(arrBytes, &value, sizeof value);
    m_strBytes.append(arrBytes, sizeof value);
  }
  void PutText(std::string_view strText) {
    Put(static_cast<std::uint32_t>(strText.size()));
    m_strBytes.append(strText);
  }
  void PutBytes(std::string_view strBytes) { m_strBytes.append(strBytes); }
  void PutFailure(const Failure &failure) {
    Put<std::uint8_t>(failure.fRunTimeNumber ? 2 : 1);
    Put(failure.lngNumber);
    PutText(failure.strDescription);
    PutText(failure.strSource);
  }
  void PutSuccess(Status status) {
    Put<std::uint8_t>(0);
    Put(status);
  }

  const std::string &Bytes() const { return m_strBytes; }
  std::string Take() { return std::exchange(m_strBytes, {}); }
  void Append(const Writer &other) { m_strBytes += other.m_strBytes; }
  std::size_t Size() const { return m_strBytes.size(); }
  bool Empty() const { return m_strBytes.empty(); }

 private:
  static_assert(std::endian::native == std::endian::little, "the frames are little-endian");
  std::string m_strBytes;
};

/// Reads a frame. Reading beyond its end raises ProtocolError.
class Reader {
 public:
  explicit Reader(std::string_view strBytes) : m_strLeft(strBytes) {}

  template <class Number>
  requires(std::is_arithmetic_v<Number>) Number Get() {
    Number value;
    std::memcpy(&value, Cut(sizeof value).data(), sizeof value);
    return value;
  }
  std::string_view GetText() { return Cut(Get<std::uint32_t>()); }
  /// `intForm` as PutFailure wrote it. A failure of no known form, or with the number of a success, breaks the rules.
  Failure GetFailure(std::uint8_t intForm) {
    if (intForm != 1 && intForm != 2) throw ProtocolError("a failure of an unknown kind");
    Failure failure;
    failure.fRunTimeNumber = intForm == 2;
    failure.lngNumber = Get<std::int32_t>();
    if (failure.fRunTimeNumber ? failure.lngNumber == 0 : failure.lngNumber >= 0)
      throw ProtocolError("a failure with the status of a success");
    failure.strDescription = GetText();
    failure.strSource = GetText();
    return failure;
  }
  Status GetSuccess() {
    const auto status = Get<Status>();
    if (automation::Failed(status)) throw ProtocolError("a success with the status of a failure");
    return status;
  }
  bool AtEnd() const { return m_strLeft.empty(); }
  /// Bytes that have not been read.
  std::size_t Left() const { return m_strLeft.size(); }

 private:
  std::string_view Cut(std::size_t lngCount) {
    if (lngCount > m_strLeft.size()) throw ProtocolError("a frame ends too early");
    const std::string_view strPart = m_strLeft.substr(0, lngCount);
    m_strLeft.remove_prefix(lngCount);
    return strPart;
  }

  std::string_view m_strLeft;
};

}  // namespace tarvik::remote
