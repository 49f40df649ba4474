#pragma once

#include <cstddef>
#include <ctime>
#include <memory>
#include <string>

struct x509_st;
struct evp_pkey_st;
struct X509_crl_st;

namespace tarvik::remote {

/// Calls the library's function that frees an object.
struct FreePem {
  void operator()(x509_st *p) const;
  void operator()(evp_pkey_st *p) const;
  void operator()(X509_crl_st *p) const;
};
using Certificate = std::unique_ptr<x509_st, FreePem>;
using PrivateKey = std::unique_ptr<evp_pkey_st, FreePem>;
using RevocationList = std::unique_ptr<X509_crl_st, FreePem>;

/// Upper bound in bytes of a file of certificates, keys or names; a revocation list of 400,000 entries fits.
inline constexpr std::size_t LargestPemFile = std::size_t{16} << 20;

/// What PEM texts hold. Each raises RunTimeError 5 with a reason that begins with `strName`, the name of file or text.
Certificate CertificateIn(const std::string &strPem, const std::string &strName);
/// One with a password is none.
PrivateKey KeyIn(const std::string &strPem, const std::string &strName);
RevocationList RevocationListIn(const std::string &strPem, const std::string &strName);

/// Raises the same where others than the owner of the file can use it, with the command that mends it.
void CheckPrivate(const std::string &strKeyFile);
/// Raises the same where the certificate has run out or is not in force yet.
void CheckInForce(const Certificate &certificate, const std::string &strName);
bool IsInForce(const x509_st &certificate);
/// Whether the key is that of the certificate.
bool Fits(const PrivateKey &key, const Certificate &certificate);
/// Whether the authority signed the list.
bool IsSignedBy(const RevocationList &list, const Certificate &authority);
/// Whether the list names the certificate.
bool Revokes(const X509_crl_st &list, const x509_st &certificate);

}  // namespace tarvik::remote
