// The lines themselves, seen through the keyprobe shim: it logs every change
// the ports make to the emulated /dev/ttyUSB0 and /dev/parport0, and nothing
// that the kernel does on its own when the process dies.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

extern char** environ;

namespace {

using State = std::map<std::string, long>;

struct Probe {
  int status = -1;
  std::vector<std::string> log;
  // The log as it stood while the helper was stopped, if it stopped.
  std::vector<std::string> logWhileStopped;

  // The lines as they stood when the first comment containing `tag` was
  // logged; at the end without one.
  State At(const std::string& tag = "\n") const { return StateOf(log, tag); }
  static State StateOf(const std::vector<std::string>& log, const std::string& tag = "\n") {
    State state{{"DTR", 0}, {"RTS", 0}, {"CTRL", 0x0C}};
    for (const auto& line : log) {
      if (line.rfind('#', 0) == 0) {
        if (line.find(tag) != std::string::npos) break;
        continue;
      }
      std::istringstream fields(line);
      long long ns;
      std::string name, value;
      fields >> ns >> name >> value;
      state[name] = std::strtol(value.c_str(), nullptr, 0);
    }
    return state;
  }
  // From the first `name 1` to the next `name 0`, -1 when there is none.
  long long UpNs(const std::string& name) const {
    long long up = -1;
    for (const auto& line : log) {
      std::istringstream fields(line);
      long long ns;
      std::string line_name, value;
      if (!(fields >> ns >> line_name >> value) || line_name != name) continue;
      if (value == "1" && up < 0) up = ns;
      if (value == "0" && up >= 0) return ns - up;
    }
    return -1;
  }
};

Probe RunHelper(const std::vector<std::string>& args) {
  const std::string logPath = std::filesystem::temp_directory_path() /
                              ("vantrel-keyprobe-" + std::to_string(::getpid()) + ".log");
  std::filesystem::remove(logPath);
  std::vector<std::string> env = {"LD_PRELOAD=" VANTREL_KEYPROBE_SHIM,
                                  "KEYPROBE_DEV=ttyUSB0,parport0", "KEYPROBE_LOG=" + logPath,
                                  "ASAN_OPTIONS=verify_asan_link_order=0"};
  for (char** entry = environ; *entry != nullptr; ++entry) env.emplace_back(*entry);
  std::vector<std::string> argv = {VANTREL_LINE_PROBE_HELPER};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<char*> cargv, cenv;
  for (auto& a : argv) cargv.push_back(a.data());
  for (auto& e : env) cenv.push_back(e.data());
  cargv.push_back(nullptr);
  cenv.push_back(nullptr);

  const auto readLog = [&logPath] {
    std::vector<std::string> log;
    std::ifstream in(logPath);
    for (std::string line; std::getline(in, line);) log.push_back(line);
    return log;
  };
  Probe probe;
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    // A group of its own under this process: an orphaned group would not stop.
    ::setpgid(0, 0);
    ::execve(cargv[0], cargv.data(), cenv.data());
    ::_exit(127);
  }
  while (::waitpid(child, &probe.status, WUNTRACED) == child && WIFSTOPPED(probe.status)) {
    probe.logWhileStopped = readLog();
    ::kill(child, SIGCONT);
  }
  probe.log = readLog();
  std::filesystem::remove(logPath);
  return probe;
}

std::string Dump(const Probe& probe) {
  std::string text;
  for (const auto& line : probe.log) text += line + "\n";
  return text;
}

const State kRest = {{"DTR", 0}, {"RTS", 0}, {"CTRL", 0x0C}};
const State kKeyed = {{"DTR", 1}, {"RTS", 1}, {"CTRL", 0x0C}};
// At rest on each kind of port: the parallel one has its idle byte written.
State RestOf(const std::string& kind) {
  return kind == "serial" ? kRest : State{{"DTR", 0}, {"RTS", 0}, {"CTRL", 0x0B}};
}

TEST(LineProbe, SerialOpensWithLinesDownAndFollowsEnables) {
  const Probe probe = RunHelper({"serial", "lines"});
  ASSERT_TRUE(WIFEXITED(probe.status) && WEXITSTATUS(probe.status) == 0) << Dump(probe);
  // The kernel raised both at open; the port must have dropped them at once.
  const long long dtrUp = probe.UpNs("DTR"), rtsUp = probe.UpNs("RTS");
  ASSERT_GE(dtrUp, 0) << Dump(probe);
  ASSERT_GE(rtsUp, 0) << Dump(probe);
  std::printf("lines up at open: DTR %.1f us, RTS %.1f us\n", dtrUp / 1e3, rtsUp / 1e3);
  EXPECT_EQ(probe.At("mark opened"), kRest) << Dump(probe);
  EXPECT_EQ(probe.At("mark dtr-on"), (State{{"DTR", 1}, {"RTS", 0}, {"CTRL", 0x0C}}));
  EXPECT_EQ(probe.At("mark rts-on"), (State{{"DTR", 0}, {"RTS", 1}, {"CTRL", 0x0C}}));
  EXPECT_EQ(probe.At("mark both-off"), kRest);
  EXPECT_EQ(probe.At("mark keyed"), kKeyed);
  // Dropped by the port itself, before the close could do it.
  EXPECT_EQ(probe.At(" close fd="), kRest) << Dump(probe);
}

