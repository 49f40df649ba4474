#include "remote/ServerCommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <chrono>

#include "instrument/KolvenDriver.h"
#include "remote/Pem.h"
#include "remote/ServerAddress.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"
#include "support/WholeFile.h"

namespace tarvik::remote {

namespace {

constexpr std::uint32_t LeastMessage = 64u * 1024u, MostMessage = 64u * 1024u * 1024u;
// Must exceed the 5 seconds between keepalive pings of an idle client, which would otherwise be disconnected.
constexpr int LeastKeepalive = 6, MostKeepalive = 3600;

[[noreturn]] void Refuse(const std::string &strReason) { throw RunTimeError(ErrInvalidPropertyValue, strReason); }

std::string ReadFile(const std::string &strPath) {
  try {
    return ReadWholeFile(strPath, LargestPemFile);
  } catch (const RunTimeError &error) {
    throw RunTimeError(error.Number(), strPath + " cannot be read: " + error.Description());
  }
}

void AddNames(std::set<std::string> &names, const std::string &strText) {
  for (const std::string &strLine : Split(strText, '\n'))
    if (const std::string strName = Trim(Replace(strLine.substr(0, strLine.find('#')), "\r", "")); !strName.empty())
      names.insert(strName);
}

/// The table of options.
class Parser {
 public:
  explicit Parser(ServerCommandLine &line)
      : m_app("Serves the instrument drivers of this machine to named clients.", "tarvik-driver-server"),
        m_arrRuleFiles(line.arrRuleFiles) {
    m_app.get_formatter()->column_width(25);
    m_app.option_defaults()->take_last();
    m_app.set_help_flag("--help", "this text");

    ServerOptions &options = line.options;
    Text("--listen", "HOST", "address or name to listen on (default: 127.0.0.1)", options.strHost);
    Number<std::uint16_t>("--port", "N", "port, 0 for one that the system chooses (default: 17830)", options.lngPort, 0,
                          65535);
    AccessRules &rules = options.rules;
    File("--certificate", "the server's certificate (PEM)", rules.strCertificate);
    KeyFile("--key", "its key (PEM), readable by its owner alone", rules.strKey);
    File("--authority", "certificate of the authority that signs clients (PEM)", rules.strAuthority);
    File("--revocations", "revocation list of the authority (PEM)", rules.strRevocations);
    Each("--allow", "NAME", "a client name that may connect; may be repeated",
         [&](const std::string &strName) { rules.allowedClients.insert(strName); });
    Each("--allow-file", "FILE", "such names, one a line, # begins a comment",
         [&](const std::string &strFile) { AddNames(rules.allowedClients, ReadRules(strFile)); });
    Each("--driver", "PROGID[/NAME]",
         "a driver that clients may use (default: KolvenAtl.Kolven), by its name where several are installed; may be "
         "repeated",
         [&](const std::string &strGiven) {
           const std::size_t lngProgId = strGiven.find('/');
           const std::string strProgId = strGiven.substr(0, lngProgId);
           options.drivers.insert(strProgId);
           line.chosenDrivers[strProgId] = lngProgId == std::string::npos ? "" : strGiven.substr(lngProgId + 1);
         });
    m_app.add_flag("--insecure", options.fInsecure, "no transport security; on a loopback address only");
    Number<std::size_t>("--max-clients", "N", "clients at a time (default: 64)", options.lngClients, 1, 10'000);
    Number<std::size_t>("--max-sessions", "N", "sessions of clients with one name at a time (default: 16)",
                        options.lngSessionsOfName, 1, 10'000);
    Number<std::size_t>("--max-objects", "N", "objects that one client holds at a time (default: 1000)",
                        options.limits.lngObjects, 16, 1'000'000);
    Number<std::uint32_t>("--max-message", "BYTES", "size of one message of a client (default: 1048576)",
                          options.limits.lngFrameBytes, LeastMessage, MostMessage);
    Number<std::size_t>("--max-transaction", "BYTES", "settings within one transaction (default: 16777216)",
                        options.limits.lngTransactionBytes, LeastMessage, std::int64_t{1} << 31);
    m_app.add_flag("--share", options.fShare, "several clients may have an instrument open at a time");
    Number<std::chrono::seconds>("--keepalive", "SECONDS",
                                 "a client silent for twice as long has vanished (default: 15)", options.keepalive,
                                 LeastKeepalive, MostKeepalive);
    Text("--log", "FILE", "log file to append to (default: standard error)", line.strLogFile);
    One("--log-format", "FORMAT", "text or json (default: text)", [&line](const std::string &strGiven) {
      if (strGiven != "text" && strGiven != "json") Refuse("--log-format takes text or json");
      line.eLogFormat = strGiven == "json" ? LogFormat::Json : LogFormat::Text;
    });
    Text("--control", "SOCKET", "local socket for tarvik-driver-server-ctl", line.strControl);
  }

  /// Returns the help text if --help was given.
  std::string Parse(int argc, char **argv) {
    try {
      m_app.parse(argc, argv);
      return {};
    } catch (const CLI::CallForHelp &) {
      return m_app.help();
    } catch (const CLI::ExtrasError &) {
      const std::string strExtra = m_app.remaining().front();
      Refuse(strExtra + (strExtra.starts_with('-') ? " is no option; try --help" : " is not an option"));
    } catch (const CLI::ParseError &error) {
      Refuse(std::string(error.what()) + "; try --help");
    }
  }

 private:
  template <class Take>
  void Each(const char *strOption, const char *strValue, const char *strText, Take take) {
    m_app
        .add_option_function<std::vector<std::string>>(
            strOption, [take](const std::vector<std::string> &arrValues) { std::ranges::for_each(arrValues, take); },
            strText)
        ->take_all()
        ->allow_extra_args(false)
        ->type_name(strValue);
  }
  template <class Take>
  void One(const char *strOption, const char *strValue, const char *strText, Take take) {
    m_app.add_option_function<std::string>(strOption, take, strText)->type_name(strValue);
  }
  void Text(const char *strOption, const char *strValue, const char *strText, std::string &place) {
    One(strOption, strValue, strText, [&place](const std::string &strGiven) { place = strGiven; });
  }
  void File(const char *strOption, const char *strText, std::string &place) {
    One(strOption, "FILE", strText, [this, &place](const std::string &strFile) { place = ReadRules(strFile); });
  }
  void KeyFile(const char *strOption, const char *strText, std::string &place) {
    One(strOption, "FILE", strText, [this, &place](const std::string &strFile) {
      CheckPrivate(strFile);
      place = ReadRules(strFile);
    });
  }
  std::string ReadRules(const std::string &strFile) {
    m_arrRuleFiles.push_back(strFile);
    return ReadFile(strFile);
  }
  /// Unit: the type that the number is converted to before the assignment.
  template <class Unit, class Place>
  void Number(const char *strOption, const char *strValue, const char *strText, Place &place, std::int64_t least,
              std::int64_t most) {
    One(strOption, strValue, strText, [=, &place](const std::string &strGiven) {
      std::int64_t number = 0;
      const char *end = strGiven.data() + strGiven.size();
      const auto [last, error] = std::from_chars(strGiven.data(), end, number);
      if (error != std::errc{} || last != end || number < least || number > most)
        Refuse(std::string(strOption) + " takes a number from " + std::to_string(least) + " to " +
               std::to_string(most));
      place = static_cast<Unit>(number);
    });
  }

  CLI::App m_app;
  std::vector<std::string> &m_arrRuleFiles;
};

}  // namespace

ServerCommandLine ServerCommandLine::Of(int argc, char **argv) {
  ServerCommandLine line;
  ServerOptions &options = line.options;
  options.strHost = "127.0.0.1";
  options.lngPort = ServerAddress::DefaultPort;
  line.strHelp = Parser(line).Parse(argc, argv);
  if (options.drivers.empty()) options.drivers.insert(kolven::DriverProgId);
  const AccessRules &rules = options.rules;
  const bool fKeys = !rules.strCertificate.empty() && !rules.strKey.empty() && !rules.strAuthority.empty();
  if (line.strHelp.empty() && !options.fInsecure && !fKeys) Refuse("--certificate, --key and --authority are needed");
  return line;
}

}  // namespace tarvik::remote
