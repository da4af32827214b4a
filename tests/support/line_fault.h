// The fault test's harness: a keyer in the middle of sending is hit, at a
// random moment, by every signal whose default ends a process and by a stop,
// on a real port kind that the keyprobe shim stands in for. After each one
// key and PTT must be at rest, as the shim saw them from outside.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

extern char** environ;

namespace vantrel::testing {

// How many times each signal hits each port kind. A few dozen runs keep the
// test short on a busy machine; raise it by hand for a longer hunt.
inline constexpr int kFaultRoundsPerPort = 1;
// The random moment falls this long after PTT went on.
inline constexpr int kLatestSignalMs = 400;
// Bounds for what a loaded machine may take, not timings.
inline constexpr auto kFaultStartBound = std::chrono::seconds(60);
inline constexpr auto kFaultEndBound = std::chrono::seconds(15);
inline constexpr auto kAfterContinue = std::chrono::milliseconds(300);

enum class FaultPort { Serial, Parallel };

inline std::vector<int> TerminatingSignalsAndAStop() {
  return {SIGHUP,  SIGINT,    SIGQUIT, SIGILL,  SIGTRAP,   SIGABRT,  SIGBUS,       SIGFPE,  SIGUSR1,
          SIGSEGV, SIGUSR2,   SIGPIPE, SIGALRM, SIGTERM,   SIGSTKFLT, SIGXCPU,     SIGXFSZ, SIGVTALRM,
          SIGPROF, SIGIO,     SIGPWR,  SIGSYS,  SIGRTMIN,  SIGRTMIN + 5, SIGRTMAX, SIGTSTP};
}

// The lines as the shim last logged them.
struct PortLines {
  int dtr = 0, rts = 0, ctrl = 0x0C;
  // The shim's power-on register has PTT's bit set: only a write counts.
  bool ctrlWritten = false;
  bool Active(FaultPort port) const {
    if (port == FaultPort::Serial) return dtr != 0 || rts != 0;
    // Bit 3 is inverted by the port: set is key up.
    return (ctrl & 0x0C) != 0x08;
  }
  bool PttOn(FaultPort port) const {
    return port == FaultPort::Serial ? rts != 0 : ctrlWritten && (ctrl & 0x04) != 0;
  }
  std::string Text() const {
    char text[64];
    std::snprintf(text, sizeof text, "DTR %d RTS %d CTRL 0x%02X", dtr, rts, ctrl);
    return text;
  }
};

class LineFaultFixture : public ::testing::TestWithParam<FaultPort> {
 protected:
  FaultPort port() const { return GetParam(); }
  // The device the shim stands in for, as the keyer names it.
  std::string Device() const { return port() == FaultPort::Serial ? "ttyUSB0" : dir_ + "/parport"; }
  // The keyer's settings for the port under test.
  std::vector<std::pair<std::string, std::string>> PortSettings() const {
    if (port() == FaultPort::Parallel) return {{"Port to Use", "Parallel"}};
    return {{"Port to Use", "Serial"}, {"Dedicated Serial Port", "Comm1"}};
  }

  // Starts the keyer under the shim; it is to begin sending by itself, or
  // once WhenStarted has run.
  virtual pid_t StartKeyer() = 0;
  virtual void WhenStarted() {}
  // A signal that the keyer takes as a request to close in order.
  virtual bool ClosesInOrder(int /*sig*/) const { return false; }

  // Runs `args` under the shim, with `env` added to this process's.
  pid_t Spawn(std::vector<std::string> args, std::vector<std::string> env) {
    env.insert(env.end(), {"LD_PRELOAD=" VANTREL_KEYPROBE_SHIM, "KEYPROBE_DEV=" + Device(),
                           "KEYPROBE_LOG=" + log_, "ASAN_OPTIONS=verify_asan_link_order=0"});
    for (char** entry = environ; *entry != nullptr; ++entry) env.emplace_back(*entry);
    std::vector<char*> argv, envp;
    for (auto& a : args) argv.push_back(a.data());
    for (auto& e : env) envp.push_back(e.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
      // A group of its own under this process: an orphaned group ignores a stop.
      ::setpgid(0, 0);
      const rlimit noCore{0, 0};
      ::setrlimit(RLIMIT_CORE, &noCore);
      const int devNull = ::open("/dev/null", O_WRONLY);
      ::dup2(devNull, STDOUT_FILENO);
      ::dup2(devNull, STDERR_FILENO);
      ::execve(argv[0], argv.data(), envp.data());
      ::_exit(127);
    }
    return child;
  }

