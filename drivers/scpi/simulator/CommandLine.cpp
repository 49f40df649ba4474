#include "scpi/simulator/CommandLine.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>

#include "scpi/simulator/CommandTable.h"
#include "scpi/simulator/FaultWords.h"
#include "simulator/model/Rack.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace tarvik::scpisim {

namespace {

constexpr std::int64_t LeastMessage = 256, MostMessage = 64 << 20, LongestDelay = 60000, MostFaultMessages = 1000000;

[[noreturn]] void Refuse(const std::string &strReason) { throw RunTimeError(ErrInvalidPropertyValue, strReason); }

std::int64_t NumberOf(const std::string &strOption, const std::string &strGiven, std::int64_t least,
                      std::int64_t most) {
  std::int64_t number = 0;
  const char *end = strGiven.data() + strGiven.size();
  const auto [last, error] = std::from_chars(strGiven.data(), end, number);
  if (error != std::errc{} || last != end || number < least || number > most)
    Refuse(strOption + " takes a number from " + std::to_string(least) + " to " + std::to_string(most));
  return number;
}

/// N:KIND or N:KIND:ever.
void ReadFault(CommandLine &line, const std::string &strGiven) {
  const std::vector<std::string> arrParts = Split(strGiven, ':');
  const bool fForm = arrParts.size() == 2 || (arrParts.size() == 3 && (arrParts[2] == "ever" || arrParts[2] == "once"));
  if (!fForm) Refuse("--fault takes N:KIND or N:KIND:ever");
  line.lngFaultAt = static_cast<Long>(NumberOf("--fault", arrParts[0], 1, MostFaultMessages));
  line.fFaultEver = arrParts.size() == 3 && arrParts[2] == "ever";
  std::string strKnown;
  for (const FaultWord &word : FaultWords) {
    if (word.strName == arrParts[1]) line.fault = word.fault;
    strKnown += std::string(" ") + word.strName;
  }
  if (line.fault == Fault::None) Refuse("\"" + arrParts[1] + "\" is no fault; there are" + strKnown);
}

/// The instruments of the rack file, or of the built-in rack without one.
std::vector<std::shared_ptr<driver::Instrument>> Instruments(const std::string &strRackFile) {
  std::vector<std::filesystem::path> arrFiles;
  if (!strRackFile.empty()) {
    if (!std::filesystem::exists(strRackFile)) throw RunTimeError(ErrFileNotFound, strRackFile + " is not there");
    arrFiles.emplace_back(strRackFile);
  }
  simulator::Rack rack(std::move(arrFiles));
  try {
    rack.Load();
  } catch (const simulator::RackFileError &error) {
    throw RunTimeError(ErrInvalidFileFormat, error.what());
  }
  std::vector<std::shared_ptr<driver::Instrument>> arrInstruments;
  for (Long lngNumber = 1; lngNumber <= rack.Count(); ++lngNumber) arrInstruments.push_back(rack.ByNumber(lngNumber));
  return arrInstruments;
}

std::string ModelList(const std::string &strRackFile) {
  std::string strList;
  for (const auto &instrument : Instruments(strRackFile)) {
    const simulator::InstrumentDescription &description = instrument->Description();
    if (description.fOpens) strList += description.strName + "\t" + description.strIdentity + "\n";
  }
  return strList;
}

std::string CommandList() {
  std::string strList;
  for (const Command &command : CommandTable()) {
    const bool fSet = command.write || command.act, fAsk = command.read || command.ask;
    strList += command.header.Notation() + (!fSet ? "?" : fAsk ? "\t" + command.header.Notation() + "?" : "") + "\n";
  }
  return strList;
}

simulator::InstrumentDescription Choose(const std::string &strRackFile, const std::string &strModel) {
  const auto arrInstruments = Instruments(strRackFile);
  for (const auto &instrument : arrInstruments) {
    const simulator::InstrumentDescription &description = instrument->Description();
    if (!strModel.empty() && description.strName != strModel) continue;
    if (description.fOpens) return description;
    if (!strModel.empty()) Refuse("\"" + strModel + "\" does not open: somebody else holds it");
  }
  if (strModel.empty()) Refuse("the rack has no instrument that opens");
  Refuse("\"" + strModel + "\" is no instrument of the rack; try --list");
}

/// The table of options.
class Parser {
 public:
  explicit Parser(CommandLine &line)
      : m_line(line), m_app("Serves a simulated pulse generator that speaks SCPI.", "tarvik-scpi-simulator") {
    m_app.get_formatter()->column_width(25);
    m_app.option_defaults()->take_last();
    m_app.set_help_flag("--help", "this text");
    m_app.add_flag("--version", m_fVersion, "the version");
    m_app.add_flag("--list", m_fList, "prints the instruments that --model takes");
    m_app.add_flag("--commands", m_fCommands, "prints the headers of all commands");
    Text("--model", "NAME", "the instrument (default: the first one, VP-210)", m_strModel);
    Text("--rack", "FILE", "a rack file that describes other instruments", m_strRackFile);
    Text("--listen", "HOST", "address or name to listen on (default: 127.0.0.1)", line.server.strHost);
    Number("--port", "N", "port, 0 for one that the system chooses (default: 5025)", line.server.intPort, 0, 65535);
    Number("--max-clients", "N", "clients at a time (default: 32)", line.server.lngClients, 1, 1000);
    Number("--max-message", "BYTES", "size of one message of a client (default: 65536)", line.server.lngLongestMessage,
           LeastMessage, MostMessage);
    Number("--delay", "MS", "how long each answer waits (default: 0)", line.answerDelay, 0, LongestDelay);
    One("--fault", "N:KIND[:ever]", "goes wrong at the N-th message, once or from then on",
        [&line](const std::string &strGiven) { ReadFault(line, strGiven); });
  }

  void Parse(int argc, char **argv) {
    try {
      m_app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
      m_line.strPrint = m_app.help();
      return;
    } catch (const CLI::ExtrasError &) {
      Refuse(m_app.remaining().front() + " is no option; try --help");
    } catch (const CLI::ParseError &error) {
      Refuse(std::string(error.what()) + "; try --help");
    }
    if (m_fVersion) m_line.strPrint = "tarvik-scpi-simulator " TARVIK_VERSION "\n";
    if (m_fCommands) m_line.strPrint = CommandList();
    if (m_fList) m_line.strPrint = ModelList(m_strRackFile);
    if (m_line.strPrint.empty()) m_line.instrument = Choose(m_strRackFile, m_strModel);
  }

 private:
  template <class Take>
  void One(const char *strOption, const char *strValue, const char *strText, Take take) {
    m_app.add_option_function<std::string>(strOption, take, strText)->type_name(strValue);
  }
  void Text(const char *strOption, const char *strValue, const char *strText, std::string &place) {
    One(strOption, strValue, strText, [&place](const std::string &strGiven) { place = strGiven; });
  }
  template <class Place>
  void Number(const char *strOption, const char *strValue, const char *strText, Place &place, std::int64_t least,
              std::int64_t most) {
    One(strOption, strValue, strText, [=, &place](const std::string &strGiven) {
      place = static_cast<Place>(NumberOf(strOption, strGiven, least, most));
    });
  }

  CommandLine &m_line;
  CLI::App m_app;
  bool m_fVersion = false, m_fList = false, m_fCommands = false;
  std::string m_strModel, m_strRackFile;
};

}  // namespace

CommandLine CommandLine::Of(int argc, char **argv) {
  CommandLine line;
  Parser(line).Parse(argc, argv);
  return line;
}

}  // namespace tarvik::scpisim
