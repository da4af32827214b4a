// The keyer's end of the Linux link against a bare socket that stands for a
// logger which reads nothing unless told.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "logger_process.h"
#include "platform/linux/line_safety.h"
#include "platform/linux/link_protocol.h"
#include "platform/linux/linux_link_channel.h"
#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

using vantrel::testing::LoggerProcess;

class StuckLogger : public ::testing::Test {
 protected:
  StuckLogger() {
    socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder / link::kSocketName;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    // Whatever the umask: one that others may write is refused.
    EXPECT_EQ(::chmod(path.c_str(), 0600), 0);
  }
  ~StuckLogger() override { ::close(socket_); }

  // Answers the oldest send waiting in the queue; false when none is.
  bool AnswerOne() {
    unsigned char request[64];
    sockaddr_un from{};
    socklen_t length = sizeof from;
    for (;;) {
      const ssize_t got = ::recvfrom(socket_, request, sizeof request, MSG_DONTWAIT,
                                     reinterpret_cast<sockaddr*>(&from), &length);
      if (got < 0) return false;
      if (got != static_cast<ssize_t>(link::kSendSize)) continue;
      unsigned char answer[link::kAnswerSize];
      std::memcpy(answer, request + 8, 4);
      link::PutInt32(answer + 4, 7);
      return ::sendto(socket_, answer, sizeof answer, 0, reinterpret_cast<sockaddr*>(&from), length) ==
             static_cast<ssize_t>(sizeof answer);
    }
  }

  vantrel::testing::TempFolder folder;
  std::string log;
  LinuxLinkChannel channel{folder.path(), "/vantrel-test-none",
                           [this](const std::string& reason) { log += reason + "\n"; }, ::geteuid()};
  int socket_ = -1;
};

TEST_F(StuckLogger, PostsNeverWaitForAFullQueue) {
  const Handle window = channel.FindWindow("Hallowick");
  ASSERT_NE(window, 0);
  const int64_t started = LoggerProcess::NowMs();
  for (int i = 0; i < 20000; ++i) channel.PostMessage(window, 0, 900, i & 1);
  EXPECT_LT(LoggerProcess::NowMs() - started, 1000);
  EXPECT_EQ(channel.Error(), "");
}

TEST_F(StuckLogger, AnUnansweredSendWaitsItsBoundAndReportsOnceUntilAnAnswerComes) {
  const Handle window = channel.FindWindow("Hallowick");
  ASSERT_NE(window, 0);
  int64_t started = LoggerProcess::NowMs();
  EXPECT_EQ(channel.SendMessage(window, 0, 403, 0), 0);
  const int64_t waited = LoggerProcess::NowMs() - started;
  EXPECT_GE(waited, link::kAnswerTimeoutMs - 5);
  EXPECT_LT(waited, link::kAnswerTimeoutMs + 300);
  EXPECT_EQ(channel.Error(), "the logger did not answer within 200 ms");
  channel.ClearError();

  started = LoggerProcess::NowMs();
  channel.SendMessage(window, 0, 303, 0);
  EXPECT_LT(LoggerProcess::NowMs() - started, 50);
  EXPECT_EQ(channel.Error(), "");

  // A late answer shows the logger lives: the next send waits for its own again.
  ASSERT_TRUE(AnswerOne());
  started = LoggerProcess::NowMs();
  channel.SendMessage(window, 0, 403, 0);
  EXPECT_GE(LoggerProcess::NowMs() - started, link::kAnswerTimeoutMs - 5);
  EXPECT_EQ(channel.Error(), "the logger did not answer within 200 ms");
}

// The codes of every request waiting in the queue, oldest first.
std::vector<int32_t> Requests(int socket) {
  std::vector<int32_t> codes;
  unsigned char request[64];
  while (::recv(socket, request, sizeof request, MSG_DONTWAIT) >= 4) {
    codes.push_back(link::GetInt32(request));
  }
  return codes;
}

TEST_F(StuckLogger, ADyingKeyerTellsTheLoggerKeyUpAndPttOffWhileItHadThemActive) {
  for (const bool armed : {true, false}) {
    for (const int sig : {SIGTERM, SIGSEGV, SIGUSR1}) {
      const pid_t child = ::fork();
      if (child == 0) {
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        const Handle window = channel.FindWindow("Hallowick");
        channel.SetRestRequests(window, 0, 303, 603);
        if (!armed) channel.SetRestRequests(0, 0, 303, 603);
        InstallLineSafety();
        ::raise(sig);
        ::_exit(3);
      }
      int status = 0;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == sig) << status;
      EXPECT_EQ(Requests(socket_), armed ? std::vector<int32_t>({303, 603}) : std::vector<int32_t>())
          << "signal " << sig;
    }
  }
}

TEST(LinuxLinkChannel, NoFolderAndNoMemoryFindNoLogger) {
  std::string log;
  LinuxLinkChannel channel("", "/vantrel-test-missing", [&](const std::string& reason) { log += reason; },
                           ::geteuid());
  EXPECT_EQ(channel.FindWindow("Hallowick"), 0);
  EXPECT_EQ(channel.OpenFileMapping("CW"), 0);
  EXPECT_EQ(log, "no logger: XDG_RUNTIME_DIR is not set");
  // Without a logger a post and a send go nowhere and fail nothing.
  channel.PostMessage(0, 0, 900, 1);
  EXPECT_EQ(channel.SendMessage(0, 0, 403, 0), 0);
  EXPECT_EQ(channel.Error(), "");
}

}  // namespace
}  // namespace vantrel::platform::linuxos
