#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "SessionFrames.h"
#include "automation/Activation.h"
#include "automation/ErrorInfo.h"
#include "remote/ServerSession.h"

/// The export of the simulated instruments' driver, to which this program is linked.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllGetClassObject(const tarvik::automation::Guid &rclsid,
                                                                              const tarvik::automation::Guid &riid,
                                                                              void **ppv);

namespace {

using namespace tarvik;
using namespace tarvik::remote;

void Require(bool fCondition) {
  if (!fCondition) std::abort();
}

/// A data folder with a rack whose instruments never take their time.
class RackFolder {
 public:
  RackFolder() {
    std::filesystem::create_directories(m_folder / "tarvikvi/drivers");
    std::ofstream(m_folder / "tarvikvi/drivers/KolvenAtl.Kolven.rack")
        << "[VP-210]\noptions = 010 VXI trigger\nwarning = 120,\"Warming up\"\n\n[VP-110]\nchannels = 1\nlacks = 132\n";
    setenv("XDG_DATA_HOME", m_folder.c_str(), 1);
  }
  RackFolder(const RackFolder &) = delete;
  RackFolder &operator=(const RackFolder &) = delete;
  ~RackFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_folder, error);
  }

 private:
  const std::filesystem::path m_folder =
      std::filesystem::temp_directory_path() / ("tarvik-frames-" + std::to_string(getpid()));
};

Ref<IUnknown> Root(const std::string &) {
  static const RackFolder folder;
  Ref<automation::IClassFactory> factory;
  Ref<IUnknown> root;
  automation::Check(DllGetClassObject(automation::ClassIdOf(kolven::DriverProgId), automation::IidClassFactory,
                                      reinterpret_cast<void **>(factory.Out())));
  automation::Check(factory->CreateInstance(nullptr, automation::IidUnknown, reinterpret_cast<void **>(root.Out())));
  return root;
}

/// The greeting, the list as object 2 and an instrument as object 3, open and reset.
void BeginSession(ServerSession &session) {
  session.Handle(Frame().Hello().Bytes());
  session.Handle(Frame()
                     .Fetch(RootId, "IDriverRoot", "GetInstruments", 2)
                     .Call(2, "IInstrumentList", "GetItem", 3)
                     .Key("VP-210")
                     .Bytes());
  session.Handle(Frame()
                     .Call(3, "IInstrument", "Open")
                     .Argument<Integer>(0)
                     .Argument<Integer>(-1)
                     .Argument<Integer>(-1)
                     .Argument<Integer>(0)
                     .Bytes());
}

void RequireOutcome(Reader &in) {
  if (const auto intForm = in.Get<std::uint8_t>(); intForm != 0) {
    Require(intForm <= 2);
    in.GetFailure(intForm);
    Require(in.AtEnd());
  } else {
    Require(!automation::Failed(in.Get<Status>()));
  }
}

/// The answers of calls that were sent together: each of them one by itself, and only the last a failure.
void RequireResults(Reader &in) {
  for (auto lngCount = in.Get<std::uint32_t>(); lngCount > 0; --lngCount) {
    Reader answer(in.GetText());
    Require(static_cast<Answer>(answer.Get<std::uint8_t>()) == Answer::Result);
    const bool fFailed = Reader(answer).Get<std::uint8_t>() != 0;
    RequireOutcome(answer);
    Require(!fFailed || lngCount == 1);
  }
  Require(in.AtEnd());
}

/// An answer tells its kind and an outcome, whatever the question was.
void RequireAnswer(const std::string &strAnswer) {
  if (strAnswer.empty()) return;
  Reader in(strAnswer);
  const auto eKind = static_cast<Answer>(in.Get<std::uint8_t>());
  if (eKind == Answer::Results) return RequireResults(in);
  Require(eKind == Answer::Welcome || eKind == Answer::Result);
  RequireOutcome(in);
}

}  // namespace

/// Answers of all sessions so far.
std::size_t g_lngAnswers = 0;

/// One stream of a client to the simulated instruments. The first byte tells whether the bytes begin before the
/// greeting or with an open instrument; then follow frames, each behind its length in two bytes. Whatever comes ends in
/// answers or in ProtocolError, and the end of the session leaves no instrument open.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *pData, std::size_t lngSize) {
  std::string_view strLeft(reinterpret_cast<const char *>(pData), lngSize);
  if (strLeft.empty()) return 0;
  bool fOpen = false;
  ServerSession session(Root, {}, [&](const std::string &strText) {
    if (strText.starts_with("opened "))
      fOpen = true;
    else if (strText.starts_with("closed ") || strText.starts_with("closes "))
      fOpen = false;
  });
  if (strLeft.front() & 1) BeginSession(session);
  strLeft.remove_prefix(1);
  try {
    while (strLeft.size() >= 2) {
      const std::size_t lngFrame = Reader(strLeft).Get<std::uint16_t>();
      strLeft.remove_prefix(2);
      const std::string_view strFrame = strLeft.substr(0, lngFrame);
      strLeft.remove_prefix(strFrame.size());
      const std::string strAnswer = session.Handle(strFrame);
      RequireAnswer(strAnswer);
      if (!strAnswer.empty()) ++g_lngAnswers;
    }
  } catch (const ProtocolError &) {
  }
  session.End();
  Require(session.Objects() == 0);
  Require(!fOpen);
  return 0;
}
