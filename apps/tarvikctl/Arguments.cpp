#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "Commands.h"
#include "CtlFailure.h"
#include "CtlHost.h"

namespace tarvik {

namespace {

constexpr const char *Description =
    "Settings of pulse generators from the command line.\n\n"
    "Settings have the keys that `tarvikctl keys` lists, and values as the panel's fields take them:\n"
    "  tarvikctl set VP-210 timing.width[1]=50ns levels.high[1]=3.3V levels.output[1]=on\n\n"
    "Exit status: 0 done, 1 different (diff) or errors were pending (errors), 2 an argument is wrong,\n"
    "3 there is no such instrument, 4 the instrument or its driver refused, 5 no connection, 6 a file is bad.";

/// The parser with the commands of the program.
class Parser {
 public:
  explicit Parser(Arguments &arguments) : m_arguments(arguments), m_app(Description, "tarvikctl") {
    m_app.get_formatter()->column_width(28);
    m_app.set_help_flag("-h,--help", "Print the options");
    m_app.set_version_flag("-v,--version", "TarvikVI " TARVIK_VERSION, "Print the version");
    m_app.require_subcommand(1);
    m_app.fallthrough();
    CLI::Option *server =
        m_app.add_option("--server", arguments.strServer, "Instruments of the driver server at ADDRESS");
    server->type_name("ADDRESS");
    m_app.add_option("--driver", arguments.strDriver, "Instruments of this machine's driver of this NAME")
        ->type_name("NAME")
        ->excludes(server);
    m_app.add_flag("--json", arguments.fJson, "Print JSON");
    AddCommands();
  }

  void Parse(int argc, char *argv[]) { m_app.parse(argc, argv); }
  int Exit(const CLI::Error &asked) { return m_app.exit(asked); }

 private:
  void AddCommands() {
    Arguments &to = m_arguments;
    Command("list", "The instruments that the driver knows", &ListCommand);
    Command("keys", "All settings: key, page and caption of the panel, values", &KeysCommand);
    OfInstrument("info", "Who an instrument is and what its model lacks", &InfoCommand);
    OfInstrument("get", "Settings of an instrument; all of them without a key", &GetCommand)
        ->add_option("KEY", to.arrSettings, "such as timing.width[1]");
    OfInstrument("set", "Change settings of an instrument, all or none of them", &SetCommand)
        ->add_option("KEY=VALUE", to.arrSettings, "such as timing.width[1]=50ns")
        ->required();
    File(OfInstrument("save", "Write all settings of an instrument into a file", &SaveCommand));
    CLI::App *load = OfInstrument("load", "Send the settings of a file to an instrument, all or none", &LoadCommand);
    File(load);
    load->add_flag("--strict", to.fStrict, "Refuse a file that has settings which this instrument lacks");
    CLI::App *diff = Command("diff", "Differences between two files, two instruments, or one of each", &DiffCommand);
    diff->add_option("FIRST", to.strFirst, "a file, or the name of an instrument")->required();
    diff->add_option("SECOND", to.strSecond, "the same")->required();
    diff->add_flag("--exact", to.fExact, "Differences that may come from rounding, too");
    AddPattern();
    OfInstrument("errors", "The pending errors of an instrument, which forgets them", &ErrorsCommand);
    OfInstrument("reset", "Put an instrument into its default state", &ResetCommand);
    OfInstrument("selftest", "Run the self test of an instrument", &SelftestCommand);
  }

  void AddPattern() {
    CLI::App *pattern = m_app.add_subcommand("pattern", "A bit stream of an instrument, from and to files");
    pattern->require_subcommand(1);
    pattern->fallthrough();
    const auto add = [&](const char *strAction, const char *strWhat) {
      CLI::App *action = pattern->add_subcommand(strAction, strWhat);
      action->add_option("NAME", m_arguments.strName, "instrument")->required();
      action->add_option("ROW", m_arguments.strRow, "1 or 2 for a channel, or strobe")
          ->required()
          ->check(CLI::IsMember({"1", "2", "strobe"}));
      action->callback([this, strAction] {
        m_arguments.strAction = strAction;
        m_arguments.command = &PatternCommand;
      });
      return action;
    };
    CLI::App *get = add("get", "Print a stream, or write it into FILE");
    get->add_option("FILE", m_arguments.strFile, "- for standard output");
    get->add_flag("--bits", m_arguments.fDigits, "As digits 0 and 1");
    File(add("set", "Send the stream of FILE"));
    CLI::App *prbs = add("prbs", "Send a pseudo-random sequence of period 2^N - 1, which the driver works out");
    prbs->add_option("N", m_arguments.intBase, "7 to 14")->required()->check(CLI::Range(7, 14));
    prbs->add_option("LENGTH", m_arguments.intLength, "bits")->check(CLI::Range(2, 16384));
  }

  CLI::App *Command(const char *strName, const char *strWhat, int (*command)(const Arguments &)) {
    CLI::App *app = m_app.add_subcommand(strName, strWhat);
    app->callback([this, command] { m_arguments.command = command; });
    return app;
  }
  CLI::App *OfInstrument(const char *strName, const char *strWhat, int (*command)(const Arguments &)) {
    CLI::App *app = Command(strName, strWhat, command);
    app->add_option("NAME", m_arguments.strName, "instrument")->required();
    return app;
  }
  void File(CLI::App *app) {
    app->add_option("FILE", m_arguments.strFile, "- for standard input or output")->required();
  }

  Arguments &m_arguments;
  CLI::App m_app;
};

}  // namespace

Arguments ReadArguments(int argc, char *argv[]) {
  Arguments arguments;
  Parser parser(arguments);
  try {
    parser.Parse(argc, argv);
  } catch (const CLI::Success &asked) {
    arguments.intExit = parser.Exit(asked);
    arguments.command = nullptr;
  } catch (const CLI::ParseError &error) {
    Complain(error.what() + std::string("; tarvikctl --help tells what is possible"));
    arguments.intExit = eExitUsage;
    arguments.command = nullptr;
  }
  return arguments;
}

}  // namespace tarvik
