#pragma once

#include <grpc/grpc_security.h>
#include <grpcpp/grpcpp.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "remote/Pem.h"

namespace tarvik::remote {

/// The texts of the files that decide who gets in.
struct AccessRules {
  std::string strAuthority;              ///< PEM: who signs the clients' certificates
  std::string strCertificate;            ///< PEM: the server's own certificate
  std::string strKey;                    ///< PEM: its key
  std::string strRevocations;            ///< PEM: the authority's revocation list; may be empty
  std::set<std::string> allowedClients;  ///< names of certificates that may connect
};

/// Who a client is, by the certificate that the transport has checked.
struct ClientIdentity {
  std::vector<std::string> arrNames;  ///< common name and alternative names
  std::shared_ptr<const x509_st> certificate;

  static ClientIdentity Of(const grpc::ServerContext &context);
  std::string NamesText() const;
};

/// Who may connect. Can be given new rules while the server works: the next handshake uses them, and the sessions that
/// they exclude are told by Refusal. Any thread may ask.
class AccessList {
 public:
  /// Both raise RunTimeError 5 for rules that cannot be worked with: nobody is allowed, a text is no certificate or
  /// key, they do not fit, the server's certificate has run out, another authority signed the list. Set keeps the old
  /// rules then.
  explicit AccessList(AccessRules rules) { Set(std::move(rules)); }
  void Set(AccessRules rules);

  /// Why the client may not be here, or nothing.
  std::string Refusal(const ClientIdentity &identity) const;
  /// What the transport shows and asks for in each handshake.
  std::shared_ptr<grpc::ServerCredentials> Credentials();

 private:
  static grpc_ssl_certificate_config_reload_status Fetch(void *pSelf, grpc_ssl_server_certificate_config **ppConfig);

  mutable std::mutex m_mutex;
  AccessRules m_rules;
  RevocationList m_revocations;
  bool m_fChanged = true;  ///< since the transport last fetched the certificates
};

}  // namespace tarvik::remote
