#include "Arguments.h"

#include <CLI/CLI.hpp>

#include "Commands.h"

namespace tarvik::scpi {

namespace {

constexpr const char *Description =
    "Instruments that speak SCPI: which there are, and which profile each of them has.\n\n"
    "An ADDRESS is written as TCPIP::host::port::SOCKET, TCPIP::host::INSTR (VXI-11) or USB::/dev/usbtmc0.\n\n"
    "Exit status: 0 done, 1 a query of the profile was not answered as it should be (check), 2 an argument is wrong,\n"
    "3 there is no such instrument, 5 no connection, 6 a file is bad.";

/// The shortest and the longest time-out.
constexpr int Shortest = 1, Longest = 600000;

class Parser {
 public:
  explicit Parser(Arguments &arguments) : m_arguments(arguments), m_app(Description, "tarvik-scpi") {
    m_app.get_formatter()->column_width(28);
    m_app.set_help_flag("-h,--help", "Print the options");
    m_app.set_version_flag("-v,--version", "TarvikVI " TARVIK_VERSION, "Print the version");
    m_app.require_subcommand(1);
    m_app.fallthrough();
    m_app.add_option("--timeout", arguments.intTimeout, "How long an answer may take, milliseconds")
        ->type_name("MS")
        ->check(CLI::Range(Shortest, Longest));
    AddCommands();
  }

  void Parse(int argc, char *argv[]) { m_app.parse(argc, argv); }
  int Exit(const CLI::Error &asked) { return m_app.exit(asked); }

 private:
  void AddCommands() {
    Arguments &to = m_arguments;
    CLI::App *add = Command("add", "Enter an instrument, with the profile that suits it", &AddCommand);
    add->add_option("ADDRESS", to.strAddress, "where the instrument is")->required();
    add->add_option("--name", to.strName, "Its name in the list; its product name without this")->type_name("NAME");
    add->add_option("--profile", to.strProfile, "Its profile; with a name too the instrument is not asked")
        ->type_name("PROFILE");
    add->add_option("--log", to.strLog, "A file for everything that goes over the line")->type_name("FILE");
    Command("list", "The instruments that are entered", &ListCommand);
    Command("remove", "Take an instrument out of the list", &RemoveCommand)
        ->add_option("NAME", to.strName, "instrument")
        ->required();
    Command("discover", "Ask the whole local network for instruments", &DiscoverCommand)
        ->add_flag("--add", to.fAdd, "Enter those that are new");
    CLI::App *check = Command("check", "Check a profile, with an ADDRESS on the instrument", &CheckCommand);
    check->add_option("PROFILE", to.strProfile, "its name, or a file")->required();
    check->add_option("ADDRESS", to.strAddress, "an instrument to try each query on");
    Command("profiles", "The profiles of this machine", &ProfilesCommand);
  }

  CLI::App *Command(const char *strName, const char *strWhat, int (*command)(const Arguments &)) {
    CLI::App *app = m_app.add_subcommand(strName, strWhat);
    app->callback([this, command] { m_arguments.command = command; });
    return app;
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
  } catch (const CLI::ParseError &asked) {
    arguments.command = nullptr;
    arguments.intExit = parser.Exit(asked) == 0 ? eExitDone : eExitUsage;
  }
  return arguments;
}

}  // namespace tarvik::scpi
