#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "remote/Connection.h"
#include "support/RunTimeError.h"
#include "support/UserFolders.h"

namespace tarvik::remote {

namespace {

constexpr std::int32_t ErrInvalidArgument = 5;

template <auto release>
struct Releasing {
  template <class T>
  void operator()(T *p) const {
    release(p);
  }
};
using Certificate = std::unique_ptr<X509, Releasing<X509_free>>;
using Key = std::unique_ptr<EVP_PKEY, Releasing<EVP_PKEY_free>>;
using Source = std::unique_ptr<BIO, Releasing<BIO_free_all>>;

std::string ReadPem(const std::filesystem::path &path, const char *strWhat) {
  std::ifstream file(path, std::ios::binary);
  std::string strText{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad() || strText.empty())
    throw RunTimeError(ErrFileNotFound, std::string("The driver server cannot be called: ") + strWhat + " " +
                                            path.string() + " is missing or cannot be read");
  return strText;
}

[[noreturn]] void RaiseUnusable(const std::string &strWhy) {
  // OpenSSL queues errors per thread; clear them for the next caller.
  ERR_clear_error();
  throw RunTimeError(ErrInvalidArgument, "The driver server cannot be called: " + strWhy);
}

Source SourceOf(const std::string &strPem) {
  return Source(BIO_new_mem_buf(strPem.data(), static_cast<int>(strPem.size())));
}

Certificate CertificateIn(const std::string &strPem, const std::string &strFile) {
  Certificate certificate(PEM_read_bio_X509(SourceOf(strPem).get(), nullptr, nullptr, nullptr));
  if (!certificate) RaiseUnusable(strFile + " holds no certificate");
  return certificate;
}

Key KeyIn(const std::string &strPem, const std::string &strFile) {
  // No password prompt.
  const auto noPassword = [](char *, int, int, void *) { return 0; };
  Key key(PEM_read_bio_PrivateKey(SourceOf(strPem).get(), nullptr, noPassword, nullptr));
  if (!key) RaiseUnusable(strFile + " holds no key, or one with a password");
  return key;
}

std::string DayOf(const ASN1_TIME *pTime) {
  std::tm time{};
  char strDay[16] = "";
  if (ASN1_TIME_to_tm(pTime, &time)) std::strftime(strDay, sizeof strDay, "%Y-%m-%d", &time);
  return strDay;
}

void CheckInForce(const X509 *pCertificate, const std::string &strFile) {
  const ASN1_TIME *pFirst = X509_get0_notBefore(pCertificate), *pLast = X509_get0_notAfter(pCertificate);
  if (X509_cmp_current_time(pLast) < 0) RaiseUnusable(strFile + " is a certificate that ran out on " + DayOf(pLast));
  if (X509_cmp_current_time(pFirst) > 0)
    RaiseUnusable(strFile + " is a certificate that is not in force before " + DayOf(pFirst));
}

}  // namespace

ClientCredentials LoadClientCredentials() {
  const auto configuration = UserConfigFolder();
  if (configuration.empty()) RaiseUnusable("there is no home folder to find the certificates in");
  const auto folder = configuration / "tarvikvi";
  const auto authority = folder / "ca.pem", certificate = folder / "client.pem", key = folder / "client.key";
  ClientCredentials credentials{ReadPem(authority, "the certificate of the authority"),
                                ReadPem(certificate, "the client's certificate"), ReadPem(key, "the client's key")};
  // The server would only close the connection; here the reason is known.
  CheckInForce(CertificateIn(credentials.strAuthority, authority.string()).get(), authority.string());
  const Certificate own = CertificateIn(credentials.strCertificate, certificate.string());
  CheckInForce(own.get(), certificate.string());
  const Key ownKey = KeyIn(credentials.strKey, key.string());
  if (X509_check_private_key(own.get(), ownKey.get()) != 1)
    RaiseUnusable(key.string() + " is not the key of the certificate " + certificate.string());
  return credentials;
}

}  // namespace tarvik::remote
