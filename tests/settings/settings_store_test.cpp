#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/linux/ini_profile_file.h"
#include "settings/settings_store.h"
#include "vb/vb.h"

#include "support/temp_folder.h"

namespace vantrel::settings {
namespace {

using namespace std::string_view_literals;

struct TrimCase {
  std::string_view buffer;
  std::string read;
};
std::ostream& operator<<(std::ostream& out, const TrimCase& c) {
  return out << ::testing::PrintToString(std::string(c.buffer));
}

class TrimAtNulTest : public ::testing::TestWithParam<TrimCase> {};

TEST_P(TrimAtNulTest, ReadsAsAFixedWidthBuffer) { EXPECT_EQ(vb::TrimAtNul(GetParam().buffer), GetParam().read); }

INSTANTIATE_TEST_SUITE_P(
    Buffers, TrimAtNulTest,
    ::testing::Values(TrimCase{"20\0\0\0"sv, "20"}, TrimCase{"  CQ TEST\0  "sv, "CQ TEST"},
                      // Blanks come off the ends of the whole buffer, not of the value.
                      TrimCase{"  ON  \0\0"sv, "ON  "}, TrimCase{"A\0B\0"sv, "A"},
                      TrimCase{"\0ON"sv, ""}, TrimCase{"   \0ON"sv, ""}, TrimCase{"ON"sv, ""},
                      TrimCase{"    "sv, ""}, TrimCase{""sv, ""}));

class FixedClock : public platform::WallClock {
 public:
  platform::LocalTime Now() override { return now; }
  platform::LocalTime now{2026, 11, 17, 21, 5, 9};
};

// The store over real files in a fresh directory, as the program finds its own.
class SettingsStoreTest : public ::testing::Test {
 protected:
  std::string Contents(const std::string& name) const { return folder_.Read(name); }
  void Put(const std::string& name, const std::string& text) const {
    std::ofstream(dir_ + "/" + name, std::ios::binary) << text;
  }
  // A fresh start of the program, as with a new process.
  SettingsStore& Start(const std::string& commandLine = "") {
    store_.emplace(files_, clock_);
    store_->LocateSettingsFile(dir_, commandLine);
    return *store_;
  }