  PortLines Now() const {
    PortLines lines;
    std::ifstream in(log_);
    for (std::string line; std::getline(in, line);) {
      std::istringstream fields(line);
      long long ns;
      std::string name, value;
      if (line.rfind('#', 0) == 0 || !(fields >> ns >> name >> value)) continue;
      const int number = static_cast<int>(std::strtol(value.c_str(), nullptr, 0));
      if (name == "DTR") lines.dtr = number;
      if (name == "RTS") lines.rts = number;
      if (name == "CTRL") {
        lines.ctrl = number;
        lines.ctrlWritten = true;
      }
    }
    return lines;
  }

  // Every signal, each at a random moment; the seed is in any failure.
  void HitWithEverySignal() {
    // The shim stands in for the device the entry names.
    ASSERT_EQ(::symlink("/dev/null", (dir_ + "/parport").c_str()), 0);
    std::random_device entropy;
    const unsigned seed = entropy();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> moment(0, kLatestSignalMs);
    for (int round = 0; round < kFaultRoundsPerPort; ++round) {
      for (const int sig : TerminatingSignalsAndAStop()) {
        HitWhileSending(sig, moment(random));
        if (HasFatalFailure()) return;
      }
    }
    EXPECT_EQ(releases_, runs_);
  }

  void TearDown() override {
    std::printf("%s port: %d runs, lines released in %d\n",
                port() == FaultPort::Serial ? "serial" : "parallel", runs_, releases_);
  }

  vantrel::testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
  const std::string log_ = folder_ / "port.log";

 private:
  // The wait status once the keyer has ended or stopped; -1 past the bound.
  static int WaitForEndOrStop(pid_t keyer) {
    const auto deadline = std::chrono::steady_clock::now() + kFaultEndBound;
    int status = 0;
    while (std::chrono::steady_clock::now() < deadline) {
      if (::waitpid(keyer, &status, WNOHANG | WUNTRACED) == keyer) return status;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return -1;
  }

  static void Kill(pid_t keyer) {
    ::kill(keyer, SIGKILL);
    ::waitpid(keyer, nullptr, 0);
  }

  // Counts one run, and whether it left the lines at rest.
  void Count(const PortLines& lines) {
    ++runs_;
    if (!lines.Active(port())) ++releases_;
    EXPECT_FALSE(lines.Active(port())) << "left " << lines.Text();
  }

  // One run: `sig` lands `afterMs` after PTT went on.
  void HitWhileSending(int sig, int afterMs) {
    const char* name = sigabbrev_np(sig);
    SCOPED_TRACE(std::string(name ? name : "RT") + " (" + std::to_string(sig) + ") " +
                 std::to_string(afterMs) + " ms after PTT on");
    std::filesystem::remove(log_);
    const pid_t keyer = StartKeyer();
    ASSERT_GT(keyer, 0);
    WhenStarted();
    const auto deadline = std::chrono::steady_clock::now() + kFaultStartBound;
    while (!Now().PttOn(port()) && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    if (!Now().PttOn(port())) {
      Kill(keyer);
      FAIL() << "the keyer never keyed: " << Now().Text();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(afterMs));
    ::kill(keyer, sig);

    int status = WaitForEndOrStop(keyer);
    if (sig == SIGPIPE) {
      // Ignored: the keyer sends on, and ends when told.
      EXPECT_EQ(status, -1) << "SIGPIPE ended the keyer";
    } else if (sig == SIGTSTP && status != -1 && WIFSTOPPED(status)) {
      Count(Now());
      // Continued, it must not key again by itself.
      ::kill(keyer, SIGCONT);
      std::this_thread::sleep_for(kAfterContinue);
      EXPECT_FALSE(Now().Active(port())) << "continued: " << Now().Text();
      status = -1;
    }
    if ((sig == SIGPIPE || sig == SIGTSTP) && status == -1) {
      sig = SIGTERM;
      ::kill(keyer, sig);
      status = WaitForEndOrStop(keyer);
    }
    if (status == -1) {
      Kill(keyer);
      FAIL() << "the keyer neither ended nor stopped; lines " << Now().Text();
    }
    Count(Now());
    if (ClosesInOrder(sig)) {
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    } else {
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == sig) << "status " << status;
    }
  }

  int runs_ = 0;
  int releases_ = 0;
};

inline std::string FaultPortName(const ::testing::TestParamInfo<FaultPort>& info) {
  return info.param == FaultPort::Serial ? "Serial" : "Parallel";
}

}  // namespace vantrel::testing
