#include "macros/frm_cw_macro_setup.h"

#include <string>
#include <utility>

#include "settings/settings_store.h"
#include "vb/vb.h"

namespace vantrel::macros {
namespace {

constexpr platform::Colour kResetBackColor = 14671839;  // &HDFDFDF
constexpr platform::Colour kResetForeColor = 0;
constexpr const char* kResetFontName = "MS Sans Serif";
constexpr int16_t kResetFontSize = 8;
constexpr int16_t kLastFKey = 12;
constexpr int16_t kLastAltFKey = 24;

const char* TrueFalse(bool value) { return value ? "True" : "False"; }

std::string KeyName(int16_t index) {
  if (index > kLastAltFKey) return "CTRL F" + std::to_string(index - kLastAltFKey);
  if (index <= kLastFKey) return "F" + std::to_string(index);
  return "ALT F" + std::to_string(index - kLastFKey);
}

int16_t WholePoints(float size) { return static_cast<int16_t>(vb::RoundHalfEven(size)); }

template <typename T>
void CopyEntry(PerMacro<T>& array, int16_t dest, int16_t source) {
  array.at(static_cast<size_t>(dest)) = array.at(static_cast<size_t>(source));
}

}  // namespace

std::string StoredMacroForm(const std::string& text) {
  std::string stored;
  stored.reserve(text.size());
  for (const char character : text) {
    if (character == '\n') continue;
    stored += character == '\r' ? '~' : character;
  }
  return stored;
}

// A code outside 0 to 255 names no character: the caption stays as typed
// rather than be lost.
std::string CaptionAtOk(const std::string& typed) {
  static const std::string kChr = "CHR$(";
  const auto at = vb::UCase(typed).find(kChr);
  if (at == std::string::npos) return typed;
  const auto number = at + kChr.size();
  const auto close = typed.find(')', number);
  if (close == std::string::npos) return typed;
  const double code = vb::RoundHalfEven(vb::Val(typed.substr(number, close - number)));
  if (!(code >= 0 && code <= 255)) return typed;
  return std::string(1, static_cast<char>(static_cast<unsigned char>(code)));
}

FrmCWMacroSetup::FrmCWMacroSetup(platform::MacroSetupControls& controls, MacroSetupNeighbours n,
                                 std::function<void()> unload)
    : c_(controls), n_(n), unload_(std::move(unload)) {
  c_.CaptionText.OnChange([this] { CaptionText_Change(); });
  c_.MacroText.OnKeyPress([this](int16_t& keyAscii) { MacroText_KeyPress(keyAscii); });
  c_.Hbutton1.OnMouseEnter([this] { Hbutton1_MouseEnter(); });
  c_.Hbutton1.OnMouseLeave([this] { Hbutton1_MouseLeave(); });
  const std::pair<platform::DialogButton*, void (FrmCWMacroSetup::*)()> clicks[] = {
      {&c_.BackColorButton, &FrmCWMacroSetup::BackColorButton_Click},
      {&c_.Hbutton3, &FrmCWMacroSetup::Hbutton3_Click},
      {&c_.Hbutton2, &FrmCWMacroSetup::Hbutton2_Click},
      {&c_.Hbutton4, &FrmCWMacroSetup::Hbutton4_Click},
      {&c_.ARButton1, &FrmCWMacroSetup::ARButton1_Click},
      {&c_.Hbutton7, &FrmCWMacroSetup::Hbutton7_Click},
      {&c_.Hbutton6, &FrmCWMacroSetup::Hbutton6_Click},
      {&c_.Hbutton5, &FrmCWMacroSetup::Hbutton5_Click},
  };
  for (const auto& [button, handler] : clicks) {
    button->OnClick([this, handler = handler] { (this->*handler)(); });
  }
}

void FrmCWMacroSetup::Form_Load(int16_t tag) {
  platform::Window& form = c_.frmCWMacroSetup;
  form.SetLeft((form.ScreenWidth() - form.Width()) / 2);
  form.SetTop((form.ScreenHeight() - form.Height()) / 2);
  MacroIndex = tag;
  form.SetCaption("Macro Setup for " + KeyName(MacroIndex));
  const auto i = static_cast<size_t>(MacroIndex);
  c_.MacroText.SetText(n_.macros.MacroTexts.at(i));
  c_.CaptionText.SetText(n_.macros.MacroCaptions.at(i));
  LoadUnloadButton(c_.Hbutton1, 0, MacroIndex);
  form.SetTopmost(true);
}

void FrmCWMacroSetup::LoadUnloadButton(platform::CommandButton& cont, int16_t dest,
                                       int16_t source) {
  MacroState& m = n_.macros;
  CopyEntry(m.MacroBackColors, dest, source);
  CopyEntry(m.MacroOverBackColors, dest, source);
  CopyEntry(m.MacroForeColors, dest, source);
  CopyEntry(m.MacroOverForeColors, dest, source);
  CopyEntry(m.MacroFontNames, dest, source);
  CopyEntry(m.MacroOverFontNames, dest, source);
  CopyEntry(m.MacroFontSizes, dest, source);
  CopyEntry(m.MacroOverFontSizes, dest, source);
  CopyEntry(m.MacroFontBolds, dest, source);
  CopyEntry(m.MacroOverFontBolds, dest, source);
  CopyEntry(m.MacroFontItalics, dest, source);
  CopyEntry(m.MacroOverFontItalics, dest, source);
  ShowLook(cont, m, dest, false);
  cont.SetCaption(c_.CaptionText.Text());
}

void FrmCWMacroSetup::CaptionText_Change() { c_.Hbutton1.SetCaption(c_.CaptionText.Text()); }

// "~" is what a line break becomes in the file; typed, it could not be told apart.
void FrmCWMacroSetup::MacroText_KeyPress(int16_t& KeyAscii) {
  if (KeyAscii == '~') KeyAscii = 0;
}

void FrmCWMacroSetup::Hbutton1_MouseEnter() { ShowLook(c_.Hbutton1, n_.macros, 0, true); }
void FrmCWMacroSetup::Hbutton1_MouseLeave() { ShowLook(c_.Hbutton1, n_.macros, 0, false); }

bool FrmCWMacroSetup::ChooseColor(platform::Colour& colour) {
  return n_.CommonDialog1.ShowColor(colour);
}

void FrmCWMacroSetup::BackColorButton_Click() {
  platform::Colour& colour = n_.macros.MacroBackColors[0];
  if (ChooseColor(colour)) c_.Hbutton1.SetBackColor(colour);
}

void FrmCWMacroSetup::Hbutton3_Click() { ChooseColor(n_.macros.MacroOverBackColors[0]); }

void FrmCWMacroSetup::Hbutton2_Click() {
  MacroState& m = n_.macros;
  platform::FontChoice font{m.MacroFontNames[0], static_cast<float>(m.MacroFontSizes[0]),
                            m.MacroFontBolds[0], m.MacroFontItalics[0], m.MacroForeColors[0]};
  if (!n_.CommonDialog1.ShowFont(font)) return;
  m.MacroFontNames[0] = font.name;
  m.MacroFontSizes[0] = WholePoints(font.size);
  m.MacroFontBolds[0] = font.bold;
  m.MacroFontItalics[0] = font.italic;
  m.MacroForeColors[0] = font.colour;
  platform::CommandButton& preview = c_.Hbutton1;
  preview.SetFontName(m.MacroFontNames[0]);
  preview.SetFontSize(m.MacroFontSizes[0]);
  preview.SetFontBold(m.MacroFontBolds[0]);
  preview.SetFontItalic(m.MacroFontItalics[0]);
  preview.SetForeColor(m.MacroForeColors[0]);
}

// The look under the mouse shows on the preview only when the mouse is there.
void FrmCWMacroSetup::Hbutton4_Click() {
  MacroState& m = n_.macros;
  platform::FontChoice font{m.MacroOverFontNames[0], static_cast<float>(m.MacroOverFontSizes[0]),
                            m.MacroOverFontBolds[0], m.MacroOverFontItalics[0],
                            m.MacroOverForeColors[0]};
  if (!n_.CommonDialog1.ShowFont(font)) return;
  m.MacroOverFontNames[0] = font.name;
  m.MacroOverFontSizes[0] = WholePoints(font.size);
  m.MacroOverFontBolds[0] = font.bold;
  m.MacroOverFontItalics[0] = font.italic;
  m.MacroOverForeColors[0] = font.colour;
}

void FrmCWMacroSetup::ARButton1_Click() {
  n_.macros.MacroOverBackColors[0] = kResetBackColor;
  n_.macros.MacroBackColors[0] = kResetBackColor;
  c_.Hbutton1.SetBackColor(kResetBackColor);
}

// Resets the mouse-over text colour to black, not to the yellow a macro
// never stored starts with.
void FrmCWMacroSetup::Hbutton7_Click() {
  MacroState& m = n_.macros;
  platform::CommandButton& preview = c_.Hbutton1;
  c_.MacroText.SetText("");
  c_.CaptionText.SetText("");
  m.MacroOverForeColors[0] = kResetForeColor;
  m.MacroForeColors[0] = kResetForeColor;
  preview.SetForeColor(kResetForeColor);
  ARButton1_Click();
  m.MacroOverFontNames[0] = kResetFontName;
  m.MacroFontNames[0] = kResetFontName;
  preview.SetFontName(kResetFontName);
  m.MacroOverFontSizes[0] = kResetFontSize;
  m.MacroFontSizes[0] = kResetFontSize;
  preview.SetFontSize(kResetFontSize);
  m.MacroOverFontBolds[0] = false;
  m.MacroFontBolds[0] = false;
  preview.SetFontBold(false);
  m.MacroOverFontItalics[0] = false;
  m.MacroFontItalics[0] = false;
  preview.SetFontItalic(false);
}

void FrmCWMacroSetup::Hbutton6_Click() { unload_(); }

void FrmCWMacroSetup::Hbutton5_Click() {
  stored_ = StoredMacroForm(c_.MacroText.Text());
  if (stored_.size() > kMaxMacroLength) {
    c_.frmCWMacroSetup.MsgBox(
        "Sorry, this Macro is awesome.  However it is  " + std::to_string(stored_.size()) +
            " characters long.  The maximum length is 3000 characters.  You don't want to bore "
            "the other station to death (do you?).",
        platform::kMsgBoxOkOnly, "Too verbose");
    return;
  }
  const std::string caption = CaptionAtOk(c_.CaptionText.Text());
  if (caption != c_.CaptionText.Text()) c_.CaptionText.SetText(caption);
  if (c_.CaptionText.Text().empty()) c_.CaptionText.SetText(" ");

  MacroState& m = n_.macros;
  const auto i = static_cast<size_t>(MacroIndex);
  m.MacroCaptions.at(i) = c_.CaptionText.Text();
  m.MacroTexts.at(i) = c_.MacroText.Text();
  LoadUnloadButton(n_.btnf[MacroIndex], MacroIndex, 0);

  // A change the file did not take keeps the dialog, so OK can be pressed
  // again; the macro is written at once, even while a transmission holds
  // other writes, so that the operator learns of a failure here.
  if (!WriteMacro()) return;
  if (stored_.size() > settings::kLongestValueRead) {
    c_.frmCWMacroSetup.MsgBox(
        "This macro is " + std::to_string(stored_.size()) +
            " characters long. It is stored, but when Vantrel starts again only its first " +
            std::to_string(settings::kLongestValueRead) + " characters will come back.",
        platform::kMsgBoxExclamation, "Macro too long to read back");
  }
  unload_();
}

bool FrmCWMacroSetup::WriteMacro() {
  const MacroState& m = n_.macros;
  const std::pair<const char*, std::string> keys[] = {
      {"Macro #", stored_},
      {"Macro Caption #", c_.CaptionText.Text()},
      {"Macro BackColor #", std::to_string(m.MacroBackColors[0])},
      {"Macro MouseOver BackColor #", std::to_string(m.MacroOverBackColors[0])},
      {"Macro ForeColor #", std::to_string(m.MacroForeColors[0])},
      {"Macro MouseOver ForeColor #", std::to_string(m.MacroOverForeColors[0])},
      {"Macro Fontname #", m.MacroFontNames[0]},
      {"Macro MouseOver Fontname #", m.MacroOverFontNames[0]},
      {"Macro Fontsize #", std::to_string(m.MacroFontSizes[0])},
      {"Macro MouseOver Fontsize #", std::to_string(m.MacroOverFontSizes[0])},
      {"Macro Fontbold #", TrueFalse(m.MacroFontBolds[0])},
      {"Macro MouseOver Fontbold #", TrueFalse(m.MacroOverFontBolds[0])},
      {"Macro Fontitalic #", TrueFalse(m.MacroFontItalics[0])},
      {"Macro MouseOver Fontitalic #", TrueFalse(m.MacroOverFontItalics[0])},
  };
  for (const auto& [key, value] : keys) {
    if (n_.settings.WriteSettingNow(settings::kMainSection, key + std::to_string(MacroIndex), value)) {
      continue;
    }
    c_.frmCWMacroSetup.MsgBox(
        "This macro could not be saved in " + n_.settingsFile +
            " (is the disk full, or the folder read-only?). It is in use until Vantrel closes, "
            "but would be lost at the next start. Make room and press OK again, or Cancel.",
        platform::kMsgBoxExclamation, "Macro not saved");
    return false;
  }
  return true;
}

void MacroSetupEditor::ShowMacroSetup(int16_t index) {
  windows_.Unload();
  auto form = std::make_shared<FrmCWMacroSetup>(windows_.Load(), n_, [this] { windows_.Unload(); });
  windows_.Keep(form);
  form_ = form;
  form->Form_Load(index);
  windows_.Show();
}

}  // namespace vantrel::macros
