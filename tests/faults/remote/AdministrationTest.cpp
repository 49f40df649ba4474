#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>

#include "ProgramOutput.h"
#include "RemoteClient.h"
#include "ServerProcess.h"
#include "TestCertificates.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::MatchesRegex;

/// A server whose files the test changes, with a client named bench that has an instrument open.
class Administration : public testing::Test {
 protected:
  Administration() {
    certificates.UseClient("client");
    Write("clients", "bench\nstranger\n");
    auto arrOptions = certificates.ServerOptions();
    arrOptions.resize(arrOptions.size() - 2);
    std::erase(arrOptions, "--share");
    arrOptions.insert(arrOptions.end(), {"--allow-file", File("clients"), "--control", File("control")});
    Write("revoked", "");
    arrOptions.insert(arrOptions.end(), {"--revocations", File("revoked")});
    server.emplace(arrOptions);
  }
  std::string File(const std::string &strName) const { return certificates.File(strName); }
  void Write(const std::string &strName, const std::string &strText) const {
    std::ofstream(File(strName), std::ios::trunc) << strText;
  }
  std::string Url() const { return "tarvik://localhost:" + server->Port(); }
  std::pair<std::string, int> Ask(const std::string &strCommand) const {
    return test::SaidBy("\"" CONTROL_PROGRAM "\" --control \"" + File("control") + "\" " + strCommand);
  }
  void ExpectCut(const Ref<IInstrument> &instrument, const char *strWhy) const {
    EXPECT_TRUE(server->LogSays(std::string("ended: ") + strWhy)) << server->LogText();
    EXPECT_TRUE(server->LogSays("closes VP-210, which was left open"));
    EXPECT_TRUE(automation::Failed(instrument->Reset()));
  }

  const TestCertificates certificates;
  std::optional<ServerProcess> server;
};

TEST_F(Administration, WhoIsTakenOffTheListIsCutWhenTheFileChanges) {
  const auto instrument = Opened(Url());
  Write("clients", "stranger\n");
  ExpectCut(instrument, "the certificate's name bench is not on the list of clients");
  EXPECT_EQ(ErrorOf([&] { Root(Url()); }).Number(), automation::StatusAccessDenied);
  certificates.UseClient("stranger");
  EXPECT_TRUE(Opened(Url()));
}

TEST_F(Administration, WhoIsRevokedIsCutOnSighupAndDoesNotGetInAgain) {
  const auto instrument = Opened(Url());
  fs::copy_file(File("revocations.pem"), File("revoked"), fs::copy_options::overwrite_existing);
  server->Signal(SIGHUP);
  ExpectCut(instrument, "the certificate of bench is revoked");
  EXPECT_THAT(ErrorOf([&] { Root(Url()); }).Description(), HasSubstr("the certificate of bench is revoked"));
  certificates.UseClient("stranger");
  EXPECT_TRUE(Opened(Url()));
}

/// The certificate of the client "client" with the same key and a life of so many seconds from now.
std::string ShortLived(const TestCertificates &certificates, int intSeconds) {
  const auto read = [&](const char *strName, auto readPem) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> file(BIO_new_file(certificates.File(strName).c_str(), "r"),
                                                         BIO_free);
    return readPem(file.get(), nullptr, nullptr, nullptr);
  };
  const std::unique_ptr<X509, decltype(&X509_free)> certificate(read("client.pem", PEM_read_bio_X509), X509_free);
  const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(read("ca.key", PEM_read_bio_PrivateKey), EVP_PKEY_free);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), intSeconds);
  X509_sign(certificate.get(), key.get(), EVP_sha256());
  const std::unique_ptr<BIO, decltype(&BIO_free)> text(BIO_new(BIO_s_mem()), BIO_free);
  PEM_write_bio_X509(text.get(), certificate.get());
  char *pText = nullptr;
  const long lngSize = BIO_get_mem_data(text.get(), &pText);
  return {pText, static_cast<std::size_t>(lngSize)};
}

