// The window program on the real link by default: it reads the logger's
// call at start-up and closes when the logger says "Close".
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "logger_process.h"
#include "support/temp_folder.h"

namespace vantrel::loggerlink {
namespace {

using testing::LoggerProcess;

// The window program on the real link, started and seen up by the logger.
class WindowProgram : public ::testing::Test {
 protected:
  ~WindowProgram() override {
    if (keyer_ > 0 && ::waitpid(keyer_, nullptr, WNOHANG) == 0) {
      ::kill(keyer_, SIGKILL);
      ::waitpid(keyer_, nullptr, 0);
    }
  }

  void StartKeyer() {
    // A logger of its own each time: a keyer leaves its number placeholder in
    // the block, and the next one would then have nothing to send back.
    logger.reset();
    shm = "/vantrel-window-test-" + std::to_string(::getpid()) + "-" + std::to_string(++starts_);
    logger = std::make_unique<LoggerProcess>(runtime.path(), shm);
    logger->Command("call W1AW", "wrote 0");
    keyer_ = ::fork();
    ASSERT_GE(keyer_, 0);
    if (keyer_ == 0) {
      ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
      ::setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
      ::setenv("VANTREL_LINK_SHM", shm.c_str(), 1);
      ::setenv("VANTREL_HOME", home.path().c_str(), 1);
      ::execl(VANTREL_PROGRAM, VANTREL_PROGRAM, static_cast<char*>(nullptr));
      ::_exit(127);
    }
    // Start-up read the call; the number field's placeholder went back to the
    // logger, twice, as the field's rule runs again from inside itself.
    EXPECT_EQ(logger->WaitFor("post 200", 30000), "post 200 0 call \"W1AW\" name \"\" srx \"###\"");
    EXPECT_EQ(logger->WaitFor("post 200", 30000), "post 200 0 call \"W1AW\" name \"\" srx \"###\"");
    // Those posts come from inside start-up's poll, which clears the control
    // slot after them: a command written at once would be cleared unread.
    ::usleep(100000);
  }

  // The keyer's wait status once it has ended; a failure past the bound.
  int Ended() {
    int status = -1;
    const int64_t deadline = LoggerProcess::NowMs() + 30000;
    while (::waitpid(keyer_, &status, WNOHANG) == 0 && LoggerProcess::NowMs() < deadline) {
      ::usleep(20000);
    }
    if (LoggerProcess::NowMs() >= deadline) {
      std::string heard;
      for (const std::string& line : logger->Lines()) heard += line + "\n";
      ADD_FAILURE() << "the keyer did not close; the logger heard:\n" << heard;
    }
    return status;
  }

  vantrel::testing::TempFolder runtime, home;
  std::string shm;
  std::unique_ptr<LoggerProcess> logger;
  pid_t keyer_ = -1;
  int starts_ = 0;
};

TEST_F(WindowProgram, FindsTheLoggerAndClosesWhenItSaysSo) {
  StartKeyer();
  logger->Command("control Close", "wrote 5");
  const int status = Ended();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  // The close wrote the window's rectangle into its settings.
  EXPECT_NE(home.Read("Vantrel.INI").find("Width="), std::string::npos);
}

// A desktop logout: the shutdown runs as for a close, rectangle and all.
TEST_F(WindowProgram, TerminationSignalsRunTheOrderlyShutdown) {
  for (const int sig : {SIGTERM, SIGINT, SIGHUP}) {
    StartKeyer();
    ::kill(keyer_, sig);
    const int status = Ended();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << sig << " status " << status;
    EXPECT_NE(home.Read("Vantrel.INI").find("Width="), std::string::npos) << sig;
    std::filesystem::remove(home / "Vantrel.INI");
  }
}

}  // namespace
}  // namespace vantrel::loggerlink
