#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "scpi/ProfileFolders.h"
#include "scpi/ScpiInstrument.h"

namespace {

using namespace tarvik;
using namespace tarvik::scpi;

/// An instrument that says what stands in the input, a line for each query.
class FuzzedLine final : public Line {
 public:
  explicit FuzzedLine(std::string_view strAnswers) : m_strAnswers(strAnswers) {}
  void Open(Milliseconds) override {}
  void Close() override {}
  bool IsOpen() const override { return true; }
  void Clear(Milliseconds) override {}
  void Send(std::string_view, Milliseconds) override {}
  std::string Receive(std::size_t most, Milliseconds) override {
    if (m_strAnswers.empty()) throw driver::Failure("no answer");
    const std::size_t end = std::min(m_strAnswers.find('\n'), m_strAnswers.size());
    const std::string strAnswer(m_strAnswers.substr(0, end));
    m_strAnswers.remove_prefix(std::min(end + 1, m_strAnswers.size()));
    if (strAnswer.size() > most) throw driver::Failure("too long");
    return strAnswer;
  }

 private:
  std::string_view m_strAnswers;
};

void Require(bool fSound) {
  if (!fSound) std::abort();
}

/// Whatever an instrument answers, an operation ends with its result or with a failure that names the address.
template <class Operation>
void Try(Operation &&operation) {
  try {
    operation();
  } catch (const driver::Failure &failure) {
    Require(std::string_view(failure.what()).starts_with("fuzzed"));
  } catch (const driver::Rejected &rejected) {
    Require(!rejected.Errors().empty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const Profile profile = ProfileFolders::OfMachine().Read("scpi-99-pattern");
  driver::InstrumentDescription description;
  description.strName = "fuzzed";
  ScpiInstrument instrument(
      description, [] { return profile; },
      std::make_unique<Talk>(std::make_unique<FuzzedLine>(std::string_view(reinterpret_cast<const char *>(data), size)),
                             "fuzzed"));
  Try([&] { instrument.Connect(); });
  Try([&] {
    for (const tarvik::Long lngChannel : {1, 2})
      Require(std::isfinite(instrument.CurrentSettings().timing[lngChannel].dblWidth));
  });
  Try([&] {
    const tarvik::Long lngLength = instrument.CurrentPattern(1).Length();
    Require(lngLength >= 1 && lngLength <= driver::PatternBits);
  });
  Try([&] { instrument.TakeErrors(); });
  Try([&] { instrument.Warnings(); });
  Try([&] { instrument.SelfTest(); });
  Try([&] { instrument.Apply({[](driver::Settings &s) { s.timing[1].dblWidth = 3e-7; }}); });
  return 0;
}
