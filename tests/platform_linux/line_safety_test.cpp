#include "platform/linux/line_safety.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace vantrel::platform::linuxos {
namespace {

// Descriptor numbers that nothing here has open: registering one touches no
// device.
constexpr int kUnusedFd = 900;

TEST(LineSafety, TableHoldsAFixedNumberAndFreesOnUnregister) {
  std::vector<int> taken;
  for (int fd = kUnusedFd; RegisterLine(fd, LineKind::Serial); ++fd) taken.push_back(fd);
  EXPECT_EQ(taken.size(), kMaxSafeLines);
  EXPECT_FALSE(RegisterLine(-1, LineKind::Parallel));
  UnregisterLine(taken[3]);
  EXPECT_TRUE(RegisterLine(kUnusedFd - 1, LineKind::Parallel));
  EXPECT_FALSE(RegisterLine(kUnusedFd - 2, LineKind::Parallel));
  UnregisterLine(kUnusedFd - 1);
  for (const int fd : taken) UnregisterLine(fd);
  EXPECT_TRUE(RegisterLine(kUnusedFd, LineKind::Serial));
  UnregisterLine(kUnusedFd);
}

// Runs `body` in a child with the handlers installed and a line registered;
// gives back its wait status.
template <typename Body>
int InChild(Body body) {
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    RegisterLine(kUnusedFd, LineKind::Serial);
    RegisterLine(kUnusedFd + 1, LineKind::Parallel);
    body();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

TEST(LineSafety, HandlersKeepTheExitStatusHonest) {
  for (const int sig :
       {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) {
    const int status = InChild([sig] {
      InstallLineSafety();
      ::raise(sig);
      ::_exit(3);
    });
    ASSERT_TRUE(WIFSIGNALED(status)) << strsignal(sig) << " status " << status;
    EXPECT_EQ(WTERMSIG(status), sig) << strsignal(sig);
  }
}

TEST(LineSafety, IgnoredSignalStaysIgnoredAndInstallTwiceIsHarmless) {
  const int status = InChild([] {
    ::signal(SIGHUP, SIG_IGN);
    InstallLineSafety();
    InstallLineSafety();
    ::raise(SIGHUP);
    ::_exit(7);
  });
  ASSERT_TRUE(WIFEXITED(status)) << status;
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

// The window program's way: the first termination signal asks for the
// close, a second one or the bound ends the process at once.
TEST(LineSafety, CloseRequestThenSecondSignalOrBoundEnds) {
  for (const bool second : {true, false}) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    const int status = InChild([&] {
      InstallLineSafety();
      RequestCloseOnSignals(fds[1], 1);
      ::raise(SIGHUP);
      char byte = 0;
      if (::read(fds[0], &byte, 1) != 1 || byte != SIGHUP) ::_exit(4);
      if (second) ::raise(SIGINT);
      ::pause();
      ::_exit(5);
    });
    ::close(fds[0]);
    ::close(fds[1]);
    ASSERT_TRUE(WIFSIGNALED(status)) << second << " status " << status;
    EXPECT_EQ(WTERMSIG(status), second ? SIGINT : SIGALRM);
  }
}

}  // namespace
}  // namespace vantrel::platform::linuxos
