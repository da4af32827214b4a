// vantrel-sim: the keyer without a window, on virtual time, driven by a script.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>

#include "platform/linux/profile_claim.h"
#include "runner.h"
#include "script.h"
#include "settings/settings_store.h"

namespace {

constexpr const char* kUsage =
    "usage: vantrel-sim [--dir DIR] [--profile NAME] [--set \"KEY=VALUE\"]... [--language N]\n"
    "                   [--until MS] [--real-time] [--quiet] [--logger|--link]\n"
    "                   [--chip-revision N] SCRIPT|-\n"
    "       vantrel-sim --help | --version\n"
    "  --dir DIR        the configuration folder, its settings file read and written on disk\n"
    "                   (without it the settings live in memory)\n"
    "  --profile NAME   the keyer's command line: the settings file NAMEVantrel.INI\n"
    "  --set KEY=VALUE  a setting written to the file before start-up (repeatable)\n"
    "  --language N     the user's language number (1033 English, 1053 Swedish, ...)\n"
    "  --until MS       stop at this time\n"
    "  --real-time      the real clock and the configured real port, keyed as the keyer does\n"
    "  --quiet          print no trace (for measuring the port from outside)\n"
    "  --logger         an in-memory logger runs; control and slot write its block\n"
    "  --link           the logger's real shared memory and socket, not the in-memory logger\n"
    "  --chip-revision N  what the in-memory chip answers to host open (below 20 a WinKey,\n"
    "                   20 and up a WinKey2); by default the kind \"Keyer to Use\" names\n"
    "  SCRIPT           lines of \"<ms> <verb> [args]\"; - reads standard input\n";

[[noreturn]] void Fail(const std::string& message) {
  std::cerr << "vantrel-sim: " << message << "\n" << kUsage;
  std::exit(2);
}

long long Number(const char* text, const char* option) {
  char* end = nullptr;
  const long long value = std::strtoll(text, &end, 10);
  if (*text == '\0' || *end != '\0') Fail(std::string(option) + " takes a whole number");
  return value;
}

}  // namespace

int main(int argc, char** argv) {
  vantrel::sim::RunOptions options;
  const char* scriptPath = nullptr;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    if (arg == "--help" || arg == "-h") {
      std::cout << kUsage;
      return 0;
    } else if (arg == "--version") {
      std::cout << "vantrel-sim " VANTREL_VERSION "\n";
      return 0;
    } else if (arg == "--set" && hasValue) {
      const std::string setting = argv[++i];
      const auto equals = setting.find('=');
      if (equals == std::string::npos || equals == 0) Fail("--set takes KEY=VALUE");
      options.settings.emplace_back(setting.substr(0, equals), setting.substr(equals + 1));
    } else if (arg == "--dir" && hasValue) {
      options.directory = argv[++i];
    } else if (arg == "--profile" && hasValue) {
      options.profile = argv[++i];
    } else if (arg == "--real-time") {
      options.realTime = true;
    } else if (arg == "--quiet") {
      options.quiet = true;
    } else if (arg == "--link") {
      options.link = true;
    } else if (arg == "--logger") {
      options.logger = true;
    } else if (arg == "--chip-revision" && hasValue) {
      const long long revision = Number(argv[++i], "--chip-revision");
      if (revision < 0 || revision > 127) Fail("--chip-revision takes a number from 0 to 127");
      options.chipRevision = static_cast<int>(revision);
    } else if (arg == "--language" && hasValue) {
      const long long id = Number(argv[++i], "--language");
      if (id < 0 || id > 32767) Fail("--language takes a number from 0 to 32767");
      options.languageId = static_cast<int16_t>(id);
    } else if (arg == "--until" && hasValue) {
      const long long ms = Number(argv[++i], "--until");
      if (ms < 0) Fail("--until takes a time in ms, 0 or more");
      options.untilNs = ms * 1'000'000;
    } else if (arg.rfind("--", 0) == 0) {
      Fail("unknown or incomplete option " + arg);
    } else if (scriptPath) {
      Fail("one script only");
    } else {
      scriptPath = argv[i];
    }
  }
  if (!scriptPath) Fail("no script given");
  if (options.directory && !std::filesystem::is_directory(*options.directory)) {
    Fail("--dir " + *options.directory + " is not a folder");
  }
  // A run on a folder's settings file is a keyer like any other on that profile.
  std::optional<vantrel::platform::linuxos::ProfileClaim> claim;
  if (options.directory) {
    std::string error;
    claim = vantrel::platform::linuxos::ProfileClaim::Claim(
        vantrel::settings::SettingsFilePathFor(*options.directory, options.profile), error);
    if (!claim) {
      std::cerr << "vantrel-sim: " << error << "\n";
      return 1;
    }
  }

  std::ifstream file;
  if (std::strcmp(scriptPath, "-") != 0) {
    file.open(scriptPath);
    if (!file) Fail(std::string("cannot read ") + scriptPath + ": " + std::strerror(errno));
  }
  try {
    const auto events = vantrel::sim::ParseScript(file.is_open() ? file : std::cin);
    // On the real clock someone may follow the trace as it happens.
    vantrel::sim::Run(options, events, [&options](const std::string& line) {
      std::cout << line << '\n';
      if (options.realTime) std::cout.flush();
      // A reader that went away (| head): stop here, the exit releases the lines.
      if (!std::cout) {
        std::cerr << "vantrel-sim: cannot write the trace: " << std::strerror(errno) << "\n";
        std::exit(1);
      }
    });
  } catch (const vantrel::sim::ScriptError& error) {
    std::cerr << "vantrel-sim: " << (file.is_open() ? scriptPath : "stdin") << ": " << error.what()
              << "\n";
    return 2;
  }
  return 0;
}
