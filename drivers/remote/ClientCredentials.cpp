#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "remote/Connection.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

std::filesystem::path ConfigurationFolder() {
  const char *strConfigured = std::getenv("XDG_CONFIG_HOME");
  if (strConfigured && *strConfigured == '/') return std::filesystem::path(strConfigured) / "tarvikvi";
  const char *strHome = std::getenv("HOME");
  return std::filesystem::path(strHome ? strHome : "") / ".config" / "tarvikvi";
}

std::string ReadPem(const std::filesystem::path &path, const char *strWhat) {
  std::ifstream file(path, std::ios::binary);
  std::string strText{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad() || strText.empty())
    throw RunTimeError(ErrFileNotFound, std::string("The driver server cannot be called: ") + strWhat + " " +
                                            path.string() + " is missing or cannot be read");
  return strText;
}

}  // namespace

ClientCredentials LoadClientCredentials() {
  const auto folder = ConfigurationFolder();
  return {ReadPem(folder / "ca.pem", "the certificate of the authority"),
          ReadPem(folder / "client.pem", "the client's certificate"),
          ReadPem(folder / "client.key", "the client's key")};
}

}  // namespace tarvik::remote