TEST(LineProbe, SerialLineEnabledWhileClosedStaysUpThroughOpen) {
  const Probe probe = RunHelper({"serial", "dtr-at-open"});
  ASSERT_TRUE(WIFEXITED(probe.status) && WEXITSTATUS(probe.status) == 0) << Dump(probe);
  EXPECT_EQ(probe.At("mark opened"), (State{{"DTR", 1}, {"RTS", 0}, {"CTRL", 0x0C}}));
  // No drop-out of DTR between the open and the mark.
  for (const auto& line : probe.log) {
    if (line.find("mark opened") != std::string::npos) break;
    EXPECT_EQ(line.find(" DTR 0"), std::string::npos) << Dump(probe);
  }
}

TEST(LineProbe, SerialLinesFallOnSignalAndExit) {
  for (const char* sig : {"TERM", "SEGV"}) {
    const Probe probe = RunHelper({"serial", "signal", sig});
    ASSERT_TRUE(WIFSIGNALED(probe.status)) << sig << "\n" << Dump(probe);
    EXPECT_EQ(WTERMSIG(probe.status), std::string(sig) == "SEGV" ? SIGSEGV : SIGTERM);
    EXPECT_EQ(probe.At("mark keyed"), kKeyed) << Dump(probe);
    EXPECT_EQ(probe.At(), kRest) << sig << "\n" << Dump(probe);
  }
  const Probe exited = RunHelper({"serial", "exit"});
  EXPECT_TRUE(WIFEXITED(exited.status) && WEXITSTATUS(exited.status) == 0);
  EXPECT_EQ(exited.At(), kRest) << Dump(exited);

  // Without the handlers a death leaves the transmitter keyed: what the
  // others are guarding against, and proof the shim does not hide it.
  const Probe bare = RunHelper({"serial", "unprotected", "TERM"});
  ASSERT_TRUE(WIFSIGNALED(bare.status));
  EXPECT_EQ(bare.At(), kKeyed) << Dump(bare);
}

// Every signal whose default ends the process, the real-time ones included.
TEST(LineProbe, LinesFallOnEveryTerminatingSignal) {
  for (const int sig : {SIGQUIT, SIGTRAP, SIGUSR1, SIGUSR2, SIGALRM, SIGXCPU, SIGXFSZ, SIGVTALRM,
                        SIGPROF, SIGIO, SIGPWR, SIGSYS, SIGSTKFLT, SIGRTMIN, SIGRTMAX}) {
    for (const char* kind : {"serial", "parallel"}) {
      const Probe probe = RunHelper({kind, "signal", std::to_string(sig)});
      ASSERT_TRUE(WIFSIGNALED(probe.status)) << kind << " " << sig << "\n" << Dump(probe);
      EXPECT_EQ(WTERMSIG(probe.status), sig);
      EXPECT_EQ(probe.At(), RestOf(kind)) << kind << " " << sig << "\n" << Dump(probe);
    }
  }
  // A closed pipe is no reason to die keyed: the write fails instead.
  const Probe piped = RunHelper({"serial", "signal", std::to_string(SIGPIPE)});
  EXPECT_TRUE(WIFEXITED(piped.status) && WEXITSTATUS(piped.status) == 0) << Dump(piped);
  EXPECT_EQ(piped.At(), kRest) << Dump(piped);
}

TEST(LineProbe, StopReleasesTheLinesAndTheNextChangeReportsIt) {
  for (const char* kind : {"serial", "parallel"}) {
    const Probe probe = RunHelper({kind, "stop"});
    ASSERT_TRUE(WIFEXITED(probe.status) && WEXITSTATUS(probe.status) == 0) << kind << "\n"
                                                                           << Dump(probe);
    ASSERT_FALSE(probe.logWhileStopped.empty()) << kind << " never stopped";
    EXPECT_EQ(Probe::StateOf(probe.logWhileStopped), RestOf(kind)) << kind << "\n"
                                                                    << Dump(probe);
    // Nothing keyed again after the stop.
    EXPECT_EQ(probe.At(), RestOf(kind)) << kind << "\n" << Dump(probe);
  }
}

TEST(LineProbe, ForkedChildLeavesTheParentsLinesAlone) {
  const Probe probe = RunHelper({"serial", "fork"});
  ASSERT_TRUE(WIFEXITED(probe.status) && WEXITSTATUS(probe.status) == 0) << Dump(probe);
  EXPECT_EQ(probe.At("mark child-gone"), kKeyed) << Dump(probe);
  EXPECT_EQ(probe.At(), kRest);
}

TEST(LineProbe, ParallelControlFollowsWritesAndIdlesOnSignal) {
  const Probe normal = RunHelper({"parallel", "lines"});
  ASSERT_TRUE(WIFEXITED(normal.status) && WEXITSTATUS(normal.status) == 0) << Dump(normal);
  std::vector<long> writes;
  for (const auto& line : normal.log) {
    const auto at = line.find(" CTRL ");
    if (at != std::string::npos) writes.push_back(std::strtol(&line[at + 6], nullptr, 0));
  }
  EXPECT_EQ(writes, (std::vector<long>{0x0B, 0x0F, 0x07, 0x03, 0x07, 0x0B})) << Dump(normal);

  for (const char* sig : {"TERM", "SEGV"}) {
    const Probe probe = RunHelper({"parallel", "signal", sig});
    ASSERT_TRUE(WIFSIGNALED(probe.status)) << sig << "\n" << Dump(probe);
    EXPECT_EQ(probe.At("mark keyed").at("CTRL"), 0x07);
    EXPECT_EQ(probe.At().at("CTRL"), 0x0B) << sig << "\n" << Dump(probe);
  }
}

}  // namespace
