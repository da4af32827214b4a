// The keyer, in this process on virtual time, against vantrel-logger in
// another, over the real shared memory and socket.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "link_fixture.h"
#include "logger_process.h"
#include "platform/linux/link_protocol.h"
#include "platform/linux/linux_link_channel.h"
#include "support/temp_folder.h"

namespace vantrel::loggerlink {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::LoggerProcess;

std::string UniqueMappingName() {
  static int count = 0;
  return "/vantrel-test-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
}

// Built before the keyer, which takes the channel at its construction.
struct RealChannel {
  explicit RealChannel(uid_t owner)
      : mappingName(UniqueMappingName()),
        channel(folder.path(), mappingName, [this](const std::string& reason) { log += reason + "\n"; },
                owner) {}
  // A logger that vanished leaves its memory behind.
  ~RealChannel() { ::shm_unlink(mappingName.c_str()); }
  vantrel::testing::TempFolder folder;
  std::string mappingName;
  std::string log;
  platform::linuxos::LinuxLinkChannel channel;
};

class TwoProcess : public RealChannel, public testing::LinkFixture {
 protected:
  explicit TwoProcess(uid_t owner = ::geteuid()) : RealChannel(owner), LinkFixture(&channel) {}

  void StartLogger(const std::vector<std::string>& extra = {}) {
    logger = std::make_unique<LoggerProcess>(folder.path(), mappingName, extra);
  }

  std::unique_ptr<LoggerProcess> logger;
};

TEST_F(TwoProcess, ATypedCallReachesTheLoggersSlot) {
  StartLogger();
  Start();
  p.CallsignField.SetText("K1ABC");
  EXPECT_EQ(logger->WaitFor("post 200 0 call \"K1ABC\""), "post 200 0 call \"K1ABC\" name \"\" srx \"###\"");
  logger->Command("show", "call");
  EXPECT_THAT(logger->Lines(), Contains("call \"K1ABC\""));
}

TEST_F(TwoProcess, SharedSerialKeyingAsksTheLoggerAndWaitsForEachAnswer) {
  StartLogger();
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "Comm3"}, {"PTT", "ON"},
         {"Slow Typing", "OFF"}});
  logger->Command("late 20", "late");
  const int64_t started = LoggerProcess::NowMs();
  At(0, [&] { p.CWTextBox.SetText("EE"); });
  Run();
  // Six requests, each answered 20 ms late: the keyer waited for every one.
  EXPECT_GE(LoggerProcess::NowMs() - started, 6 * 20);
  EXPECT_EQ(channel.Error(), "");
  std::vector<std::string> sends;
  for (std::string line; !(line = logger->WaitFor("send", 500)).empty();) sends.push_back(line);
  EXPECT_THAT(sends, ElementsAre("send 503 0", "send 403 0", "send 303 0", "send 403 0",
                                 "send 303 0", "send 603 0"));
  EXPECT_THAT(EventsStartingWith({"text \"CW"}), ::testing::IsEmpty());
}

TEST_F(TwoProcess, ALoggerThatVanishesChangesNothingButThePosts) {
  StartLogger();
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("TEST"); });
  At(300, [&] {
    logger->Command("vanish", "");
    ASSERT_TRUE(logger->Exited(2000));
  });
  Run();
  // T E S T: six elements, as without any logger.
  EXPECT_EQ(TimesOf("keybox green").size(), 6u);
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(keyer.cw.Transmitting());
  // The box's later change still writes the memory the logger left.
  p.CallsignField.SetText("W1AW");
  EXPECT_EQ(keyer.link.Slots[0].substr(0, 5), std::string("W1AW\0", 5));
}

TEST_F(TwoProcess, AGoneLoggerWithTheKeyLineIsReportedAtOnce) {
  StartLogger();
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "Comm3"}, {"PTT", "ON"},
         {"Slow Typing", "OFF"}});
  logger->Command("vanish", "");
  ASSERT_TRUE(logger->Exited(2000));
  const int64_t started = LoggerProcess::NowMs();
  At(0, [&] { p.CWTextBox.SetText("TEST"); });
  Run();
  EXPECT_LT(LoggerProcess::NowMs() - started, 150);
  EXPECT_THAT(EventsStartingWith({"text \"CW"}),
              ElementsAre("text \"CW Port error : the logger is gone\""));
}

