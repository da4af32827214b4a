// The keyer on the real clock and a real tty against winkey-sim on a
// pseudo-terminal: what an operator with a chip would see.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/temp_folder.h"

namespace {

using vantrel::testing::ChildProcess;

class WinKeyEndToEnd : public ::testing::Test {
 protected:
  // A chip at port 3 of the keyer's folder, then the keyer on `script`.
  void Start(const std::string& script, const std::vector<std::string>& chipOptions = {}) {
    std::vector<std::string> chipArgs{WINKEY_SIM, "--link", dir_ + "/com3"};
    chipArgs.insert(chipArgs.end(), chipOptions.begin(), chipOptions.end());
    chip_ = std::make_unique<ChildProcess>(chipArgs, Environment(), "/dev/");
    std::ofstream(dir_ + "/run.vsim") << script;
    keyer_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{VANTREL_SIM, "--real-time", "--dir", dir_,
                                 "--set", "Keyer to Use=WinKey",
                                 "--set", "WinKey Port=3",
                                 "--set", "WinKey Speed=40",
                                 "--set", "WinKey Paddle Insert Cancels Macro=True",
                                 dir_ + "/run.vsim"},
        Environment(), "");
  }

  // The keyer's next trace line that holds `part`, waiting for it.
  std::string KeyerSays(const std::string& part, int ms = 5000) {
    return keyer_->WaitForPart(part, ms);
  }

  int Count(const std::string& prefix) {
    const auto& lines = keyer_->Lines(0);
    return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.find(prefix) != std::string::npos;
    }));
  }

  static std::vector<std::pair<std::string, std::string>> Environment() {
    // The sound and sanitizer libraries leak at exit by design.
    return {{"ASAN_OPTIONS", "detect_leaks=0"}};
  }

  vantrel::testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
  std::unique_ptr<ChildProcess> chip_;
  std::unique_ptr<ChildProcess> keyer_;
};

TEST_F(WinKeyEndToEnd, AMacroIsUploadedSentAndEchoedToTheEndOfTheRun) {
  Start("0 macro 1 CQ DE W1AW\n0 button 1\n10 wait\n");
  ASSERT_NE(chip_->WaitForPart("< 00 02", 5000), "") << "no host open";
  EXPECT_NE(KeyerSays(" winkey 0F 16 28 05"), "") << "the frame with speed 40";
  EXPECT_NE(KeyerSays(" mark 10"), "");
  EXPECT_NE(KeyerSays(" text \"\""), "") << "the run closed on the last echo";
  EXPECT_TRUE(keyer_->Exited(5000));
  // The chip echoed every character as it keyed it; the last one comes
  // after the run has closed, one character behind.
  std::string echoed;
  for (std::string line; echoed.size() < 10 && !(line = chip_->WaitForPart(" > ", 3000)).empty();) {
    const auto at = line.find(" > ");
    for (size_t i = at + 3; i + 1 < line.size(); i += 3) {
      const int byte = std::stoi(line.substr(i, 2), nullptr, 16);
      if (byte >= 0x20 && byte < 0x80) echoed += static_cast<char>(byte);
    }
  }
  EXPECT_EQ(echoed, "CQ DE W1AW");
}

TEST_F(WinKeyEndToEnd, APaddleBreakInCancelsTheMacro) {
  Start("0 send CQ CQ CQ DE W1AW W1AW\n10 wait\n");
  ASSERT_NE(KeyerSays(" mark 3"), "");
  chip_->Command("paddle", "");
  EXPECT_NE(KeyerSays(" pttbox green"), "");
  EXPECT_NE(KeyerSays(" text \"\""), "");
  EXPECT_NE(KeyerSays(" pttbox red"), "");
  EXPECT_TRUE(keyer_->Exited(5000));
  EXPECT_EQ(Count(" mark 8"), 0);
}

TEST_F(WinKeyEndToEnd, AChipThatVanishesMidRunIsReportedOnceWithoutAHang) {
  Start("0 send CQ CQ CQ DE W1AW W1AW\n10 wait\n3000 send TEST\n3100 wait\n");
  ASSERT_NE(KeyerSays(" mark 3"), "");
  chip_->Command("vanish", "");
  EXPECT_NE(KeyerSays(" text \"CW Port error : "), "");
  EXPECT_NE(KeyerSays(" text \"TEST\""), "");
  EXPECT_TRUE(keyer_->Exited(5000)) << "the keyer hung";
  EXPECT_EQ(Count("CW Port error"), 1);
  EXPECT_EQ(Count("WinKey port is not open"), 0);
}

}  // namespace
