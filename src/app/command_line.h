// The keyer's command line, read before any window exists, so that --help
// and --version work without a display.
#pragma once

#include <string>
#include <vector>

namespace vantrel::app {

struct CommandLine {
  enum class Action { Run, Help, Version, Error };
  Action action = Action::Run;
  std::string profile;     // the words that are not options, joined by spaces
  std::string screenshot;  // --screenshot FILE: grab the window and quit
  // --screenshot-setup FILE: the same for the dialog that Config, Keyer setup
  // opens for the keyer in use
  std::string setupShot;
  std::string error;  // what was wrong, for Action::Error
};

// `arguments` without the program's name. "--" ends the options, so that a
// profile may begin with a dash.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

extern const char* const kUsage;

}  // namespace vantrel::app
