#include "remote/AccessList.h"

#include <algorithm>
#include <utility>

#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

/// The transport's own credentials object; the C++ face of the library makes it only for certificates that stay.
class FetchedCredentials final : public grpc::ServerCredentials {
 public:
  FetchedCredentials(grpc_ssl_server_certificate_config_callback fetch, void *pUser)
      : m_credentials(grpc_ssl_server_credentials_create_with_options(
            grpc_ssl_server_credentials_create_options_using_config_fetcher(
                GRPC_SSL_REQUEST_AND_REQUIRE_CLIENT_CERTIFICATE_AND_VERIFY, fetch, pUser))) {}
  ~FetchedCredentials() override { grpc_server_credentials_release(m_credentials); }
  void SetAuthMetadataProcessor(const std::shared_ptr<grpc::AuthMetadataProcessor> &) override {}

 private:
  int AddPortToServer(const std::string &strAddress, grpc_server *pServer) override {
    return grpc_server_add_http2_port(pServer, strAddress.c_str(), m_credentials);
  }

  grpc_server_credentials *const m_credentials;
};

/// The transport takes what does not fit and then refuses every client, so it is looked at here.
RevocationList Checked(const AccessRules &rules) {
  if (rules.allowedClients.empty())
    throw RunTimeError(ErrInvalidArgument, "The list of clients that may connect is empty");
  try {
    const Certificate own = CertificateIn(rules.strCertificate, "the server's certificate");
    const Certificate authority = CertificateIn(rules.strAuthority, "the authority's certificate");
    CheckInForce(own, "the server's certificate");
    CheckInForce(authority, "the authority's certificate");
    if (!Fits(KeyIn(rules.strKey, "the server's key"), own))
      throw RunTimeError(ErrInvalidArgument, "the server's certificate and key do not fit");
    if (rules.strRevocations.empty()) return nullptr;
    RevocationList revocations = RevocationListIn(rules.strRevocations, "the revocation list");
    if (!IsSignedBy(revocations, authority))
      throw RunTimeError(ErrInvalidArgument, "the authority did not sign the revocation list");
    return revocations;
  } catch (const RunTimeError &error) {
    throw RunTimeError(error.Number(), "The driver server cannot work: " + error.Description());
  }
}

void AppendProperty(std::vector<std::string> &arrValues, const grpc::AuthContext &authority, const char *strProperty) {
  for (const grpc::string_ref &value : authority.FindPropertyValues(strProperty))
    if (const std::string strValue(value.data(), value.size());
        std::ranges::find(arrValues, strValue) == arrValues.end())
      arrValues.push_back(strValue);
}

}  // namespace

ClientIdentity ClientIdentity::Of(const grpc::ServerContext &context) {
  ClientIdentity identity;
  const auto authority = context.auth_context();
  if (!authority) return identity;
  for (const char *strProperty : {GRPC_X509_CN_PROPERTY_NAME, GRPC_X509_SAN_PROPERTY_NAME})
    AppendProperty(identity.arrNames, *authority, strProperty);
  std::vector<std::string> arrPem;
  AppendProperty(arrPem, *authority, GRPC_X509_PEM_CERT_PROPERTY_NAME);
  if (!arrPem.empty()) identity.certificate = CertificateIn(arrPem.front(), "the client");
  return identity;
}

std::string ClientIdentity::NamesText() const {
  std::string strResult;
  for (const std::string &strName : arrNames) strResult += (strResult.empty() ? "" : ", ") + strName;
  return strResult.empty() ? "nobody" : strResult;
}

void AccessList::Set(AccessRules rules) {
  RevocationList revocations = Checked(rules);
  const std::lock_guard lock(m_mutex);
  m_rules = std::move(rules);
  m_revocations = std::move(revocations);
  m_fChanged = true;
}

std::string AccessList::Refusal(const ClientIdentity &identity) const {
  const std::lock_guard lock(m_mutex);
  if (std::ranges::none_of(identity.arrNames,
                           [&](const auto &strName) { return m_rules.allowedClients.contains(strName); }))
    return "the certificate's name " + identity.NamesText() + " is not on the list of clients";
  if (!identity.certificate || !IsInForce(*identity.certificate))
    return "the certificate of " + identity.NamesText() + " has run out";
  if (m_revocations && Revokes(*m_revocations, *identity.certificate))
    return "the certificate of " + identity.NamesText() + " is revoked";
  return {};
}

std::shared_ptr<grpc::ServerCredentials> AccessList::Credentials() {
  return std::make_shared<FetchedCredentials>(&Fetch, this);
}

/// Called by the transport ahead of each handshake.
grpc_ssl_certificate_config_reload_status AccessList::Fetch(void *pSelf,
                                                            grpc_ssl_server_certificate_config **ppConfig) {
  auto &self = *static_cast<AccessList *>(pSelf);
  const std::lock_guard lock(self.m_mutex);
  if (!std::exchange(self.m_fChanged, false)) return GRPC_SSL_CERTIFICATE_CONFIG_RELOAD_UNCHANGED;
  const grpc_ssl_pem_key_cert_pair pair{self.m_rules.strKey.c_str(), self.m_rules.strCertificate.c_str()};
  *ppConfig = grpc_ssl_server_certificate_config_create(self.m_rules.strAuthority.c_str(), &pair, 1);
  return GRPC_SSL_CERTIFICATE_CONFIG_RELOAD_NEW;
}

}  // namespace tarvik::remote
