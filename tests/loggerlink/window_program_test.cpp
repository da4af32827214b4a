// The window program on the real link by default: it reads the logger's
// call at start-up and closes when the logger says "Close".
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "logger_process.h"
#include "support/temp_folder.h"

namespace vantrel::loggerlink {
namespace {

using testing::LoggerProcess;

TEST(WindowProgram, FindsTheLoggerAndClosesWhenItSaysSo) {
  vantrel::testing::TempFolder runtime, home;
  const std::string shm = "/vantrel-window-test-" + std::to_string(::getpid());
  LoggerProcess logger(runtime.path(), shm);
  logger.Command("call W1AW", "wrote 0");

  const pid_t keyer = ::fork();
  ASSERT_GE(keyer, 0);
  if (keyer == 0) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    ::setenv("VANTREL_LINK_SHM", shm.c_str(), 1);
    ::setenv("VANTREL_HOME", home.path().c_str(), 1);
    ::execl(VANTREL_PROGRAM, VANTREL_PROGRAM, static_cast<char*>(nullptr));
    ::_exit(127);
  }
  // Start-up read the call; the number field's placeholder went back to the
  // logger, twice, as the field's rule runs again from inside itself.
  EXPECT_EQ(logger.WaitFor("post 200", 30000), "post 200 0 call \"W1AW\" name \"\" srx \"###\"");
  EXPECT_EQ(logger.WaitFor("post 200", 30000), "post 200 0 call \"W1AW\" name \"\" srx \"###\"");
  // Those posts come from inside start-up's poll, which clears the control
  // slot after them: a command written at once would be cleared unread.
  ::usleep(100000);
  logger.Command("control Close", "wrote 5");

  int status = -1;
  const int64_t deadline = LoggerProcess::NowMs() + 30000;
  while (::waitpid(keyer, &status, WNOHANG) == 0 && LoggerProcess::NowMs() < deadline) ::usleep(20000);
  if (LoggerProcess::NowMs() >= deadline) {
    ::kill(keyer, SIGKILL);
    ::waitpid(keyer, &status, 0);
    std::string heard;
    for (const std::string& line : logger.Lines()) heard += line + "\n";
    FAIL() << "the keyer did not close; the logger heard:\n" << heard;
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  // The close wrote the window's rectangle into its settings.
  EXPECT_NE(home.Read("Vantrel.INI").find("Width="), std::string::npos);
}

}  // namespace
}  // namespace vantrel::loggerlink
