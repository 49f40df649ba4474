#include <filesystem>

#include "remote/Connection.h"
#include "remote/Pem.h"
#include "support/RunTimeError.h"
#include "support/UserFolders.h"
#include "support/WholeFile.h"

namespace tarvik::remote {

namespace {

constexpr const char *NotCalled = "The driver server cannot be called: ";

std::string ReadPem(const std::filesystem::path &path, const char *strWhat) {
  try {
    return ReadWholeFile(path, LargestPemFile);
  } catch (const RunTimeError &error) {
    throw RunTimeError(ErrFileNotFound, std::string(NotCalled) + strWhat + " " + path.string() +
                                            " is missing or cannot be read: " + error.Description());
  }
}

}  // namespace

ClientCredentials LoadClientCredentials() {
  const auto configuration = UserConfigFolder();
  if (configuration.empty())
    throw RunTimeError(ErrInvalidArgument,
                       std::string(NotCalled) + "there is no home folder to find the certificates in");
  const auto folder = configuration / "tarvikvi";
  const auto authority = folder / "ca.pem", certificate = folder / "client.pem", key = folder / "client.key";
  ClientCredentials credentials{ReadPem(authority, "the certificate of the authority"),
                                ReadPem(certificate, "the client's certificate"), ReadPem(key, "the client's key")};
  try {
    CheckPrivate(key.string());
    // The server would only close the connection; here the reason is known.
    CheckInForce(CertificateIn(credentials.strAuthority, authority.string()), authority.string());
    const Certificate own = CertificateIn(credentials.strCertificate, certificate.string());
    CheckInForce(own, certificate.string());
    if (!Fits(KeyIn(credentials.strKey, key.string()), own))
      throw RunTimeError(ErrInvalidArgument,
                         key.string() + " is not the key of the certificate " + certificate.string());
  } catch (const RunTimeError &error) {
    throw RunTimeError(error.Number(), NotCalled + error.Description());
  }
  return credentials;
}

}  // namespace tarvik::remote
