#include "app/load_settings.h"

#include <optional>
#include <string>
#include <type_traits>

#include "vb/vb.h"

namespace vantrel::app {
namespace {

using settings::kKeyerSection;
using settings::kMainSection;
using settings::kMainSectionRead;
using settings::kNetworkSection;
using settings::SettingsStore;

using H = SettingsHolders;
using Str = const std::string&;
using macros::MacroState;
using winkey::WinKeySettings;

template <Form F>
using ValueOf = std::conditional_t<
    F == Form::Boolean, bool,
    std::conditional_t<F == Form::Integer || F == Form::Val16, int16_t,
                       std::conditional_t<F == Form::Long, int32_t,
                                          std::conditional_t<F == Form::Val || F == Form::Double,
                                                             double, std::string>>>>;

template <Form F, typename Apply>
Setting Main(const char* key, const char* fallback, Apply apply) {
  return {Section::Main, key, fallback, F, [apply](H& h, int16_t, const SettingValue& v) {
            apply(h, std::get<ValueOf<F>>(v));
          }};
}

struct NoEffect {
  template <typename T>
  void operator()(H&, int16_t, const T&) const {}
};

// A macro key fills its array at the macro's number; `effect` shows it on the button.
template <Form F, typename T, typename Effect = NoEffect>
Setting Macro(const char* key, const char* fallback, macros::PerMacro<T> MacroState::*array,
              Effect effect = {}) {
  return {Section::Macro, key, fallback, F, [array, effect](H& h, int16_t n, const SettingValue& v) {
            const auto& value = std::get<ValueOf<F>>(v);
            (h.macros.*array)[n] = value;
            effect(h, n, value);
          }};
}

template <Form F, typename T>
Setting Keyer(const char* key, const char* fallback, T WinKeySettings::*field) {
  return {Section::Keyer, key, fallback, F, [field](H& h, int16_t, const SettingValue& v) {
            h.winkey.*field = std::get<ValueOf<F>>(v);
          }};
}

constexpr Form Exact = Form::Exact, Boolean = Form::Boolean, Integer = Form::Integer,
               Long = Form::Long, Val = Form::Val, Val16 = Form::Val16, Double = Form::Double,
               Text = Form::Text;

template <typename T>
std::optional<SettingValue> Held(const std::optional<T>& value) {
  if (!value) return std::nullopt;
  return SettingValue(std::in_place_type<T>, *value);
}

std::optional<SettingValue> Convert(Form form, const std::string& text) {
  switch (form) {
    case Form::Exact:
    case Form::Text:
      return SettingValue(std::in_place_type<std::string>, text);
    case Form::Boolean:
      return Held(vb::CBool(text));
    case Form::Integer:
      return Held(vb::CInt(text));
    case Form::Long:
      return Held(vb::CLng(text));
    case Form::Val:
      return SettingValue(std::in_place_type<double>, vb::Val(text));
    case Form::Val16: {
      const double value = vb::RoundHalfEven(vb::Val(text));
      if (!(value >= INT16_MIN && value <= INT16_MAX)) return std::nullopt;
      return SettingValue(std::in_place_type<int16_t>, static_cast<int16_t>(value));
    }
    case Form::Double:
      return Held(vb::CDbl(text));
  }
  return std::nullopt;
}

std::vector<Setting> BuildTable() {
  return {
      // Main section.
      Main<Exact>("Slow Typing", "ON", [](H& h, Str v) { h.cw.SlowTyping = v == "ON"; }),
      Main<Boolean>("On Top", "1", [](H& h, bool v) { h.window.OnTop = v; }),
      Main<Val16>("Insert Key", "112", [](H& h, int16_t v) { h.window.InsertKeyCode = v; }),
      // The rectangle is read as wide as it is written: a window on a second
      // monitor, or a wide one, lies past 32767 twips.
      Main<Long>("Top", "500", [](H& h, int32_t v) { h.controls.frmVantrel.SetTop(static_cast<float>(v)); }),
      Main<Long>("Left", "500", [](H& h, int32_t v) { h.controls.frmVantrel.SetLeft(static_cast<float>(v)); }),
      Main<Long>("Height", "2500",
                 [](H& h, int32_t v) { h.controls.frmVantrel.SetHeight(static_cast<float>(v)); }),
      Main<Long>("Width", "3500",
                 [](H& h, int32_t v) { h.controls.frmVantrel.SetWidth(static_cast<float>(v)); }),
      Main<Text>("TextBox Font Name", "MS Sans Serif",
                     [](H& h, Str v) { h.controls.CWTextBox.SetFontName(v); }),
      Main<Integer>("TextBox Font Size", "8",
                    [](H& h, int16_t v) { h.controls.CWTextBox.SetFontSize(v); }),
      Main<Boolean>("TextBox Font Bold", "False",
                    [](H& h, bool v) { h.controls.CWTextBox.SetFontBold(v); }),
      Main<Boolean>("TextBox Font Italic", "False",
                    [](H& h, bool v) { h.controls.CWTextBox.SetFontItalic(v); }),
      // The box may not show every colour asked of it; what it shows is what counts.
      Main<Long>("TextBox BackColor", "14941692",
                 [](H& h, int32_t v) {
                   h.controls.CWTextBox.SetBackColor(v);
                   h.window.NormalBackColor = h.controls.CWTextBox.BackColor();
                 }),
      // Anything but a WinKey name, or no key at all, is the software keyer.
      Main<Exact>("Keyer to Use", "Software",
                  [](H& h, Str v) {
                    platform::MainWindowControls& c = h.controls;
                    const bool winkey = v == "WinKey" || v == "WinKey2";
                    (v == "WinKey" ? c.mnuWinKey : v == "WinKey2" ? c.mnuWinKey2 : c.mnuSoftwareKeyer)
                        .SetChecked(true);
                    c.frmVantrel.SetCaption(winkey ? "Vantrel - WinKey" : "Vantrel - Software");
                  }),
      Main<Long>("Text BackColor (looping)", "255",
                 [](H& h, int32_t v) { h.window.LoopingBackColor = v; }),
      Main<Long>("TextBox Forecolor", "16711680",
                 [](H& h, int32_t v) {
                   h.cw.TextForeColor = v;
                   h.controls.CWTextBox.SetSelColor(v);
                 }),
      Main<Long>("PTT Delay", "100", [](H& h, int32_t v) { h.cw.PTTDelay = v; }),
      Main<Long>("Parallel Port Address", "&H378", [](H& h, int32_t v) { h.cw.LptBaseAddress = v; }),
      Main<Exact>("Keying", "VOX",
                  [](H& h, Str v) { (v == "VOX" ? h.controls.mnuVOX : h.controls.mnuMOX).SetChecked(true); }),
      Main<Exact>("PTT", "OFF", [](H& h, Str v) { h.cw.PTTEnabled = v != "OFF"; }),
      // Neither named port means the dedicated serial port.
      Main<Exact>("Port to Use", "Parallel",
                  [](H& h, Str v) {
                    h.cw.UseParallel = v == "Parallel";
                    h.cw.UseSharedSerial = v == "Shared Serial";
                  }),
      Main<Boolean>("Disable Polling", "False", [](H& h, bool v) { h.cw.DisablePolling = v; }),
      Main<Text>("Dedicated Serial Port", "", [](H& h, Str v) { h.cw.DedicatedSerialPort = v; }),
      Main<Long>("Transmitting Text Color", "255", [](H& h, int32_t v) { h.cw.TransmittingColor = v; }),
      Main<Long>("Transmitted Text Color", "0", [](H& h, int32_t v) { h.cw.TransmittedColor = v; }),
      // The three proportions come before the speed: the dot is computed from all four.
      Main<Val>("Word Space", "7", [](H& h, double v) { h.cw.WordSpace = v; }),
      Main<Val>("Letter Space", "3", [](H& h, double v) { h.cw.LetterSpace = v; }),
      Main<Val>("Dash Length", "3", [](H& h, double v) { h.cw.DashLength = v; }),
      Main<Val16>("WPM", "20",
                  [](H& h, int16_t v) {
                    h.cw.WPM = v;
                    h.cw.DotTime = h.cw.DotLength(v);
                    h.cw.SavedWPM = v;
                    h.control.ShowSpeed(v);
                  }),
      Main<Long>("WPM Text Color", "0", [](H& h, int32_t v) { h.controls.sBar.SetForeColor(v); }),
      Main<Boolean>("SHIFT F Keys Visible", "True",
                    [](H& h, bool v) {
                      h.controls.mSFkeys.SetChecked(v);
                      h.controls.ElasticOne2.SetVisible(v);
                    }),
      Main<Boolean>("ALT F Keys Visible", "True",
                    [](H& h, bool v) {
                      h.controls.mAFkeys.SetChecked(v);
                      h.controls.ElasticOne1.SetVisible(v);
                    }),
      Main<Boolean>("F Keys Visible", "True",
                    [](H& h, bool v) {
                      h.controls.mFkeys.SetChecked(v);
                      h.controls.ElasticOne3.SetVisible(v);
                    }),
      // The panel starts hidden; only a ticked menu shows it.
      Main<Boolean>("Callsign Field Visible", "True",
                    [](H& h, bool v) {
                      h.controls.mnuShowCallsign.SetChecked(v);
                      if (v) h.controls.sBar.SetVisible(true);
                    }),
      // The menu command ticks its item itself, so it runs only to turn the field on.
      Main<Exact>("SRX Field Visible", "False",
                  [](H& h, Str v) {
                    if (v == "True" && h.mnuShowSRX_Click) h.mnuShowSRX_Click();
                  }),
      Main<Exact>("SideTone", "OFF", [](H& h, Str v) {
        if (v == "ON") h.cw.SidetoneEnabled = true;
      }),
      Main<Double>("Frequency", "1000", [](H& h, double v) { h.cw.SidetoneFrequency = v; }),
      Main<Exact>("Serial # 0 preference", "0",
                  [](H& h, Str v) {
                    platform::MainWindowControls& c = h.controls;
                    (v == "0" ? c.mnuSend0as0 : v == "T" ? c.mnuSend0asT : c.mnuSend0asO).SetChecked(true);
                  }),

      // One macro's keys.
      Macro<Text>("Macro #", "", &MacroState::MacroTexts),
      Macro<Text>("Macro Caption #", "", &MacroState::MacroCaptions,
                      [](H& h, int16_t n, Str v) { h.controls.btnf[n].SetCaption(v); }),
      Macro<Long>("Macro BackColor #", "14671839", &MacroState::MacroBackColors,
                  [](H& h, int16_t n, int32_t v) { h.controls.btnf[n].SetBackColor(v); }),
      Macro<Long>("Macro MouseOver BackColor #", "14671839", &MacroState::MacroOverBackColors),
      Macro<Long>("Macro ForeColor #", "0", &MacroState::MacroForeColors,
                  [](H& h, int16_t n, int32_t v) { h.controls.btnf[n].SetForeColor(v); }),
      Macro<Long>("Macro MouseOver ForeColor #", "65535", &MacroState::MacroOverForeColors),
      // The mouse-over font name is never read: it restarts as the normal one.
      Macro<Text>("Macro Fontname #", "MS Sans Serif", &MacroState::MacroFontNames,
                      [](H& h, int16_t n, Str v) {
                        h.macros.MacroOverFontNames[n] = v;
                        h.controls.btnf[n].SetFontName(v);
                      }),
      Macro<Integer>("Macro Fontsize #", "8", &MacroState::MacroFontSizes,
                     [](H& h, int16_t n, int16_t v) { h.controls.btnf[n].SetFontSize(v); }),
      Macro<Integer>("Macro MouseOver Fontsize #", "8", &MacroState::MacroOverFontSizes),
      Macro<Boolean>("Macro Fontbold #", "False", &MacroState::MacroFontBolds,
                     [](H& h, int16_t n, bool v) { h.controls.btnf[n].SetFontBold(v); }),
      Macro<Boolean>("Macro MouseOver Fontbold #", "False", &MacroState::MacroOverFontBolds),
      Macro<Boolean>("Macro Fontitalic #", "False", &MacroState::MacroFontItalics,
                     [](H& h, int16_t n, bool v) { h.controls.btnf[n].SetFontItalic(v); }),
      Macro<Boolean>("Macro MouseOver Fontitalic #", "False", &MacroState::MacroOverFontItalics),

      // Keyer section.
      Keyer<Val16>("WinKey Port", "0", &WinKeySettings::WinKeyPort),
      Keyer<Val16>("WinKey Key Mode", "0", &WinKeySettings::WinKeyKeyMode),
      Keyer<Val16>("WinKey Tone", "752", &WinKeySettings::WinKeyTone),
      Keyer<Val16>("WinKey WordSpace", "0", &WinKeySettings::WinKeyWordSpace),
      Keyer<Val16>("WinKey Paddle Operation", "0", &WinKeySettings::WinKeyPaddleOperation),
      Keyer<Val16>("WinKey PTT Lead Delay", "100", &WinKeySettings::WinKeyPTTLeadDelay),
      Keyer<Val16>("WinKey PTT Lag Delay", "250", &WinKeySettings::WinKeyPTTLagDelay),
      Keyer<Val16>("WinKey Speed Max", "30", &WinKeySettings::WinKeySpeedMax),
      Keyer<Val16>("WinKey Speed Min", "15", &WinKeySettings::WinKeySpeedMin),
      Keyer<Val16>("WinKey Speed Farnsworth", "20", &WinKeySettings::WinKeySpeedFarnsworth),
      Keyer<Val16>("WinKey DitDah Ratio", "50", &WinKeySettings::WinKeyDitDahRatio),
      Keyer<Val16>("WinKey DitDah Weight", "50", &WinKeySettings::WinKeyDitDahWeight),
      Keyer<Val16>("WinKey First Extension", "0", &WinKeySettings::WinKeyFirstExtension),
      Keyer<Val16>("WinKey Compensation", "0", &WinKeySettings::WinKeyCompensation),
      Keyer<Val16>("WinKey Paddle Switchpoint", "50", &WinKeySettings::WinKeyPaddleSwitchpoint),
      Keyer<Boolean>("WinKey PTT", "True", &WinKeySettings::WinKeyPTT),
      Keyer<Boolean>("WinKey Pin 3", "True", &WinKeySettings::WinKeyPin3),
      Keyer<Boolean>("WinKey AutoSpace", "True", &WinKeySettings::WinKeyAutoSpace),
      Keyer<Boolean>("WinKey Contest WordSpace", "False", &WinKeySettings::WinKeyContestWordSpace),
      Keyer<Boolean>("WinKey Switch Paddles", "False", &WinKeySettings::WinKeySwitchPaddles),
      Keyer<Boolean>("WinKey Analog Speed", "False", &WinKeySettings::WinKeyAnalogSpeed),
      Keyer<Val16>("WinKey Speed", "15", &WinKeySettings::WinKeySpeed),
      Keyer<Boolean>("WinKey SideTone", "False", &WinKeySettings::WinKeySideTone),
      Keyer<Boolean>("WinKey Disable Paddle Memory", "False", &WinKeySettings::WinKeyDisablePaddleMemory),
      Keyer<Boolean>("WinKey Paddle Insert Cancels Macro", "True",
                     &WinKeySettings::WinKeyPaddleInsertCancelsMacro),
      Keyer<Boolean>("WinKey Radio 1 Pin 3", "False", &WinKeySettings::WinKeyRadio1Pin3),
      Keyer<Boolean>("WinKey Radio 2 Pin 3", "False", &WinKeySettings::WinKeyRadio2Pin3),
      Keyer<Boolean>("WinKey Hold Radio Polling", "False", &WinKeySettings::WinKeyHoldRadioPolling),
      Keyer<Boolean>("Paddle Only SideTone", "False", &WinKeySettings::PaddleOnlySideTone),
  };
}

// False when the text does not convert, which ends the load.
bool LoadOne(SettingsStore& store, H& holders, const Setting& setting, const std::string& key,
             int16_t macro) {
  const std::optional<SettingValue> value = Convert(setting.form, store.ReadSetting(key, setting.fallback));
  if (!value) return false;
  setting.apply(holders, macro, *value);
  return true;
}

}  // namespace

const std::vector<Setting>& SettingsTable() {
  static const std::vector<Setting> table = BuildTable();
  return table;
}

void LoadSettings(SettingsStore& store, SettingsHolders& holders) {
  const std::vector<Setting>& table = SettingsTable();
  auto loadSection = [&](Section section, int16_t macro) {
    for (const Setting& setting : table) {
      if (setting.section != section) continue;
      std::string key = setting.key;
      if (macro != 0) key += std::to_string(macro);
      if (!LoadOne(store, holders, setting, key, macro)) return false;
    }
    return true;
  };

  store.SettingsSection = kMainSectionRead;
  if (!loadSection(Section::Main, 0)) return;
  for (int16_t n = 1; n <= macros::kMacroCount; ++n) {
    if (!loadSection(Section::Macro, n)) return;
    holders.pump.DoEvents();
  }
  store.SettingsSection = kKeyerSection;
  loadSection(Section::Keyer, 0);
}

const char* SectionOf(std::string_view key) {
  if (vb::SameText(key, "Address") || vb::SameText(key, "Port")) return kNetworkSection;
  for (const Setting& setting : SettingsTable()) {
    if (setting.section == Section::Keyer && vb::SameText(setting.key, key)) return kKeyerSection;
  }
  return kMainSection;
}

}  // namespace vantrel::app
