#include "app/command_line.h"

namespace vantrel::app {

const char* const kUsage =
    "usage: vantrel [OPTION]... [PROFILE]\n"
    "The Morse keyer's window. PROFILE names a settings file of its own,\n"
    "PROFILEVantrel.INI in ~/.config/vantrel (or $VANTREL_HOME); without it\n"
    "the keyer uses Vantrel.INI.\n"
    "  --screenshot FILE        save the window as PNG once shown, then quit\n"
    "  --screenshot-setup FILE  the same for the Config, Keyer setup dialog\n"
    "  --help                   print this help and exit\n"
    "  --version                print the version and exit\n"
    "  --                       end of options: PROFILE may begin with -\n";

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine parsed;
  auto fail = [&parsed](std::string message) {
    parsed.action = CommandLine::Action::Error;
    parsed.error = std::move(message);
    return parsed;
  };
  bool options = true;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& arg = arguments[i];
    if (options && arg == "--") {
      options = false;
    } else if (options && (arg == "--help" || arg == "-h")) {
      parsed.action = CommandLine::Action::Help;
      return parsed;
    } else if (options && arg == "--version") {
      parsed.action = CommandLine::Action::Version;
      return parsed;
    } else if (options && (arg == "--screenshot" || arg == "--screenshot-setup")) {
      if (i + 1 == arguments.size()) return fail("option " + arg + " needs a file name");
      (arg == "--screenshot" ? parsed.screenshot : parsed.setupShot) = arguments[++i];
    } else if (options && arg.size() > 1 && arg[0] == '-') {
      return fail("unknown option " + arg);
    } else {
      if (!parsed.profile.empty()) parsed.profile += ' ';
      parsed.profile += arg;
    }
  }
  return parsed;
}

}  // namespace vantrel::app
