#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <string_view>

namespace tarvik {

namespace {

constexpr const char *Name = "tarvikvi";
constexpr const char *ToolkitOptions =
    "Options of the toolkit:\n"
    "  -platform NAME        where windows appear, such as xcb, wayland or offscreen\n"
    "  -display NAME         the X display\n"
    "  -style NAME           how controls look\n"
    "  -stylesheet FILE      rules for how controls look\n"
    "  -qwindowgeometry TEXT place and size of the window, as 900x700+50+50\n"
    "  -reverse              from right to left\n";

/// The arguments in the parser's order, last one first. It would miss the value in "--server=", so that is made two.
std::vector<std::string> Reversed(int argc, char *argv[]) {
  std::vector<std::string> arrArguments;
  for (int i = argc - 1; i > 0; --i) {
    const std::string_view strArgument = argv[i];
    const bool fEmptyValue = strArgument.starts_with("--") && strArgument.find('=') + 1 == strArgument.size();
    if (fEmptyValue) arrArguments.emplace_back();
    arrArguments.emplace_back(strArgument.substr(0, strArgument.size() - (fEmptyValue ? 1 : 0)));
  }
  return arrArguments;
}

}  // namespace

CommandLine::CommandLine(int argc, char *argv[]) : arrToolkit{argc > 0 ? argv[0] : Name} {
  CLI::App app("Front panel for pulse generators with one or two channels.", Name);
  app.allow_extras();
  app.get_formatter()->column_width(24);
  app.option_defaults()->take_last();
  app.set_help_flag("-h,--help", "Print the options");
  app.set_help_all_flag("--help-all", "Print the options, with those of the toolkit");
  app.set_version_flag("-v,--version", "TarvikVI " TARVIK_VERSION, "Print the version");
  // Functions, because an empty text would leave an optional as it was.
  const auto into = [](std::optional<std::string> &place) {
    return [&](const std::string &strText) { place = strText; };
  };
  app.add_option_function<std::string>("--tour", into(strTour),
                                       "Walk through a session, print its steps and write pictures into FOLDER")
      ->type_name("FOLDER");
  app.add_option_function<std::string>("--server", into(strServer),
                                       "Connect to the driver server at ADDRESS this time; \"\" is this machine")
      ->type_name("ADDRESS");
  app.add_option_function<std::string>("--driver", into(strDriver),
                                       "Use the driver of this NAME this time; \"\" is the one without a name")
      ->type_name("NAME");
  try {
    app.parse(Reversed(argc, argv));
    for (const std::string &strArgument : app.remaining())
      if (strArgument != "--") arrToolkit.push_back(strArgument);
  } catch (const CLI::CallForAllHelp &) {
    std::cout << app.help("", CLI::AppFormatMode::All) << ToolkitOptions;
    intExit = 0;
  } catch (const CLI::Success &asked) {
    intExit = app.exit(asked);
  } catch (const CLI::ParseError &error) {
    std::cerr << Name << ": " << error.what() << "; tarvikvi --help tells what is\n";
    intExit = 1;
  }
}

int RefuseArgument(const std::string &strArgument) {
  std::cerr << Name << ": \"" << strArgument << "\" is not understood; tarvikvi --help tells what is\n";
  return strArgument.starts_with('-') ? 1 : 2;
}

}  // namespace tarvik
