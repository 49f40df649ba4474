#include <algorithm>
#include <array>
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
  // FNV-1a with 128 bits: offset basis and prime as its authors publish them (Fowler, Noll, Vo; draft-eastlake-fnv).
  // The words stand lowest first, since a compiler for 32 bits has no number of 128.
  std::array<std::uint32_t, 4> hash{0x6295c58d, 0x62b82175, 0x07bb0142, 0x6c62272e};
  for (const char ch : strProgId) {
    hash[0] ^= static_cast<unsigned char>(ch >= 'A' && ch <= 'Z' ? ch - 'A' + 'a' : ch);
    // The prime is 2^88 + 0x13B.
    const std::uint64_t upper = (std::uint64_t{hash[1]} << 32 | hash[0]) << 24;
    std::uint64_t carry = 0;
    for (std::uint32_t &word : hash) {
      carry += std::uint64_t{word} * 0x13B;
      word = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    const std::uint64_t sum = (std::uint64_t{hash[3]} << 32 | hash[2]) + upper;
    hash[2] = static_cast<std::uint32_t>(sum);
    hash[3] = static_cast<std::uint32_t>(sum >> 32);
  }
  Guid guid{
      hash[3], static_cast<std::uint16_t>(hash[2] >> 16), static_cast<std::uint16_t>((hash[2] & 0x0FFF) | 0x8000), {}};
  for (std::size_t i = 0; i < 8; ++i) guid.Data4[i] = static_cast<std::uint8_t>(hash[1 - i / 4] >> (24 - 8 * (i % 4)));
  guid.Data4[0] = static_cast<std::uint8_t>((guid.Data4[0] & 0x3F) | 0x80);
  return guid;
}

}  // namespace tarvik::automation
