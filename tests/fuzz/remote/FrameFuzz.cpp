#include <cstddef>
#include <cstdint>

#include "automation/Object.h"
#include "remote/ServerSession.h"

namespace {

using namespace tarvik;
using namespace tarvik::remote;

/// Answers a list for the root, and leaves the rest of the contract out: the bytes are what is on trial.
class List final : public automation::Object<kolven::IInstrumentList> {
 public:
  Status TARVIK_CALL GetCount(Long *pValue) override { return *pValue = 1, automation::StatusOk; }
  Status TARVIK_CALL GetItem(kolven::AutomationVariant, kolven::IDispatch **ppObject) override {
    *ppObject = nullptr;
    return automation::StatusOk;
  }
  Status TARVIK_CALL Refresh() override { return automation::StatusFalse; }
};

class Root final : public automation::Object<kolven::IDriverRoot> {
 public:
  Status TARVIK_CALL GetInstruments(kolven::IInstrumentList **ppObject) override {
    *ppObject = automation::MakeObject<List>().Detach();
    return automation::StatusOk;
  }
};

}  // namespace

/// Whatever a client sends ends in an answer or in ProtocolError. The first bytes tell how the frames are cut.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *pData, std::size_t lngSize) {
  ServerSession session([](const std::string &) { return Ref<IUnknown>(automation::MakeObject<Root>()); }, {},
                        [](const std::string &) {});
  Writer hello;
  hello.Put(static_cast<std::uint8_t>(Command::Hello));
  hello.Put(WireVersion);
  hello.Put(ContractFingerprint());
  hello.PutText("KolvenAtl.Kolven");
  const std::string_view strBytes(reinterpret_cast<const char *>(pData), lngSize);
  try {
    session.Handle(hello.Bytes());
    if (!strBytes.empty()) {
      const auto lngFirst = static_cast<std::size_t>(pData[0]);
      session.Handle(strBytes.substr(1).substr(0, lngFirst));
      if (strBytes.size() > 1 + lngFirst) session.Handle(strBytes.substr(1 + lngFirst));
    }
  } catch (const ProtocolError &) {
  }
  return 0;
}
