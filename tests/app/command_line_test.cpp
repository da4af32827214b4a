#include "app/command_line.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <vector>

namespace vantrel::app {
namespace {

using Action = CommandLine::Action;

TEST(CommandLine, WordsThatAreNotOptionsAreTheProfileAsBefore) {
  EXPECT_EQ(ParseCommandLine({}).profile, "");
  const CommandLine parsed = ParseCommandLine({"contest", "--screenshot", "a.png", "cw"});
  EXPECT_EQ(parsed.action, Action::Run);
  EXPECT_EQ(parsed.profile, "contest cw");
  EXPECT_EQ(parsed.screenshot, "a.png");
  EXPECT_EQ(ParseCommandLine({"--screenshot-setup", "b.png"}).setupShot, "b.png");
  // After "--" nothing is an option: a profile may begin with a dash.
  const CommandLine dashed = ParseCommandLine({"--", "--help", "-x"});
  EXPECT_EQ(dashed.action, Action::Run);
  EXPECT_EQ(dashed.profile, "--help -x");
  // A lone dash is a word, as in most programs.
  EXPECT_EQ(ParseCommandLine({"-"}).profile, "-");
}

TEST(CommandLine, HelpAndVersionWinWhereverTheyStand) {
  EXPECT_EQ(ParseCommandLine({"--help"}).action, Action::Help);
  EXPECT_EQ(ParseCommandLine({"contest", "-h"}).action, Action::Help);
  EXPECT_EQ(ParseCommandLine({"contest", "--version"}).action, Action::Version);
  EXPECT_EQ(ParseCommandLine({"--version", "--help"}).action, Action::Version);
}

TEST(CommandLine, UnknownOrIncompleteOptionsAreRefusedNotTakenAsAProfile) {
  const CommandLine unknown = ParseCommandLine({"--helpp"});
  EXPECT_EQ(unknown.action, Action::Error);
  EXPECT_NE(unknown.error.find("--helpp"), std::string::npos);
  EXPECT_EQ(ParseCommandLine({"-platform", "xcb"}).action, Action::Error);
  const CommandLine incomplete = ParseCommandLine({"contest", "--screenshot"});
  EXPECT_EQ(incomplete.action, Action::Error);
  EXPECT_NE(incomplete.error.find("--screenshot"), std::string::npos);
}

struct Outcome {
  int status = -1;
  std::string output;
};

// The program with no display and nothing of the caller's environment, as
// from a console or a package's post-install check.
Outcome RunBare(const std::string& program, const std::string& option) {
  const std::string command =
      "env -i VANTREL_HOME=/nonexistent/vantrel '" + program + "' " + option + " 2>&1";
  Outcome outcome;
  FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe) return outcome;
  char chunk[512];
  for (size_t got; (got = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;) outcome.output.append(chunk, got);
  const int status = ::pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return outcome;
}

class EveryProgram : public ::testing::TestWithParam<const char*> {};

TEST_P(EveryProgram, PrintsHelpAndVersionWithoutADisplay) {
  const std::string program = GetParam();
  const std::string name = program.substr(program.rfind('/') + 1);
  const Outcome help = RunBare(program, "--help");
  EXPECT_EQ(help.status, 0) << help.output;
  EXPECT_EQ(help.output.rfind("usage: " + name, 0), 0u) << help.output;
  const Outcome version = RunBare(program, "--version");
  EXPECT_EQ(version.status, 0) << version.output;
  EXPECT_EQ(version.output, name + " " VANTREL_VERSION "\n");
  const Outcome wrong = RunBare(program, "--no-such-option");
  EXPECT_EQ(wrong.status, 2) << wrong.output;
  EXPECT_NE(wrong.output.find("--no-such-option"), std::string::npos) << wrong.output;
}

INSTANTIATE_TEST_SUITE_P(Programs, EveryProgram,
                         ::testing::Values(VANTREL_PROGRAM, VANTREL_SIM, VANTREL_LOGGER, WINKEY_SIM));

}  // namespace
}  // namespace vantrel::app
