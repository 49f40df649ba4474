#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "RemoteClient.h"
#include "ServerProcess.h"
#include "TestCertificates.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {
namespace {

namespace fs = std::filesystem;

/// Servers with transport security, and the configuration folder of a client.
class Certificates : public testing::Test {
 protected:
  static void TearDownTestSuite() { Files().reset(); }
  static std::unique_ptr<TestCertificates> &Files() {
    static std::unique_ptr<TestCertificates> files;
    if (!files) files = std::make_unique<TestCertificates>();
    return files;
  }
  static void UseClient(const std::string &strName, const std::string &strKey = {}) {
    Files()->UseClient(strName, strKey);
  }
  static std::string ClientFile(const char *strName) { return Files()->ClientFile(strName); }
  static std::string Text(const std::string &strName) {
    std::ifstream file(Files()->File(strName));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static std::vector<std::string> Options(const std::string &strServer) {
    return Files()->ServerOptions("0", strServer);
  }
  static std::string Url(const ServerProcess &server) { return "tarvik://localhost:" + server.Port(); }
  /// A client that lets nobody look at its certificate beforehand.
  static RunTimeError ErrorOfCareless(const std::string &strUrl, const ClientCredentials &credentials) {
    return ErrorOf([&] {
      Connection connection(ParseServerAddress(strUrl), &credentials, Short);
      connection.Greet(kolven::DriverProgId);
    });
  }
  static void ExpectSaid(const RunTimeError &error, Long lngNumber, const std::string &strText) {
    EXPECT_EQ(error.Number(), lngNumber);
    EXPECT_NE(error.Description().find(strText), std::string::npos) << error.Description();
  }
};

TEST_F(Certificates, ClientOnTheListIsServed) {
  ServerProcess server(Options("server"));
  UseClient("client");
  EXPECT_TRUE(Opened(Url(server)));
  EXPECT_TRUE(server.LogSays("bench at ipv4:127.0.0.1"));
}

TEST_F(Certificates, RefusedClientsAreToldWhyAndDisturbNobody) {
  ServerProcess server(Options("server"));
  UseClient("client");
  const auto instrument = Opened(Url(server));
  Begin(instrument);
  SetWidth(instrument, 3e-7);

  UseClient("stranger");
  ExpectSaid(ErrorOf([&] { Root(Url(server)); }), automation::StatusAccessDenied,
             "refuses this client: the certificate's name stranger is not on the list of clients");
  EXPECT_TRUE(server.LogSays("stranger at ipv4:127.0.0.1"));

  UseClient("expired");
  ExpectSaid(ErrorOf([&] { Root(Url(server)); }), 5,
             ClientFile("client.pem") + " is a certificate that ran out on 2020-02-01");
  ExpectSaid(ErrorOfCareless(Url(server), {Text("ca.pem"), Text("expired.pem"), Text("expired.key")}), StatusNoSecurity,
             "may not take this client's certificate");

  UseClient("foreign");
  ExpectSaid(ErrorOf([&] { Root(Url(server)); }), StatusNoSecurity, "may not take this client's certificate");
  ExpectSaid(ErrorOfCareless(Url(server), {Text("ca.pem"), {}, {}}), StatusNoSecurity,
             "may not take this client's certificate");

  ExpectSaid(ErrorOf([&] { Root("tarvik+insecure://127.0.0.1:" + server.Port()); }), StatusServerUnavailable,
             "may want transport security");

  for (const char *strSaid : {"certificate verify failed", "peer did not return a certificate", "wrong version number"})
    EXPECT_TRUE(server.LogSays(strSaid)) << server.LogText();
  EXPECT_TRUE(IsInTransaction(instrument));
  Call(instrument, &IInstrument::Transaction, kolven::TransactionCommit);
  EXPECT_DOUBLE_EQ(Width(instrument), 3e-7);
}

TEST_F(Certificates, ServerThatIsNotTheOneMeantIsNotCalled) {
  UseClient("client");
  ServerProcess foreign(Options("foreign-server"));
  ExpectSaid(ErrorOf([&] { Root(Url(foreign)); }), StatusNoSecurity,
             "shows a certificate that has run out or that the authority in ca.pem did not sign");
  EXPECT_EQ(foreign.LogText().find("connected"), std::string::npos);
  ServerProcess elsewhere(Options("elsewhere"));
  ExpectSaid(ErrorOf([&] { Root(Url(elsewhere)); }), StatusNoSecurity, "shows a certificate of another name");
  ServerProcess insecure(ServerProcess::Insecure());
  ExpectSaid(ErrorOf([&] { Root(Url(insecure)); }), StatusNoSecurity, "does not speak with transport security");
}

TEST_F(Certificates, ServerWithAnExpiredCertificateDoesNotStart) {
  try {
    ServerProcess server(Options("expired-server"));
    ADD_FAILURE() << "it started";
  } catch (const std::runtime_error &error) {
    EXPECT_STREQ(error.what(), "the server said: ");
  }
}

TEST_F(Certificates, KeyThatOthersCanReadIsNotUsed) {
  UseClient("client");
  fs::permissions(ClientFile("client.key"), fs::perms::group_read, fs::perm_options::add);
  ExpectSaid(ErrorOf([&] { Root("tarvik://localhost:1"); }), 5,
             "others than its owner can use " + ClientFile("client.key") + "; chmod 600 \"" + ClientFile("client.key") +
                 "\" mends it");
  fs::permissions(ClientFile("client.key"), fs::perms::group_read, fs::perm_options::remove);
}

TEST_F(Certificates, BadFilesOfTheClientAreNamedBeforeAnythingIsCalled) {
  const std::string strUrl = "tarvik://localhost:1";
  UseClient("client", "stranger");
  ExpectSaid(ErrorOf([&] { Root(strUrl); }), 5,
             ClientFile("client.key") + " is not the key of the certificate " + ClientFile("client.pem"));
  UseClient("client");
  for (const char *strName : {"ca.pem", "client.pem", "client.key"}) {
    UseClient("client");
    std::ofstream(ClientFile(strName), std::ios::trunc) << "-----BEGIN NOTHING-----\n";
    ExpectSaid(ErrorOf([&] { Root(strUrl); }), 5, ClientFile(strName) + " holds no ");
    fs::remove(ClientFile(strName));
    ExpectSaid(ErrorOf([&] { Root(strUrl); }), 53, ClientFile(strName) + " is missing or cannot be read");
    fs::create_directory(ClientFile(strName));
    ExpectSaid(ErrorOf([&] { Root(strUrl); }), 53,
               ClientFile(strName) + " is missing or cannot be read: It is a folder");
    fs::remove(ClientFile(strName));
  }
}

}  // namespace
}  // namespace tarvik::remote
