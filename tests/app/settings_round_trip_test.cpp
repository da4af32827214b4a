// Whatever the keyer writes, its next start reads back: the rectangle, the
// macros up to the editor's limit, and every key a dialog or menu writes.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/load_settings.h"
#include "support/keyer_fixture.h"

namespace vantrel::app {
namespace {

using namespace settings;

using testing::KeyerFixture;

// What each key's writer may put there, at the edges of what it writes.
std::string WrittenValue(const Setting& setting, int round) {
  const bool low = round % 2 == 0;
  const std::string key = setting.key;
  if (key == "Keyer to Use") return low ? "WinKey2" : "WinKey";
  if (key == "Port to Use") return low ? "Shared Serial" : "Serial";
  if (key == "Keying") return "MOX";
  if (key == "Serial # 0 preference") return low ? "T" : "O";
  if (key == "Macro #" || key == "Macro Caption #") return "\"QUOTED\" TEXT";
  switch (setting.form) {
    case Form::Exact:
      return low ? "ON" : "True";
    case Form::Boolean:
      return low ? "True" : "False";
    case Form::Integer:
    case Form::Val16:
      return low ? "-32768" : "32767";
    case Form::Long:
      return low ? "-2147483648" : "2147483647";
    case Form::Val:
    case Form::Double:
      return low ? "0.5" : "1500";
    case Form::Text:
      return "\"Fixed\" Sans";
  }
  return "";
}

class SettingsRoundTrip : public KeyerFixture {
 protected:
  // The same files, read by a keyer that starts afresh.
  struct NextStart {
    platform::memory::MemoryPlatform p;
    app::Vantrel keyer{p.platform(), {KeyerFixture::kDirectory, ""}};
    std::string Read(const char* section, const std::string& key) {
      keyer.store.SettingsSection = section;
      return keyer.store.ReadSetting(key, "<missing>");
    }
  };
  void Restart(NextStart& next) {
    next.p.files = p.files;
    next.keyer.form.Form_Load();
  }
  void StoreMacro(int16_t index, const std::string& text) {
    keyer.mMacros.btnf_MouseDown(index, 2);
    keyer.mMacros.btnf_MouseUp(index, 2);
    p.macroSetup.dialog().MacroText.SetText(text);
    p.macroSetup.dialog().CaptionText.SetText("\"" + std::to_string(index) + "\"");
    p.macroSetup.dialog().Hbutton5.Click();
  }
};

TEST_F(SettingsRoundTrip, EveryKeyTheKeyerWritesComesBackAndTheLoadRunsToTheEnd) {
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    Start();
    std::vector<std::pair<std::string, std::string>> written;
    for (const Setting& setting : SettingsTable()) {
      const std::string key = std::string(setting.key) + (setting.section == Section::Macro ? "17" : "");
      const std::string value = WrittenValue(setting, round);
      ASSERT_TRUE(keyer.store.WriteSetting(SectionOf(setting.key), key, value));
      written.emplace_back(key, value);
    }
    NextStart next;
    Restart(next);
    for (const auto& [key, value] : written) {
      EXPECT_EQ(next.Read(std::string_view(SectionOf(key)) == kKeyerSection ? kKeyerSection : kMainSectionRead, key), value)
          << key;
    }
    // The last key of the load took effect, so none before it stopped it.
    EXPECT_EQ(next.keyer.winKeySettings.PaddleOnlySideTone, round == 0);
  }
}

TEST_F(SettingsRoundTrip, TheRectangleAndMacrosUpToTheEditorsLimitComeBack) {
  Start();
  // A window on a second monitor, wider and taller than 16 bits of twips.
  p.frmVantrel.SetLeft(37500);
  p.frmVantrel.SetTop(-1200);
  p.frmVantrel.SetHeight(40005);
  p.frmVantrel.SetWidth(57600);
  std::string lines = std::string(1000, 'A') + "\r\n" + std::string(998, 'B');  // 1999 stored
  StoreMacro(1, lines);
  StoreMacro(36, std::string(3000, 'C'));
  keyer.form.Form_Unload();

  NextStart next;
  Restart(next);
  EXPECT_EQ(next.p.frmVantrel.Left(), 37500);
  EXPECT_EQ(next.p.frmVantrel.Top(), -1200);
  EXPECT_EQ(next.p.frmVantrel.Height(), 40005);
  EXPECT_EQ(next.p.frmVantrel.Width(), 57600);
  EXPECT_TRUE(next.keyer.macros.MacroTexts[1] == std::string(1000, 'A') + "~" + std::string(998, 'B'));
  EXPECT_EQ(next.keyer.macros.MacroCaptions[1], "\"1\"");
  // The editor warned of this one: a start gives back what a read holds.
  EXPECT_TRUE(next.keyer.macros.MacroTexts[36] == std::string(kLongestValueRead, 'C'));
  EXPECT_EQ(next.keyer.macros.MacroCaptions[36], "\"36\"");
  EXPECT_TRUE(next.p.mnuSoftwareKeyer.Checked());  // and the keyer section was reached
  EXPECT_EQ(next.keyer.winKeySettings.WinKeyTone, 752);
}

}  // namespace
}  // namespace vantrel::app
