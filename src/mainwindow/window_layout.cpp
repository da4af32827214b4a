// The main window's layout, its show and hide entries, and the entries that
// choose colours, fonts and preferences. Every choice is written at once.
#include <string>

#include "mainwindow/frm_vantrel.h"
#include "vb/vb.h"

namespace vantrel::mainwindow {
namespace {

constexpr float kBareHeight = 1020;  // menu, tool bar and text box, no button rows
constexpr float kOverlap = 20;       // each tool bar field covers its neighbour's border
constexpr float kIndicatorInset = 40;
constexpr float kSrxFieldWidth = 600;

const char* TrueFalse(bool value) { return value ? "True" : "False"; }

}  // namespace

void FrmVantrel::Form_Resize() {
  platform::Window& window = c_.frmVantrel;
  if (window.Minimized()) return;

  float minimum = kBareHeight;
  if (c_.mFkeys.Checked()) minimum += c_.ElasticOne3.Height();
  if (c_.mSFkeys.Checked()) minimum += c_.ElasticOne2.Height();
  if (c_.mAFkeys.Checked()) minimum += c_.ElasticOne1.Height();
  if (window.Height() < minimum) window.SetHeight(minimum);

  // The right-hand group keeps to the right edge; nothing stops it at the left.
  c_.NameField.SetLeft(c_.sBar.Width() - c_.NameField.Width() + kOverlap);
  c_.SRXField.SetLeft(c_.NameField.Left() - c_.SRXField.Width() + kOverlap);
  c_.CallsignField.SetLeft(c_.SRXField.Left() - c_.CallsignField.Width() + kOverlap);
  c_.cmbPrevious.SetLeft(c_.CallsignField.Left() - c_.cmbPrevious.Width() + kOverlap);

  // Square indicators from the heights they had: they settle on the next resize.
  for (platform::PictureBox* box : {&c_.PTTBox, &c_.KeyBox}) {
    box->SetWidth(box->Height() - kIndicatorInset);
    box->SetTop(c_.cmbPrevious.Top() + kIndicatorInset);
    box->SetHeight(c_.cmbPrevious.Height());
  }
  c_.PTTBox.SetLeft(c_.cmbPrevious.Left() - c_.PTTBox.Width());
  c_.KeyBox.SetLeft(c_.PTTBox.Left() - c_.KeyBox.Width());
}

void FrmVantrel::ToggleShown(platform::MenuItem& entry, platform::Control& panel,
                             const char* key) {
  const bool show = !entry.Checked();
  entry.SetChecked(show);
  panel.SetVisible(show);
  store_.WriteSetting(settings::kMainSection, key, TrueFalse(show));
  // A nudge of the height makes the panels dock again and the resize run.
  platform::Window& window = c_.frmVantrel;
  window.SetHeight(window.Height() + kOverlap);
  window.SetHeight(window.Height() - kOverlap);
}

void FrmVantrel::mFkeys_Click() { ToggleShown(c_.mFkeys, c_.ElasticOne3, "F Keys Visible"); }
void FrmVantrel::mSFkeys_Click() {
  ToggleShown(c_.mSFkeys, c_.ElasticOne2, "SHIFT F Keys Visible");
}
void FrmVantrel::mAFkeys_Click() { ToggleShown(c_.mAFkeys, c_.ElasticOne1, "ALT F Keys Visible"); }
void FrmVantrel::mnuShowCallsign_Click() {
  ToggleShown(c_.mnuShowCallsign, c_.sBar, "Callsign Field Visible");
}

// The field has no visible flag: a width of 0 hides it.
void FrmVantrel::mnuShowSRX_Click() {
  const bool show = !c_.mnuShowSRX.Checked();
  c_.mnuShowSRX.SetChecked(show);
  c_.SRXField.SetWidth(show ? kSrxFieldWidth : 0);
  store_.WriteSetting(settings::kMainSection, "SRX Field Visible", TrueFalse(show));
  Form_Resize();
}

void FrmVantrel::mnuOnTop_Click() {
  const bool onTop = !c_.mnuOnTop.Checked();
  c_.mnuOnTop.SetChecked(onTop);
  store_.WriteSetting(settings::kMainSection, "On Top", onTop ? "1" : "0");
  c_.frmVantrel.SetTopmost(onTop);
}

void FrmVantrel::TickSerialZero(platform::MenuItem& entry, const char* value) {
  for (platform::MenuItem* item : {&c_.mnuSend0as0, &c_.mnuSend0asT, &c_.mnuSend0asO}) {
    item->SetChecked(item == &entry);
  }
  store_.WriteSetting(settings::kMainSection, "Serial # 0 preference", value);
}

void FrmVantrel::mnuSend0as0_Click() { TickSerialZero(c_.mnuSend0as0, "0"); }
void FrmVantrel::mnuSend0asT_Click() { TickSerialZero(c_.mnuSend0asT, "T"); }
void FrmVantrel::mnuSend0asO_Click() { TickSerialZero(c_.mnuSend0asO, "O"); }

// Only the dedicated serial port can be opened and closed from the menu.
void FrmVantrel::mnuKeying_Click() {
  if (cw_.UseParallel || cw_.UseSharedSerial) {
    c_.mnuDedicatedSerialPort.SetEnabled(false);
    return;
  }
  c_.mnuDedicatedSerialPort.SetEnabled(true);
  c_.mnuDedicatedSerialPort.SetChecked(p_.cwControl.PortOpen());
}

platform::Colour FrmVantrel::ChooseColor(platform::Colour start) {
  platform::Colour colour = start;
  if (!c_.CommonDialog1.ShowColor(colour)) return start;
  return colour;
}

// A cancel writes the old value again, as a confirmed choice would.
void FrmVantrel::mnuWPMColor_Click() {
  c_.sBar.SetForeColor(ChooseColor(c_.sBar.ForeColor()));
  store_.WriteSetting(settings::kMainSection, "WPM Text Color", std::to_string(c_.sBar.ForeColor()));
}

void FrmVantrel::mnutxtextcolor_Click() {
  cw_.TransmittedColor = ChooseColor(cw_.TransmittedColor);
  store_.WriteSetting(settings::kMainSection, "Transmitted Text Color",
                      std::to_string(cw_.TransmittedColor));
}

void FrmVantrel::mnutxingtextcolor_Click() {
  cw_.TransmittingColor = ChooseColor(cw_.TransmittingColor);
  store_.WriteSetting(settings::kMainSection, "Transmitting Text Color",
                      std::to_string(cw_.TransmittingColor));
}

void FrmVantrel::mnuLoopingBackColor_Click() {
  s_.window.LoopingBackColor = ChooseColor(s_.window.LoopingBackColor);
  store_.WriteSetting(settings::kMainSection, "Text BackColor (looping)",
                      std::to_string(s_.window.LoopingBackColor));
}

// Starts from what the box shows, which is the looping colour while a loop waits.
void FrmVantrel::mnutextbackcolor_Click() {
  platform::TextBox& box = c_.CWTextBox;
  box.SetBackColor(ChooseColor(box.BackColor()));
  store_.WriteSetting(settings::kMainSection, "TextBox Backcolor", std::to_string(box.BackColor()));
  s_.window.NormalBackColor = box.BackColor();
}

void FrmVantrel::ChooseTextFont() {
  platform::TextBox& box = c_.CWTextBox;
  platform::FontChoice font{box.FontName(), box.FontSize(), box.FontBold(), box.FontItalic(),
                            cw_.TextForeColor};
  if (!c_.CommonDialog1.ShowFont(font)) return;
  cw_.TextForeColor = font.colour;
  box.SetFontName(font.name);
  box.SetFontSize(font.size);
  box.SetFontBold(font.bold);
  box.SetFontItalic(font.italic);
  store_.WriteSetting(settings::kMainSection, "TextBox Font Name", font.name);
  store_.WriteSetting(settings::kMainSection, "TextBox Forecolor", std::to_string(font.colour));
  store_.WriteSetting(settings::kMainSection, "TextBox Font Size", vb::CStr(font.size));
  store_.WriteSetting(settings::kMainSection, "TextBox Font Bold", TrueFalse(font.bold));
  store_.WriteSetting(settings::kMainSection, "TextBox Font Italic", TrueFalse(font.italic));
}

void FrmVantrel::mnutextfont_Click() {
  ChooseTextFont();
  c_.CWTextBox.SetSelColor(cw_.TextForeColor);
}

}  // namespace vantrel::mainwindow
