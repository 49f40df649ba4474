#include "remote/Pem.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <sys/stat.h>

#include <cstdlib>

#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

struct FreeSource {
  void operator()(BIO *p) const { BIO_free_all(p); }
};
using Source = std::unique_ptr<BIO, FreeSource>;

[[noreturn]] void RaiseUnusable(const std::string &strWhy) {
  // OpenSSL queues errors per thread; clear them for the next caller.
  ERR_clear_error();
  throw RunTimeError(ErrInvalidArgument, strWhy);
}

Source SourceOf(const std::string &strPem) {
  return Source(BIO_new_mem_buf(strPem.data(), static_cast<int>(strPem.size())));
}

std::string DayOf(const ASN1_TIME *pTime) {
  std::tm time{};
  char strDay[16] = "";
  if (ASN1_TIME_to_tm(pTime, &time)) std::strftime(strDay, sizeof strDay, "%Y-%m-%d", &time);
  return strDay;
}

}  // namespace

void FreePem::operator()(x509_st *p) const { X509_free(p); }
void FreePem::operator()(evp_pkey_st *p) const { EVP_PKEY_free(p); }
void FreePem::operator()(X509_crl_st *p) const { X509_CRL_free(p); }

Certificate CertificateIn(const std::string &strPem, const std::string &strName) {
  Certificate certificate(PEM_read_bio_X509(SourceOf(strPem).get(), nullptr, nullptr, nullptr));
  if (!certificate) RaiseUnusable(strName + " holds no certificate");
  return certificate;
}

PrivateKey KeyIn(const std::string &strPem, const std::string &strName) {
  // No password prompt.
  const auto noPassword = [](char *, int, int, void *) { return 0; };
  PrivateKey key(PEM_read_bio_PrivateKey(SourceOf(strPem).get(), nullptr, noPassword, nullptr));
  if (!key) RaiseUnusable(strName + " holds no key, or one with a password");
  return key;
}

RevocationList RevocationListIn(const std::string &strPem, const std::string &strName) {
  RevocationList list(PEM_read_bio_X509_CRL(SourceOf(strPem).get(), nullptr, nullptr, nullptr));
  if (!list) RaiseUnusable(strName + " holds no revocation list");
  return list;
}

void CheckPrivate(const std::string &strKeyFile) {
  struct stat status {};
  if (stat(strKeyFile.c_str(), &status) != 0 || (status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return;
  // What systemd hands over belongs to root and is opened to the service by its group or by an access list.
  const char *strCredentials = std::getenv("CREDENTIALS_DIRECTORY");
  if (strCredentials && strKeyFile.starts_with(std::string(strCredentials) + "/") && (status.st_mode & S_IRWXO) == 0)
    return;
  RaiseUnusable("others than its owner can use " + strKeyFile + "; chmod 600 \"" + strKeyFile + "\" mends it");
}

void CheckInForce(const Certificate &certificate, const std::string &strName) {
  const ASN1_TIME *pFirst = X509_get0_notBefore(certificate.get()), *pLast = X509_get0_notAfter(certificate.get());
  if (X509_cmp_current_time(pLast) < 0) RaiseUnusable(strName + " is a certificate that ran out on " + DayOf(pLast));
  if (X509_cmp_current_time(pFirst) > 0)
    RaiseUnusable(strName + " is a certificate that is not in force before " + DayOf(pFirst));
}

bool IsInForce(const x509_st &certificate) {
  return X509_cmp_current_time(X509_get0_notAfter(&certificate)) > 0 &&
         X509_cmp_current_time(X509_get0_notBefore(&certificate)) < 0;
}

bool Fits(const PrivateKey &key, const Certificate &certificate) {
  const bool fFits = X509_check_private_key(certificate.get(), key.get()) == 1;
  ERR_clear_error();
  return fFits;
}

bool IsSignedBy(const RevocationList &list, const Certificate &authority) {
  const bool fSigned = X509_NAME_cmp(X509_CRL_get_issuer(list.get()), X509_get_subject_name(authority.get())) == 0 &&
                       X509_CRL_verify(list.get(), X509_get0_pubkey(authority.get())) == 1;
  ERR_clear_error();
  return fSigned;
}

bool Revokes(const X509_crl_st &list, const x509_st &certificate) {
  if (X509_NAME_cmp(X509_CRL_get_issuer(&list), X509_get_issuer_name(&certificate)) != 0) return false;
  // The library sorts the list at the first look-up, for which it takes a lock of its own.
  X509_REVOKED *pRevoked = nullptr;
  auto &own = const_cast<X509_crl_st &>(list);
  return X509_CRL_get0_by_serial(&own, &pRevoked, X509_get0_serialNumber(&certificate)) == 1;
}

}  // namespace tarvik::remote
