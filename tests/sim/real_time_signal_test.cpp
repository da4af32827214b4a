// The keyer killed by a signal while its key is down, watched at the port.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/temp_folder.h"

extern char** environ;

namespace {

class RealTimeSignal : public ::testing::TestWithParam<int> {
 protected:
  // Starts vantrel-sim on the stand-in serial port, its key held down by Tune.
  pid_t StartTuning() {
    std::ofstream(dir_ + "/tune.vsim") << "0 menu mnuTune\n60000 menu mnuTune\n";
    std::vector<std::string> args = {VANTREL_SIM, "--real-time", "--dir", dir_,
                                     "--set", "Port to Use=Serial",
                                     "--set", "Dedicated Serial Port=Comm1",
                                     "--set", "PTT=ON",
                                     dir_ + "/tune.vsim"};
    std::vector<std::string> env = {"LD_PRELOAD=" VANTREL_KEYPROBE_SHIM, "KEYPROBE_DEV=ttyUSB0",
                                    "KEYPROBE_LOG=" + log_, "ASAN_OPTIONS=verify_asan_link_order=0"};
    for (char** entry = environ; *entry != nullptr; ++entry) env.emplace_back(*entry);
    std::vector<char*> argv, envp;
    for (auto& a : args) argv.push_back(a.data());
    for (auto& e : env) envp.push_back(e.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
      const int devNull = ::open("/dev/null", O_WRONLY);
      ::dup2(devNull, STDOUT_FILENO);
      ::execve(argv[0], argv.data(), envp.data());
      ::_exit(127);
    }
    return child;
  }

  // The last value the port logged for each line.
  std::map<std::string, int> Lines() const {
    std::map<std::string, int> last;
    std::ifstream in(log_);
    for (std::string line; std::getline(in, line);) {
      std::istringstream fields(line);
      long long ns;
      std::string name;
      int value;
      if (line.rfind('#', 0) != 0 && fields >> ns >> name >> value) last[name] = value;
    }
    return last;
  }

  vantrel::testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
  const std::string log_ = folder_ / "port.log";
};

TEST_P(RealTimeSignal, LeavesKeyUpAndPttOffOnThePort) {
  const pid_t keyer = StartTuning();
  ASSERT_GT(keyer, 0);
  // Key down and PTT on once Tune has run; a generous bound, not a timing.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while ((Lines()["DTR"] != 1 || Lines()["RTS"] != 1) &&
         std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ASSERT_EQ(Lines(), (std::map<std::string, int>{{"DTR", 1}, {"RTS", 1}}));

  ::kill(keyer, GetParam());
  int status = 0;
  ASSERT_EQ(::waitpid(keyer, &status, 0), keyer);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == GetParam()) << status;
  EXPECT_EQ(Lines(), (std::map<std::string, int>{{"DTR", 0}, {"RTS", 0}}));
}

INSTANTIATE_TEST_SUITE_P(Signals, RealTimeSignal, ::testing::Values(SIGINT, SIGTERM, SIGHUP, SIGSEGV),
                         [](const auto& info) { return std::string(sigabbrev_np(info.param)); });

}  // namespace
