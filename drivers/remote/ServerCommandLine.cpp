#include "remote/ServerCommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <fstream>
#include <iterator>

#include "remote/ServerAddress.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

constexpr std::uint32_t LeastMessage = 64u * 1024u, MostMessage = 64u * 1024u * 1024u;
// Must exceed the 5 seconds between keepalive pings of an idle client, which would otherwise be disconnected.
constexpr int LeastKeepalive = 6, MostKeepalive = 3600;

[[noreturn]] void Refuse(const std::string &strReason) { throw RunTimeError(ErrInvalidPropertyValue, strReason); }

std::string ReadFile(const std::string &strPath) {
  std::ifstream file(strPath, std::ios::binary);
  std::string strText{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) throw RunTimeError(ErrFileNotFound, strPath + " cannot be read");
  return strText;
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
      : m_app("Serves the instrument drivers of this machine to named clients.", "tarvik-driver-server") {
    m_app.get_formatter()->column_width(25);
    m_app.option_defaults()->take_last();
    m_app.set_help_flag("--help", "this text");

    ServerOptions &options = line.options;
    Text("--listen", "HOST", "address or name to listen on (default: 0.0.0.0)", options.strHost);
    Number<std::uint16_t>("--port", "N", "port, 0 for one that the system chooses (default: 17830)", options.lngPort, 0,
                          65535);
    File("--certificate", "the server's certificate (PEM)", options.strCertificate);
    File("--key", "its key (PEM)", options.strKey);
    File("--authority", "certificate of the authority that signs clients (PEM)", options.strAuthority);
    Each("--allow", "NAME", "a client name that may connect; may be repeated",
         [&](const std::string &strName) { options.allowedClients.insert(strName); });
    Each("--allow-file", "FILE", "such names, one a line, # begins a comment",
         [&](const std::string &strFile) { AddNames(options.allowedClients, ReadFile(strFile)); });
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
    One(strOption, "FILE", strText, [&place](const std::string &strFile) { place = ReadFile(strFile); });
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
};

}  // namespace

ServerCommandLine ServerCommandLine::Of(int argc, char **argv) {
  ServerCommandLine line;
  ServerOptions &options = line.options;
  options.strHost = "0.0.0.0";
  options.lngPort = ServerAddress::DefaultPort;
  line.strHelp = Parser(line).Parse(argc, argv);
  const bool fKeys = !options.strCertificate.empty() && !options.strKey.empty() && !options.strAuthority.empty();
  if (line.strHelp.empty() && !options.fInsecure && !fKeys) Refuse("--certificate, --key and --authority are needed");
  return line;
}

}  // namespace tarvik::remote