  platform::linuxos::IniProfileFile files_;
  FixedClock clock_;
  std::optional<SettingsStore> store_;
  testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
};

// A transmission holds writes: they reach the file when it ends, in the order
// first made and with the latest value, and reads see them meanwhile.
TEST_F(SettingsStoreTest, HeldWritesAreReadAtOnceAndWrittenOnRelease) {
  SettingsStore& store = Start();
  const std::string before = Contents("Vantrel.INI");
  store.HoldWrites(true);
  EXPECT_TRUE(store.WriteSetting(kMainSection, "WPM", "21"));
  EXPECT_TRUE(store.WriteSetting(kKeyerSection, "WinKey Speed", "30"));
  EXPECT_TRUE(store.WriteSetting(kMainSection, "wpm", "  22 "));
  EXPECT_EQ(Contents("Vantrel.INI"), before);
  store.SettingsSection = kMainSectionRead;
  EXPECT_EQ(store.ReadSetting("WPM", "20"), "22");
  EXPECT_EQ(store.ReadSetting("WinKey Speed", "15"), "15");  // another section's key

  // A write that must be told at once goes through, and no held value undoes it.
  EXPECT_TRUE(store.WriteSettingNow(kMainSection, "Macro #1", "CQ"));
  EXPECT_TRUE(store.WriteSettingNow(kKeyerSection, "WinKey Speed", "31"));
  EXPECT_NE(Contents("Vantrel.INI").find("Macro #1=CQ"), std::string::npos);

  store.HoldWrites(false);
  const std::string after = Contents("Vantrel.INI");
  EXPECT_NE(after.find("WPM=  22"), std::string::npos);
  EXPECT_NE(after.find("WinKey Speed=31"), std::string::npos);
  EXPECT_EQ(after.find("WPM=21"), std::string::npos);
  store.HoldWrites(false);  // a second release writes nothing again
  EXPECT_EQ(Contents("Vantrel.INI"), after);
  EXPECT_TRUE(store.WriteSetting(kMainSection, "WPM", "23"));  // no hold: at once
  EXPECT_NE(Contents("Vantrel.INI").find("WPM=23"), std::string::npos);
}

TEST_F(SettingsStoreTest, FirstStartMakesAFileHoldingOnlyTheStamp) {
  SettingsStore& store = Start();
  EXPECT_EQ(store.SettingsFilePath, dir_ + "/Vantrel.INI");
  EXPECT_EQ(store.SettingsBufferSize, 2000);
  EXPECT_EQ(Contents("Vantrel.INI"), "[Initialized]\nCreate Date/Time=21:05:09 November 17, 2026\n");
  EXPECT_EQ(store.ReadSetting("WPM", "20"), "20");
}

TEST_F(SettingsStoreTest, NewProfileStartsAsAStampedCopyOfTheDefaultOne) {
  Put("Vantrel.INI",
      "[FrmVantrel Settings]\r\nWPM=32\r\n[Initialized]\r\nCreate Date/Time=01:02:03 May 04, 2020\r\n");
  SettingsStore& store = Start("contest");
  EXPECT_EQ(store.SettingsFilePath, dir_ + "/contestVantrel.INI");
  EXPECT_EQ(Contents("contestVantrel.INI"),
            "[FrmVantrel Settings]\r\nWPM=32\r\n[Initialized]\r\nCreate Date/Time=21:05:09 November 17, 2026\r\n");
  EXPECT_EQ(store.ReadSetting("WPM", "20"), "32");
  EXPECT_NE(Contents("Vantrel.INI").find("May 04, 2020"), std::string::npos);

  // Found the second time: neither copied again nor stamped again.
  const std::string made = Contents("contestVantrel.INI");
  Put("Vantrel.INI", "[FrmVantrel Settings]\nWPM=40\n");
  clock_.now = {2027, 1, 2, 3, 4, 5};
  Start("contest");
  EXPECT_EQ(Contents("contestVantrel.INI"), made);
}

TEST_F(SettingsStoreTest, ProfileWithoutADefaultFileIsMadeByTheStampAlone) {
  Start("dx");
  EXPECT_EQ(Contents("dxVantrel.INI"), "[Initialized]\nCreate Date/Time=21:05:09 November 17, 2026\n");
  EXPECT_FALSE(std::filesystem::exists(dir_ + "/Vantrel.INI"));
}

TEST_F(SettingsStoreTest, ExistingDefaultFileIsLeftAsItIs) {
  Put("Vantrel.INI", "[FrmVantrel Settings]\nWPM=25\n");
  Start();
  EXPECT_EQ(Contents("Vantrel.INI"), "[FrmVantrel Settings]\nWPM=25\n");
}

struct StampCase {
  platform::LocalTime time;
  std::string text;
};
std::ostream& operator<<(std::ostream& out, const StampCase& c) { return out << c.text; }

class StampFormat : public SettingsStoreTest, public ::testing::WithParamInterface<StampCase> {};

TEST_P(StampFormat, IsTwentyFourHourTimeThenTheFullMonthName) {
  clock_.now = GetParam().time;
  Start();
  EXPECT_EQ(Contents("Vantrel.INI"), "[Initialized]\nCreate Date/Time=" + GetParam().text + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Times, StampFormat,
    ::testing::Values(StampCase{{2027, 1, 3, 7, 4, 0}, "07:04:00 January 03, 2027"},
                      StampCase{{2026, 12, 31, 0, 0, 0}, "00:00:00 December 31, 2026"},
                      StampCase{{2028, 9, 9, 23, 59, 59}, "23:59:59 September 09, 2028"}));

}  // namespace
}  // namespace vantrel::settings