TEST_F(Administration, WhoseCertificateRunsOutWithinASessionIsCutWithinSeconds) {
  Ref<IInstrument> instrument;
  int intSeconds = 3;
  // A machine that is busy may take longer to open the instrument than the certificate lives.
  for (; !instrument && intSeconds < 100; intSeconds *= 2) {
    std::ofstream(certificates.ClientFile("client.pem"), std::ios::trunc) << ShortLived(certificates, intSeconds);
    try {
      instrument = Opened(Url());
    } catch (const RunTimeError &error) {
      EXPECT_THAT(error.Description(), testing::AnyOf(HasSubstr("ran out"), HasSubstr("run out")));
    }
  }
  ASSERT_TRUE(instrument);
  EXPECT_TRUE(server->LogSays("ended: the certificate of bench has run out", std::chrono::seconds(intSeconds + 5)));
  ExpectCut(instrument, "the certificate of bench has run out");
  EXPECT_THAT(ErrorOf([&] { Root(Url()); }).Description(), HasSubstr("client.pem"));
  certificates.UseClient("stranger");
  EXPECT_TRUE(Opened(Url()));
}

TEST_F(Administration, RulesThatCannotBeWorkedWithLeaveTheOldOnes) {
  const auto instrument = Opened(Url());
  Write("clients", "# nobody\n");
  EXPECT_TRUE(server->LogSays("goes on with the certificates and lists that it had: The list of clients"));
  EXPECT_FALSE(IsInTransaction(instrument));
  EXPECT_TRUE(Root(Url()));
}

TEST_F(Administration, NewCertificateOfTheServerIsShownWithoutARestart) {
  for (const char *strEnd : {".pem", ".key"})
    fs::copy_file(File(std::string("elsewhere") + strEnd), File(std::string("server") + strEnd),
                  fs::copy_options::overwrite_existing);
  ASSERT_TRUE(server->LogSays("has read its certificates and lists again")) << server->LogText();
  EXPECT_THAT(ErrorOf([&] { Root(Url()); }).Description(), HasSubstr("shows a certificate of another name"));
}

TEST_F(Administration, SessionsAndHoldersAreShownAndOneIsEnded) {
  const auto instrument = Opened(Url());
  const std::string strWho = "bench at 127\\.0\\.0\\.1:[0-9]+ since [-0-9]+ [0-9:]+ UTC\n";
  EXPECT_THAT(Ask("sessions").first, MatchesRegex("[0-9]+\t" + strWho));
  const std::string strHolders = Ask("holders").first;
  EXPECT_THAT(strHolders, MatchesRegex("[0-9]+\tKolvenAtl\\.Kolven VP-210\t" + strWho));
  EXPECT_EQ(Ask("end 4711"), std::pair(std::string("tarvik-driver-server-ctl: error: there is no session 4711\n"), 1));
  EXPECT_EQ(Ask("end " + strHolders.substr(0, strHolders.find('\t'))), std::pair(std::string("ended\n"), 0));
  ExpectCut(instrument, "the administrator ended it");
  EXPECT_TRUE(WaitUntil([&] { return Ask("sessions").first.empty(); }));
  EXPECT_EQ(Ask("holders").first, "");
}

TEST_F(Administration, SocketIsItsOwnersAndGroupsAndGoesWithTheServer) {
  struct stat status {};
  ASSERT_EQ(stat(File("control").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0660u);
  EXPECT_EQ(server->End(SIGTERM), 0);
  EXPECT_FALSE(fs::exists(File("control")));
  EXPECT_THAT(Ask("sessions").first, HasSubstr("cannot be reached"));
}

TEST_F(Administration, OnlyDriversOfTheListAreCreated) {
  const RunTimeError error = ErrorOf([&] { ConnectDriver("Kolven.Other", Url(), Short); });
  EXPECT_EQ(error.Number(), 429);
  EXPECT_EQ(error.Description(), "The driver server offers no driver Kolven.Other");
}

}  // namespace
}  // namespace tarvik::remote
