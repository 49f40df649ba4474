#include <algorithm>
#include <map>
#include <mutex>

#include "automation/Activation.h"
#include "automation/PlatformActivation.h"

namespace tarvik::automation {

namespace {

struct Registry {
  std::mutex mutex;
  std::map<std::string, ClassMaker> makers;
  std::map<std::string, std::string> chosen;  ///< by ProgID
  RemoteActivator activator;
};

Registry &TheRegistry() {
  static Registry registry;
  return registry;
}

}  // namespace

void RegisterClass(const std::string &strProgId, ClassMaker maker) {
  Registry &registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  if (maker)
    registry.makers[strProgId] = std::move(maker);
  else
    registry.makers.erase(strProgId);
}

void SetRemoteActivator(RemoteActivator activator) {
  Registry &registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  registry.activator = std::move(activator);
}

void ChooseDriver(const std::string &strProgId, const std::string &strName) {
  Registry &registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  registry.chosen[strProgId] = strName;
}

std::string ChosenDriver(const std::string &strProgId) {
  Registry &registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  const auto found = registry.chosen.find(strProgId);
  return found == registry.chosen.end() ? std::string() : found->second;
}

Ref<IUnknown> CreateObject(const std::string &strProgId, const std::string &strServer) {
  ClassMaker maker;
  RemoteActivator activator;
  {
    Registry &registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    if (const auto found = registry.makers.find(strProgId); found != registry.makers.end()) maker = found->second;
    activator = registry.activator;
  }
  if (!strServer.empty()) return activator ? activator(strProgId, strServer) : CreateOnServer(strProgId, strServer);
  const std::string strDriver = ChosenDriver(strProgId);
  return maker && strDriver.empty() ? maker() : CreateHere(strProgId, strDriver);
}

bool IsProgId(std::string_view strText) {
  constexpr std::size_t Longest = 200;
  const auto isAllowed = [](char ch) {
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') || ch == '.' || ch == '_' ||
           ch == '-';
  };
  return !strText.empty() && strText.size() <= Longest && strText.front() != '.' &&
         std::ranges::all_of(strText, isAllowed);
}

Guid ClassIdOf(const std::string &strProgId) {
  // FNV-1a with 128 bits: offset basis and prime as its authors publish them
  // (Fowler, Noll, Vo; draft-eastlake-fnv).
  __extension__ using Wide = unsigned __int128;
  constexpr Wide Basis = (Wide{0x6c62272e07bb0142} << 64) | 0x62b821756295c58d;
  constexpr Wide Prime = (Wide{0x0000000001000000} << 64) | 0x000000000000013B;
  Wide hash = Basis;
  for (const char ch : strProgId) {
    hash ^= static_cast<unsigned char>(ch >= 'A' && ch <= 'Z' ? ch - 'A' + 'a' : ch);
    hash *= Prime;
  }
  Guid guid{static_cast<std::uint32_t>(hash >> 96),
            static_cast<std::uint16_t>(hash >> 80),
            static_cast<std::uint16_t>(((hash >> 64) & 0x0FFF) | 0x8000),
            {}};
  for (int i = 0; i < 8; ++i) guid.Data4[i] = static_cast<std::uint8_t>(hash >> (56 - 8 * i));
  guid.Data4[0] = static_cast<std::uint8_t>((guid.Data4[0] & 0x3F) | 0x80);
  return guid;
}

}  // namespace tarvik::automation