TEST_F(TwoProcess, AShortMappingIsRefusedAsNoMapping) {
  StartLogger({"--size", "1215"});
  Start();
  EXPECT_THAT(startup, Contains("msgbox \"You can't get there from here\" \"OpenFileMapping API "
                               "failed, is Hallowick running?\""));
  EXPECT_THAT(log, HasSubstr("1215 bytes, fewer than 1216"));
  EXPECT_EQ(keyer.link.LinkView, 0);
}

// Whatever the logger's memory holds, the keyer's view of it must not fault.
TEST_F(TwoProcess, MemoryThatShrinksUnderTheKeyerIsLetGoAsAVanishedLogger) {
  StartLogger();
  Start();
  ASSERT_NE(keyer.link.LinkView, 0);
  const int fd = ::shm_open(mappingName.c_str(), O_RDWR, 0);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(::ftruncate(fd, 100), 0);
  ::close(fd);
  // Faulted here before: the slots lie beyond the object's end now.
  link.PollLink();
  p.CallsignField.SetText("W1AW");
  link.PollLink();
  EXPECT_EQ(p.CallsignField.Text(), "W1AW");
  EXPECT_THAT(log, HasSubstr("shrank to 100 bytes"));
}

// Another local user must not type into the keyer or close it.
TEST_F(TwoProcess, MemoryAndSocketThatOthersMayWriteAreRefused) {
  StartLogger();
  const int fd = ::shm_open(mappingName.c_str(), O_RDWR, 0);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(::fchmod(fd, 0666), 0);
  ::close(fd);
  ASSERT_EQ(::chmod((folder / platform::linuxos::link::kSocketName).c_str(), 0620), 0);
  Start();
  EXPECT_EQ(keyer.link.LoggerWindow, 0);
  EXPECT_EQ(keyer.link.LinkView, 0);
  EXPECT_THAT(log, HasSubstr("others may write to it (mode 0666)"));
  EXPECT_THAT(log, HasSubstr("others may write to it (mode 0620)"));
}

class ForeignLogger : public TwoProcess {
 protected:
  ForeignLogger() : TwoProcess(::geteuid() + 1) {}
};

TEST_F(ForeignLogger, AnotherUsersMappingAndSocketAreRefused) {
  StartLogger();
  Start();
  EXPECT_EQ(keyer.link.LoggerWindow, 0);
  EXPECT_EQ(keyer.link.LinkView, 0);
  EXPECT_THAT(startup, Contains(HasSubstr("OpenFileMapping API failed")));
  EXPECT_THAT(log, HasSubstr("not a socket of this user"));
  EXPECT_THAT(log, HasSubstr("not to this user"));
}

// The C example of docs/logger-link.md, compiled from the page itself.
TEST_F(TwoProcess, TheDocumentedExampleTalksToTheKeyer) {
  logger = std::make_unique<LoggerProcess>(
      std::vector<std::string>{LOGGER_LINK_EXAMPLE},
      std::vector<std::pair<std::string, std::string>>{{"XDG_RUNTIME_DIR", folder.path()},
                                                       {"VANTREL_LINK_SHM", mappingName}});
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "Comm1"}, {"PTT", "ON"},
         {"Slow Typing", "OFF"}});
  EXPECT_EQ(p.CallsignField.Text(), "W1AW");
  At(0, [&] { p.CWTextBox.SetText("E"); });
  Run();
  EXPECT_EQ(channel.Error(), "");
  std::vector<std::string> heard;
  for (std::string line; !(line = logger->WaitFor("", 300)).empty();) {
    if (line.rfind("post 900", 0) == 0 || line.rfind("send", 0) == 0) heard.push_back(line);
  }
  EXPECT_THAT(heard, ElementsAre("post 900 1", "send 501 0", "send 401 0", "send 301 0", "post 900 0",
                                 "send 601 0"));
}

}  // namespace
}  // namespace vantrel::loggerlink
