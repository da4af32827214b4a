#include "platform/linux/ini_profile_file.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/memory/memory_profile_file.h"
#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

const std::string kSection = "FrmVantrel Settings";
const std::string kMissing = "<missing>";

class IniProfileFileTest : public ::testing::Test {
 protected:

  void Put(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
  std::string Contents() const { return folder_.Read("vantrel.ini"); }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  std::string Get(const std::string& section, const std::string& key, int size = 256) {
    return ini_.GetPrivateProfileString(section, key, kMissing, size, path_);
  }
  bool Write(const std::string& section, const std::string& key, const std::string& value) {
    return ini_.WritePrivateProfileString(section, key, value, path_);
  }

  IniProfileFile ini_;
  testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
  const std::string path_ = folder_ / "vantrel.ini";
};

TEST_F(IniProfileFileTest, HandEditedCrlfFileReadsFirstMatch) {
  Put("; written by hand\r\n"
      "\r\n"
      "[Other]\r\n"
      "Speed=10\r\n"
      "\r\n"
      "[  FrmVantrel Settings \t]\r\n"
      "; Speed=99\r\n"
      "\r\n"
      "Speed=25\r\n"
      "Speed=30\r\n"
      "  Weight \t=\t 3.0  \r\n"
      "Empty=\r\n"
      "\r\n"
      "[FrmVantrel Settings]\r\n"
      "Speed=40\r\n"
      "Late=1\r\n");
  EXPECT_EQ(Get(kSection, "Speed"), "25");
  EXPECT_EQ(Get("Other", "Speed"), "10");
  EXPECT_EQ(Get(kSection, "Weight"), "3.0");
  EXPECT_EQ(Get(kSection, "Empty"), "");
  // Only the first of two same-named sections is searched.
  EXPECT_EQ(Get(kSection, "Late"), kMissing);
  EXPECT_EQ(Get(kSection, "; Speed"), kMissing);
}

// One object sees the file appear and change by hand: nothing is cached.
TEST_F(IniProfileFileTest, HandEditsAreSeen) {
  Put("[S]\nK=1\n");
  EXPECT_EQ(Get("S", "K"), "1");
  Put("[S]\nK=2\n");
  EXPECT_EQ(Get("S", "K"), "2");
}

TEST_F(IniProfileFileTest, WriteChangesOnlyTheOneLine) {
  const std::string before =
      "; Vantrel settings\r\n"
      "[FrmVantrel Settings]\r\n"
      "Unknown Key = kept  \r\n"
      "  SideTone = 700\r\n"
      "; SideTone=1\r\n"
      "SideTone=800\r\n"
      "\r\n"
      "[Logger]\r\n"
      "SideTone=900\r\n";
  Put(before);
  Write("FRMVANTREL SETTINGS", "sidetone", "650");

  std::string after = before;
  after.replace(after.find("  SideTone = 700"), 16, "  SideTone =650");
  EXPECT_EQ(Contents(), after);
  EXPECT_EQ(Names(), std::vector<std::string>{"vantrel.ini"});
}

TEST_F(IniProfileFileTest, WriteAppendsKeyAtEndOfItsSection) {
  Put("[A]\r\nX=1\r\n; note\r\n\r\n\r\n[B]\r\nY=2");
  Write("a", "New", "v");
  EXPECT_EQ(Contents(), "[A]\r\nX=1\r\n; note\r\nNew=v\r\n\r\n\r\n[B]\r\nY=2");
  Write("B", "Z", "3");
  EXPECT_EQ(Contents(), "[A]\r\nX=1\r\n; note\r\nNew=v\r\n\r\n\r\n[B]\r\nY=2\r\nZ=3\r\n");
}

TEST_F(IniProfileFileTest, WriteAddsSectionAtEndOfFile) {
  Put("[A]\nX=1");
  Write(kSection, "Speed", "25");
  EXPECT_EQ(Contents(), "[A]\nX=1\n[FrmVantrel Settings]\nSpeed=25\n");
}

TEST_F(IniProfileFileTest, WriteCreatesMissingFile) {
  Write(kSection, "Speed", "25");
  Write(kSection, "Call", "W1AW");
  EXPECT_EQ(Contents(), "[FrmVantrel Settings]\nSpeed=25\nCall=W1AW\n");
  struct stat info {};
  ASSERT_EQ(::stat(path_.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0644u);
}

TEST_F(IniProfileFileTest, WriteKeepsFileModeAndWritesThroughLink) {
  const std::string real = dir_ + "/real.ini";
  std::ofstream(real, std::ios::binary) << "[S]\nK=1\n";
  ASSERT_EQ(::chmod(real.c_str(), 0600), 0);
  ASSERT_EQ(::symlink("real.ini", path_.c_str()), 0);

  Write("S", "K", "2");
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
  EXPECT_EQ(Get("S", "K"), "2");
  struct stat info {};
  ASSERT_EQ(::stat(real.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0600u);
}

TEST_F(IniProfileFileTest, LineBreakInValueCannotAddLines) {
  Put("[S]\nK=1\n");
  Write("S", "K", "2\r\nInjected=3");
  EXPECT_EQ(Contents(), "[S]\nK=2\n");
}

TEST_F(IniProfileFileTest, WriteIntoMissingDirectoryDoesNothing) {
  ini_.WritePrivateProfileString("S", "K", "1", dir_ + "/no/such/dir/vantrel.ini");
  EXPECT_TRUE(Names().empty());
}

TEST_F(IniProfileFileTest, WriteIntoReadOnlyDirectoryLeavesNoTraceAndNoDamage) {
  Put("[S]\nK=1\n");
  ASSERT_EQ(::chmod(dir_.c_str(), 0555), 0);
  // Root ignores permissions, so the write runs in a child that drops to nobody.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(2);
    const bool written = Write("S", "K", "2");
    const bool copied = ini_.CopyFile(path_, dir_ + "/copy.ini");
    ::_exit(written ? 4 : copied ? 3 : 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  ASSERT_EQ(WEXITSTATUS(status), 0);
  ASSERT_EQ(::chmod(dir_.c_str(), 0700), 0);
  EXPECT_EQ(Contents(), "[S]\nK=1\n");
  EXPECT_EQ(Names(), std::vector<std::string>{"vantrel.ini"});
}

// As an editor leaves a file: a byte order mark before the first section, a
// last line ended by a lone carriage return, quotes around a value.
TEST_F(IniProfileFileTest, EditorLeftoversReadAndSurviveTheNextWrite) {
  const std::string mark = "\xEF\xBB\xBF";
  Put(mark + "[FrmVantrel Settings]\r\nWPM=25\r\nCall=\"W1AW\"\r\nOdd=\"x\r\nKeying=MOX\r");
  EXPECT_EQ(Get(kSection, "WPM"), "25");
  EXPECT_EQ(Get(kSection, "Call"), "W1AW");
  EXPECT_EQ(Get(kSection, "Odd"), "\"x");
  EXPECT_EQ(Get(kSection, "Keying"), "MOX");

  EXPECT_TRUE(Write(kSection, "WPM", "30"));
  EXPECT_TRUE(Write(kSection, "Port", "Serial"));
  EXPECT_EQ(Contents(), mark + "[FrmVantrel Settings]\r\nWPM=30\r\nCall=\"W1AW\"\r\nOdd=\"x\r\n"
                                "Keying=MOX\r\nPort=Serial\r\n");
  EXPECT_EQ(Get(kSection, "Keying"), "MOX");
  EXPECT_EQ(Get(kSection, "Port"), "Serial");

  // A line that an older writer ended with a doubled return still reads.
  Put("[S]\nK=1\r\r\n");
  EXPECT_EQ(Get("S", "K"), "1");
}

// A FIFO would block the first read for ever; nothing but a regular file is
// read or replaced.
TEST_F(IniProfileFileTest, NoRegularFileIsNeitherReadNorReplaced) {
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(Get(kSection, "WPM"), kMissing);
  EXPECT_FALSE(Write(kSection, "WPM", "25"));
  EXPECT_FALSE(ini_.CopyFile(path_, dir_ + "/copy.ini"));
  struct stat info {};
  ASSERT_EQ(::stat(path_.c_str(), &info), 0);
  EXPECT_TRUE(S_ISFIFO(info.st_mode));
  EXPECT_EQ(Names(), std::vector<std::string>{"vantrel.ini"});
}

TEST_F(IniProfileFileTest, CopyTakesEveryByteAndTheSourceMode) {
  const std::string bytes = "; default\r\n[FrmVantrel Settings]\r\nWPM=25\r\n[Initialized]\r\nX=1";
  Put(bytes);
  ASSERT_EQ(::chmod(path_.c_str(), 0600), 0);
  const std::string copy = dir_ + "/contestvantrel.ini";
  std::ofstream(copy, std::ios::binary) << "[Old]\nK=1\n";
  ASSERT_EQ(::chmod(copy.c_str(), 0640), 0);

  EXPECT_TRUE(ini_.CopyFile(path_, dir_ + "/new.ini"));
  EXPECT_TRUE(ini_.CopyFile(path_, copy));
  for (const std::string& target : {dir_ + "/new.ini", copy}) {
    std::ifstream in(target, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), bytes) << target;
  }
  struct stat info {};
  ASSERT_EQ(::stat((dir_ + "/new.ini").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0600u);
  ASSERT_EQ(::stat(copy.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);  // a replaced file keeps its own
  EXPECT_EQ(Names(), (std::vector<std::string>{"contestvantrel.ini", "new.ini", "vantrel.ini"}));
}

TEST_F(IniProfileFileTest, FailedCopyLeavesTheTargetAlone) {
  Put("[S]\nK=1\n");
  EXPECT_FALSE(ini_.CopyFile(dir_, path_));  // a directory is no profile
  EXPECT_FALSE(ini_.CopyFile(path_, dir_ + "/no/such/dir/x.ini"));
  EXPECT_EQ(Contents(), "[S]\nK=1\n");
  EXPECT_EQ(Names(), std::vector<std::string>{"vantrel.ini"});
}

// A write killed at any moment leaves the old file or the new one, whole.
TEST_F(IniProfileFileTest, KilledWriterNeverLeavesHalfAFile) {
  constexpr int kKeys = 50;
  constexpr int kChanging = 25;
  auto fileWith = [](const std::string& changingValue) {
    std::string text = "; keys\r\n[FrmVantrel Settings]\r\n";
    for (int k = 0; k < kKeys; ++k) {
      const std::string value = k == kChanging ? changingValue : "value" + std::to_string(k) + std::string(40, 'p');
      text += "Key" + std::to_string(k) + "=" + value + "\r\n";
    }
    return text;
  };
  Put(fileWith("start"));

  std::random_device device;
  const unsigned seed = device();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> delayUs(0, 10'000);

  for (int round = 0; round < 10; ++round) {
    std::string prefix("r");  // built by += because GCC 12 misreads "r" + std::string
    prefix += std::to_string(round);
    prefix += '-';
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::close(ready[0]);
      for (long i = 0;; ++i) {
        Write(kSection, "Key" + std::to_string(kChanging), prefix + std::to_string(i));
        if (i == 0 && ::write(ready[1], "x", 1) != 1) ::_exit(1);
      }
    }
    ::close(ready[1]);
    char signal = 0;
    ASSERT_EQ(::read(ready[0], &signal, 1), 1);
    ::close(ready[0]);
    ::usleep(static_cast<useconds_t>(delayUs(random)));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));

    const std::string value = Get(kSection, "Key" + std::to_string(kChanging));
    EXPECT_EQ(value.rfind(prefix, 0), 0u) << value;
    EXPECT_EQ(Contents(), fileWith(value)) << "round " << round;
  }
}

// What the file on disk and the one in memory share: the keyer and its
// tests must find the same values in both.
struct OnDisk {
  IniProfileFile file;
  testing::TempFolder folder;
  std::string Path(const std::string& name) const { return folder / name; }
};
struct InMemory {
  memory::MemoryProfileFile file;
  std::string Path(const std::string& name) const { return "/opt/vantrel/" + name; }
};

template <typename Files>
class ProfileFileTest : public ::testing::Test {
 protected:
  std::string Get(const std::string& section, const std::string& key, int size = 2000,
                  const std::string& fallback = kMissing, const std::string& name = "Vantrel.INI") {
    return files_.file.GetPrivateProfileString(section, key, fallback, size, Path(name));
  }
  bool Put(const std::string& section, const std::string& key, const std::string& value,
           const std::string& name = "Vantrel.INI") {
    return files_.file.WritePrivateProfileString(section, key, value, Path(name));
  }
  std::string Path(const std::string& name) const { return files_.Path(name); }
  bool Exists(const std::string& name) { return files_.file.FileExists(Path(name)); }
  bool Copy(const std::string& from, const std::string& to) {
    return files_.file.CopyFile(Path(from), Path(to));
  }

  Files files_;
};

using Implementations = ::testing::Types<OnDisk, InMemory>;
TYPED_TEST_SUITE(ProfileFileTest, Implementations);

TYPED_TEST(ProfileFileTest, NamesMatchWithoutRegardToCaseWhenReadOrReplaced) {
  this->Put("Main", "Keying", "VOX");
  this->Put("Main", "WPM", "20");
  this->Put("MAIN", "KEYING", "MOX");
  this->Put("Other", "Keying", "VOX");
  EXPECT_EQ(this->Get("main", "keying"), "MOX");
  EXPECT_EQ(this->Get("Main", "WPM"), "20");
  EXPECT_EQ(this->Get("Other", "Keying"), "VOX");
  EXPECT_EQ(this->Get("Other", "WPM"), kMissing);  // sections stay apart
  EXPECT_EQ(this->Get("Main", "Keyin"), kMissing);
}

TYPED_TEST(ProfileFileTest, ValuesLoseSurroundingBlanksThenAreCutToOneLessThanTheSize) {
  this->Put("Main", "Text", " \t AB  CD \t ");
  this->Put("Main", "Blank", "   ");
  this->Put("Main", "Long", std::string(2500, 'x'));
  EXPECT_EQ(this->Get("Main", "Text"), "AB  CD");
  EXPECT_EQ(this->Get("Main", "Blank"), "");
  EXPECT_EQ(this->Get("Main", "Long"), std::string(1999, 'x'));
  EXPECT_EQ(this->Get("Main", "Text", 4), "AB ");
  EXPECT_EQ(this->Get("Main", "Text", 7), "AB  CD");
  EXPECT_EQ(this->Get("Main", "Text", 1), "");
  EXPECT_EQ(this->Get("Main", "Missing", 3, "  12345 "), "12");  // the fallback too
}

// What a hand edit puts in quotes loses one pair; what the keyer writes comes
// back as it was, quotes and all.
TYPED_TEST(ProfileFileTest, EveryWrittenValueReadsBackAsWritten) {
  for (const std::string value : {"\"25\"", "\"\"", "\"", "\"a\" and \"b\"", "x\"", "\"\"x\"\"", "plain"}) {
    EXPECT_TRUE(this->Put("Main", "K", value));
    EXPECT_EQ(this->Get("Main", "K"), value);
  }
  EXPECT_TRUE(this->Put("Main", "K", "  \"q\"\t"));
  EXPECT_EQ(this->Get("Main", "K"), "\"q\"");  // blanks go as they always do
  EXPECT_EQ(this->Get("Main", "K", 3), "\"q");
}

TYPED_TEST(ProfileFileTest, FilesStayApartAndComeIntoBeingOnFirstWrite) {
  EXPECT_FALSE(this->Exists("Vantrel.INI"));
  this->Put("Main", "WPM", "20");
  EXPECT_TRUE(this->Exists("Vantrel.INI"));
  EXPECT_FALSE(this->Exists("contestVantrel.INI"));
  EXPECT_FALSE(this->Exists("vantrel.ini"));  // paths keep their case
  EXPECT_EQ(this->Get("Main", "WPM", 2000, kMissing, "contestVantrel.INI"), kMissing);
}

TYPED_TEST(ProfileFileTest, CopyIsWholeAndIndependentAndFailsOnAMissingSource) {
  const std::string profile = "contestVantrel.INI";
  this->Put("Main", "WPM", "20");
  this->Put("Initialized", "Create Date/Time", "then");
  this->Put("Main", "WPM", "35", profile);
  this->Put("Old", "K", "1", profile);

  EXPECT_FALSE(this->Copy("absent.INI", profile));
  EXPECT_FALSE(this->Exists("absent.INI"));
  EXPECT_EQ(this->Get("Main", "WPM", 2000, kMissing, profile), "35");

  EXPECT_TRUE(this->Copy("Vantrel.INI", profile));
  EXPECT_EQ(this->Get("Old", "K", 2000, kMissing, profile), kMissing);
  EXPECT_EQ(this->Get("Initialized", "Create Date/Time", 2000, kMissing, profile), "then");
  this->Put("Main", "WPM", "25", profile);
  EXPECT_EQ(this->Get("Main", "WPM"), "20");
  EXPECT_EQ(this->Get("Main", "WPM", 2000, kMissing, profile), "25");
  EXPECT_TRUE(this->Copy("Vantrel.INI", "Vantrel.INI"));
  EXPECT_EQ(this->Get("Main", "WPM"), "20");
}

}  // namespace
}  // namespace vantrel::platform::linuxos
