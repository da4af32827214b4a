#include "app/load_settings.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/vantrel.h"
#include "platform/memory/memory_platform.h"

namespace vantrel::app {
namespace {

using namespace settings;

using Settings = std::vector<std::pair<std::string, std::string>>;

const std::string kDirectory = "/opt/vantrel";

class CountingPump : public platform::EventPump {
 public:
  void DoEvents() override { ++calls; }
  int calls = 0;
};

// The keyer's state on the in-memory platform, loaded straight from a fresh file.
class LoadSettingsTest : public ::testing::Test {
 protected:
  LoadSettingsTest() { keyer.store.LocateSettingsFile(kDirectory, ""); }

  // Each pair goes where a writer would put it, then everything loads once.
  void Load(const Settings& settings = {}) {
    for (const auto& [key, value] : settings) keyer.store.WriteSetting(SectionOf(key), key, value);
    LoadSettings(keyer.store, holders);
  }

  platform::memory::MemoryPlatform p;
  app::Vantrel keyer{p.platform()};
  sending::CwState& cw = keyer.cw;
  mainwindow::MainWindowState& window = keyer.window;
  macros::MacroState& macros = keyer.macros;
  winkey::WinKeySettings& wk = keyer.winKeySettings;
  CountingPump pump;
  int srxClicks = 0;
  SettingsHolders holders{cw, window, macros, wk, p.controls, keyer.control, pump, [this] { ++srxClicks; }};
};

// Every default converts: a first start loads to the table's last key. The
// window as it then comes up is held to in the window and runner tests.
TEST_F(LoadSettingsTest, AFirstStartLoadsEveryDefaultToTheLastKey) {
  Load({{"Paddle Only SideTone", "True"}});  // the last key, its default replaced
  EXPECT_TRUE(wk.PaddleOnlySideTone);
  EXPECT_EQ(pump.calls, 36);  // once for each macro's keys
  EXPECT_EQ(keyer.store.SettingsSection, kKeyerSection);
  EXPECT_EQ(macros.MacroFontNames[0], "");  // the editor's entry is not the load's
  EXPECT_EQ(srxClicks, 0);
}

// Each keyer key lands in its own field, whatever the case of its section and name.
TEST_F(LoadSettingsTest, KeyerKeysReachTheirOwnFieldsFromTheKeyerSectionOnly) {
  const char* numbers[] = {"WinKey Port", "WinKey Key Mode", "WinKey Tone", "WinKey WordSpace",
                           "WinKey Paddle Operation", "WinKey PTT Lead Delay", "WinKey PTT Lag Delay",
                           "WinKey Speed Max", "WinKey Speed Min", "WinKey Speed Farnsworth",
                           "WinKey DitDah Ratio", "WinKey DitDah Weight", "WinKey First Extension",
                           "WinKey Compensation", "WinKey Paddle Switchpoint", "WinKey Speed"};
  int16_t value = 1;
  for (const char* key : numbers) keyer.store.WriteSetting("winkey SETTINGS", key, std::to_string(value++));
  keyer.store.WriteSetting(kKeyerSection, "winkey sidetone", "True");
  keyer.store.WriteSetting(kKeyerSection, "WinKey PTT", "0");
  keyer.store.WriteSetting(kMainSection, "WinKey Radio 1 Pin 3", "True");
  Load();
  const int16_t got[] = {wk.WinKeyPort, wk.WinKeyKeyMode, wk.WinKeyTone, wk.WinKeyWordSpace,
                         wk.WinKeyPaddleOperation, wk.WinKeyPTTLeadDelay, wk.WinKeyPTTLagDelay,
                         wk.WinKeySpeedMax, wk.WinKeySpeedMin, wk.WinKeySpeedFarnsworth,
                         wk.WinKeyDitDahRatio, wk.WinKeyDitDahWeight, wk.WinKeyFirstExtension,
                         wk.WinKeyCompensation, wk.WinKeyPaddleSwitchpoint, wk.WinKeySpeed};
  for (int16_t i = 0; i < 16; ++i) EXPECT_EQ(got[i], i + 1) << numbers[i];
  EXPECT_TRUE(wk.WinKeySideTone);
  EXPECT_FALSE(wk.WinKeyPTT);
  EXPECT_FALSE(wk.WinKeyRadio1Pin3);
}

TEST_F(LoadSettingsTest, ExactValuesMatchOnlyInTheirOwnSpelling) {
  cw.SidetoneEnabled = true;  // as the port dialog may have left it
  Load({{"Keying", "vox"}, {"PTT", "on"}, {"Slow Typing", "on"}, {"Keyer to Use", "winkey"},
        {"Port to Use", "parallel"}, {"SRX Field Visible", "true"}, {"SideTone", "on"}});
  EXPECT_TRUE(p.mnuMOX.Checked());
  EXPECT_FALSE(p.mnuVOX.Checked());
  EXPECT_TRUE(cw.PTTEnabled);
  EXPECT_FALSE(cw.SlowTyping);
  EXPECT_TRUE(p.mnuSoftwareKeyer.Checked());
  EXPECT_FALSE(cw.UseParallel || cw.UseSharedSerial);  // the dedicated serial port
  EXPECT_EQ(srxClicks, 0);
  EXPECT_TRUE(cw.SidetoneEnabled);  // left alone, not turned off
}

using Item = platform::MenuId;

// A key whose value ticks one of three menu items; `caption` is the window's after it, if it sets one.
struct ChoiceCase {
  const char* key;
  const char* value;
  std::array<Item, 3> group;
  Item ticked;
  const char* caption;
};
std::ostream& operator<<(std::ostream& out, const ChoiceCase& c) {
  return out << c.key << "=\"" << c.value << '"';
}

class MenuChoice : public LoadSettingsTest, public ::testing::WithParamInterface<ChoiceCase> {};

TEST_P(MenuChoice, TicksExactlyOneItemOfItsGroup) {
  Load({{GetParam().key, GetParam().value}});
  for (Item item : GetParam().group) {
    EXPECT_EQ(p.menus.at(item).Checked(), item == GetParam().ticked) << platform::NameOf(item);
  }
  EXPECT_EQ(p.frmVantrel.Caption(), GetParam().caption);
}

constexpr std::array<Item, 3> kKeyers{Item::mnuWinKey, Item::mnuWinKey2, Item::mnuSoftwareKeyer};
constexpr std::array<Item, 3> kZeros{Item::mnuSend0as0, Item::mnuSend0asT, Item::mnuSend0asO};
constexpr const char* kKeyer = "Keyer to Use";
constexpr const char* kZero = "Serial # 0 preference";
constexpr const char* kSoftware = "Vantrel - Software";

INSTANTIATE_TEST_SUITE_P(
    Values, MenuChoice,
    ::testing::Values(ChoiceCase{kKeyer, "WinKey", kKeyers, Item::mnuWinKey, "Vantrel - WinKey"},
                      ChoiceCase{kKeyer, "WinKey2", kKeyers, Item::mnuWinKey2, "Vantrel - WinKey"},
                      ChoiceCase{kKeyer, "Software", kKeyers, Item::mnuSoftwareKeyer, kSoftware},
                      ChoiceCase{kKeyer, "WINKEY2", kKeyers, Item::mnuSoftwareKeyer, kSoftware},
                      ChoiceCase{kZero, "0", kZeros, Item::mnuSend0as0, kSoftware},
                      ChoiceCase{kZero, "T", kZeros, Item::mnuSend0asT, kSoftware},
                      ChoiceCase{kZero, "O", kZeros, Item::mnuSend0asO, kSoftware},
                      ChoiceCase{kZero, "t", kZeros, Item::mnuSend0asO, kSoftware},
                      ChoiceCase{kZero, "zero", kZeros, Item::mnuSend0asO, kSoftware},
                      ChoiceCase{kZero, "", kZeros, Item::mnuSend0asO, kSoftware}));

struct PortCase {
  const char* value;
  bool parallel;
  bool shared;
};
std::ostream& operator<<(std::ostream& out, const PortCase& c) { return out << '"' << c.value << '"'; }

class PortToUse : public LoadSettingsTest, public ::testing::WithParamInterface<PortCase> {};

TEST_P(PortToUse, NamesTheRouteAndAnythingElseIsTheDedicatedPort) {
  cw.UseParallel = cw.UseSharedSerial = true;
  Load({{"Port to Use", GetParam().value}, {"Dedicated Serial Port", "Comm3"}});
  EXPECT_EQ(cw.UseParallel, GetParam().parallel);
  EXPECT_EQ(cw.UseSharedSerial, GetParam().shared);
  EXPECT_EQ(cw.DedicatedSerialPort, "Comm3");
}

INSTANTIATE_TEST_SUITE_P(Values, PortToUse,
                         ::testing::Values(PortCase{"Parallel", true, false}, PortCase{"Shared Serial", false, true},
                                           PortCase{"Serial", false, false}, PortCase{"shared serial", false, false}));

struct AddressCase {
  const char* text;
  int32_t address;
};
std::ostream& operator<<(std::ostream& out, const AddressCase& c) { return out << '"' << c.text << '"'; }

class PortAddress : public LoadSettingsTest, public ::testing::WithParamInterface<AddressCase> {};

TEST_P(PortAddress, ReadsHexAndDecimalAlike) {
  Load({{"Parallel Port Address", GetParam().text}});
  EXPECT_EQ(cw.LptBaseAddress, GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(Values, PortAddress,
                         ::testing::Values(AddressCase{"&H278", 632}, AddressCase{"632", 632},
                                           AddressCase{"&h3bc", 956}, AddressCase{"888", 888},
                                           AddressCase{"70000", 70000}));

TEST_F(LoadSettingsTest, WindowAndViewTakeWhatTheFileSays) {
  Load({{"Top", "&H100"},           {"Width", "4000.5"},           {"TextBox Font Size", "9.5"},
        {"TextBox Font Bold", "-1"}, {"TextBox BackColor", "65535"}, {"WPM Text Color", "255"},
        {"SHIFT F Keys Visible", "False"}, {"ALT F Keys Visible", "0"}, {"Callsign Field Visible", "false"},
        {"SRX Field Visible", "True"}, {"On Top", "False"}, {"Insert Key", "45 Ins"}});
  EXPECT_EQ(p.frmVantrel.Top(), 256);
  EXPECT_EQ(p.frmVantrel.Width(), 4000);  // half to even
  EXPECT_EQ(p.CWTextBox.fontSize, 10);
  EXPECT_TRUE(p.CWTextBox.fontBold);
  EXPECT_EQ(window.NormalBackColor, 65535);
  EXPECT_EQ(p.sBar.ForeColor(), 255);
  EXPECT_FALSE(p.mSFkeys.Checked() || p.ElasticOne2.Visible());
  EXPECT_FALSE(p.mAFkeys.Checked() || p.ElasticOne1.Visible());
  EXPECT_TRUE(p.mFkeys.Checked() && p.ElasticOne3.Visible());
  EXPECT_FALSE(p.mnuShowCallsign.Checked());
  EXPECT_FALSE(p.sBar.Visible());  // stays as it started
  EXPECT_EQ(srxClicks, 1);
  EXPECT_FALSE(window.OnTop);
  EXPECT_EQ(window.InsertKeyCode, 45);  // the numeric prefix
}

TEST_F(LoadSettingsTest, ProportionsLoadBeforeTheSpeed) {
  Load({{"WPM", "20"}, {"Dash Length", "3.5"}});
  EXPECT_EQ(cw.DotTime, 58);
}

TEST_F(LoadSettingsTest, MacroKeysCarryTheirNumberAndShowOnTheirButton) {
  const std::string longText(2500, 'Q');
  Load({{"Macro #7", longText}, {"Macro Caption #12", "CQ TEST"}, {"Macro BackColor #12", "255"},
        {"Macro ForeColor #12", "65280"}, {"Macro Fontbold #12", "True"}, {"Macro Fontname #3", "Arial"},
        {"Macro MouseOver Fontname #3", "Courier"}, {"Macro Fontsize #36", "12"}, {"Macro Caption #1", "TU"},
        {"Macro Fontitalic #5", "True"}});
  EXPECT_EQ(macros.MacroTexts[7], longText.substr(0, 1999));
  EXPECT_EQ(macros.MacroCaptions[12], "CQ TEST");
  EXPECT_EQ(p.btnf[12].Caption(), "CQ TEST");
  EXPECT_EQ(p.btnf[1].Caption(), "TU");
  EXPECT_EQ(p.btnf[12].BackColor(), 255);
  EXPECT_EQ(p.btnf[12].ForeColor(), 65280);
  EXPECT_TRUE(p.btnf[12].FontBold());
  EXPECT_FALSE(p.btnf[11].FontBold());
  // The whole plain look, before any mouse has passed over a button.
  EXPECT_EQ(p.btnf[3].FontName(), "Arial");
  EXPECT_EQ(p.btnf[4].FontName(), "MS Sans Serif");
  EXPECT_EQ(p.btnf[36].FontSize(), 12);
  EXPECT_EQ(p.btnf[35].FontSize(), 8);
  EXPECT_TRUE(p.btnf[5].FontItalic());
  EXPECT_FALSE(p.btnf[6].FontItalic());
  EXPECT_EQ(macros.MacroBackColors[12], 255);
  EXPECT_EQ(macros.MacroOverBackColors[12], 14671839);
  // The mouse-over name is never read: it restarts as the normal one.
  EXPECT_EQ(macros.MacroFontNames[3], "Arial");
  EXPECT_EQ(macros.MacroOverFontNames[3], "Arial");
  EXPECT_EQ(macros.MacroFontSizes[36], 12);
  EXPECT_EQ(macros.MacroOverFontSizes[36], 8);
}

struct BadCase {
  const char* key;
  const char* text;
};
std::ostream& operator<<(std::ostream& out, const BadCase& c) { return out << c.key << "=" << c.text; }

class BadValue : public LoadSettingsTest, public ::testing::WithParamInterface<BadCase> {};

// Each conversion that can fail ends the load at its key; the keyer table's last key is the witness.
TEST_P(BadValue, StopsTheLoadAtItsKey) {
  Load({{GetParam().key, GetParam().text}, {"Paddle Only SideTone", "True"}});
  EXPECT_FALSE(wk.PaddleOnlySideTone);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadValue,
    ::testing::Values(BadCase{"On Top", "yes"}, BadCase{"Insert Key", "70000"}, BadCase{"Width", "-2147483649"},
                      BadCase{"Height", "3000000000"},
                      BadCase{"Parallel Port Address", "0x378"}, BadCase{"PTT Delay", "3000000000"},
                      BadCase{"Frequency", "700 Hz"}, BadCase{"WPM", "1e10"}, BadCase{"Macro Fontsize #36", "big"},
                      BadCase{"Macro Fontbold #5", ""}, BadCase{"WinKey Hold Radio Polling", "maybe"}));

TEST_F(LoadSettingsTest, BadMacroKeyKeepsTheMacrosBeforeIt) {
  Load({{"Macro Caption #4", "QRZ"}, {"Macro Caption #5", "5NN"}, {"Macro BackColor #5", "red"},
        {"Macro Caption #6", "TU"}});
  EXPECT_EQ(p.btnf[4].Caption(), "QRZ");
  EXPECT_EQ(p.btnf[5].Caption(), "5NN");  // its keys before the bad one
  EXPECT_EQ(p.btnf[5].BackColor(), 0);
  EXPECT_EQ(p.btnf[6].Caption(), "");
  EXPECT_EQ(pump.calls, 4);
}

TEST(SectionOf, PutsTheKeyerKeysInTheirSectionInAnyCase) {
  for (const char* key : {"WinKey Analog Speed", "winkey hold radio polling", "WINKEY PORT", "Paddle Only SideTone"}) {
    EXPECT_STREQ(SectionOf(key), kKeyerSection) << key;
  }
  for (const char* key : {"SideTone", "WPM", "Macro Caption #12", "WinKey", "WinKey Port ", ""}) {
    EXPECT_STREQ(SectionOf(key), kMainSection) << key;
  }
}

}  // namespace
}  // namespace vantrel::app
