#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvik::remote {

/// A fresh set of certificates, gone at the end, and the configuration folder of a client that has one of them.
class TestCertificates {
 public:
  TestCertificates() {
    const std::string strCommand = std::string("\"") + CERTIFICATE_SCRIPT + "\" \"" + m_folder.string() + "\"";
    if (std::system(strCommand.c_str()) != 0) throw std::runtime_error("no certificates could be made");
  }
  TestCertificates(const TestCertificates &) = delete;
  TestCertificates &operator=(const TestCertificates &) = delete;
  ~TestCertificates() {
    std::error_code error;
    std::filesystem::remove_all(m_folder, error);
  }

  /// What a server with transport security is started with; it lets the client "bench" in, on
  /// instruments that clients share.
  std::vector<std::string> ServerOptions(const std::string &strPort = "0",
                                         const std::string &strName = "server") const {
    return {"--share",
            "--listen",
            "127.0.0.1",
            "--port",
            strPort,
            "--certificate",
            File(strName + ".pem"),
            "--key",
            File(strName + ".key"),
            "--authority",
            File("ca.pem"),
            "--allow",
            "bench"};
  }
  /// From now on this process is the client of that certificate, with another one's key where one is named.
  void UseClient(const std::string &strName, const std::string &strKey = {}) const {
    const auto target = m_folder / "config/tarvikvi";
    std::filesystem::create_directories(target);
    const auto copy = [&](const std::string &strFrom, const char *strTo) {
      std::filesystem::copy_file(File(strFrom), target / strTo, std::filesystem::copy_options::overwrite_existing);
    };
    copy("ca.pem", "ca.pem");
    copy(strName + ".pem", "client.pem");
    copy((strKey.empty() ? strName : strKey) + ".key", "client.key");
    setenv("XDG_CONFIG_HOME", (m_folder / "config").c_str(), 1);
  }
  /// The file that UseClient puts there.
  std::string ClientFile(const std::string &strName) const { return File("config/tarvikvi/") + strName; }
  std::string File(const std::string &strName) const { return (m_folder / strName).string(); }

 private:
  const std::filesystem::path m_folder =
      std::filesystem::temp_directory_path() / ("tarvik-certificates-" + std::to_string(getpid()));
};

}  // namespace tarvik::remote
