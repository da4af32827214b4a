#include "platform/qt/frm_winkey_config_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetricsF>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <span>
#include <string>

#include "platform/qt/qt_geometry.h"

namespace vantrel::platform::qt {
namespace {

struct ListDesign {
  const char* name;
  const char* caption;
};

struct BoxDesign {
  const char* name;
  const char* caption;
  float top;
};

struct SliderDesign {
  const char* name;
  const char* caption;
  int min, max;
  const char* label;
};

// What differs between the two chips' forms.
struct FormDesign {
  const char* caption;
  float height;
  std::span<const BoxDesign> boxes;
  float wordSpaceTop, paddleTop, buttonsTop;
};

constexpr float kWidth = 6405;
constexpr float kLeft = 120;
constexpr float kListWidth = 1215;
constexpr float kListHeight = 315;
constexpr float kCaptionLeft = 1440;
constexpr float kRowHeight = 255;
// Below the last slider a check box may take the whole width.
constexpr float kSlidersBottom = 120 + 10 * 360 + 375;
constexpr float kSliderLeft = 3720, kSliderWidth = 1815, kSliderHeight = 375, kSliderPitch = 360;
constexpr float kSliderCaptionRight = 3615;
constexpr float kValueLeft = 5640, kValueWidth = 735;
constexpr float kButtonWidth = 1095, kButtonHeight = 375;

constexpr std::array<ListDesign, 3> kTopLists{{
    {"cmbPort", "Serial port"}, {"cmbKeyMode", "Keyer mode"}, {"cmbTone", "Tone freq."}}};

constexpr std::array<BoxDesign, 13> kWinKeyBoxes{{
    {"ckWinKeyPTT", "PTT enabled", 1320},
    {"ckWinKeySideTone", "Sidetone enabled", 1560},
    {"ckWinKeyPin3", "Key on pin 3", 1920},
    {"ckWinKeyPin5", "Key on pin 5", 2160},
    {"ckWinKeySwitchPaddles", "Switch Paddles", 2520},
    {"ckDisablePaddleMemory", "Disable paddle memory", 2760},
    {"ckPaddleInsertCancelsMacro", "Paddle insert cancels Macro", 3000},
    {"ckWinKeyAnalogSpeed", "Analog speed control", 3360},
    {"ckWinKeyContestWordSpace", "Contest wordspace", 3600},
    {"ckWinKeyAutoSpace", "Auto space on", 3840},
    {"ckRadio1Pin3", "Key radio 1 from pin 3, radio 2 from pin 5", 4200},
    {"ckRadio1Pin5", "Key radio 1 from pin 5, radio 2 from pin 3", 4440},
    {"ckRadioPolling", "Disable Radio polling when keying", 4800},
}};

constexpr std::array<BoxDesign, 10> kWinKey2Boxes{{
    {"ckWinKeyPTT", "PTT enabled", 1320},
    {"ckWinKeySideTone", "Sidetone enabled", 1570},
    {"ckPaddleOnlySideTone", "Paddle only sidetone", 1800},
    {"ckWinKeySwitchPaddles", "Switch Paddles", 2040},
    {"ckDisablePaddleMemory", "Disable paddle memory", 2280},
    {"ckPaddleInsertCancelsMacro", "Paddle insert cancels Macro", 2520},
    {"ckWinKeyAnalogSpeed", "Analog speed control", 2760},
    {"ckWinKeyContestWordSpace", "Contest wordspace", 3000},
    {"ckWinKeyAutoSpace", "Auto space on", 3240},
    {"ckRadioPolling", "Disable Radio polling when keying", 4080},
}};

constexpr FormDesign kWinKeyForm{"WinKey config ...", 6525, kWinKeyBoxes, 5160, 5520, 6000};
constexpr FormDesign kWinKey2Form{"WinKey2 config ...", 5640, kWinKey2Boxes, 4320, 4680, 5160};

constexpr std::array<SliderDesign, 11> kSliders{{
    {"Slider3", "PTT lead delay", 0, 250, "Label16"},
    {"Slider4", "PTT tail delay", 0, 250, "Label17"},
    {"Slider1", "Speed pot max", 5, 99, "Label18"},
    {"Slider5", "Speed pot min", 5, 99, "Label19"},
    {"Slider11", "Speed", 5, 99, "Label26"},
    {"Slider2", "Farnsworth speed", 5, 99, "Label20"},
    {"Slider6", "Dit/Dah ratio", 33, 66, "Label21"},
    {"Slider7", "Dit/Dah weight", 10, 90, "Label22"},
    {"Slider8", "First extension", 0, 250, "Label23"},
    {"Slider9", "Keying compensation", 0, 250, "Label24"},
    {"Slider10", "Paddle switchpoint", 10, 90, "Label25"},
}};

// A caption's own width in twips, so that a short one covers nothing beside it.
float TextWidth(const QWidget& widget) {
  return static_cast<float>(widget.sizeHint().width() * TwipsPerPixelX(widget));
}

void Caption(QWidget* parent, const char* text, float left, float top, float scale) {
  auto* label = new QLabel(text, parent);
  Place(*label, left * scale, top * scale, TextWidth(*label), kListHeight * scale);
}

// How much wider the desktop's font is than the narrow 8 point face the
// design was measured in: every place and size grows by it, so that the
// dialog reads at the size the operator chose and nothing runs into its
// neighbour.
float DesignScale(const QFont& desktop) {
  QFont design = desktop;
  design.setPointSizeF(8);
  design.setStretch(QFont::Condensed);
  const qreal ratio =
      QFontMetricsF(desktop).averageCharWidth() / QFontMetricsF(design).averageCharWidth();
  return static_cast<float>(std::max<qreal>(1, ratio));
}

}  // namespace

FrmWinKeyConfigWindow::FrmWinKeyConfigWindow(QWidget& owner, bool winKey2)
    : DialogWidget(&owner, Qt::Dialog), winKey2_(winKey2) {
  const FormDesign& design = winKey2 ? kWinKey2Form : kWinKeyForm;
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  setWindowTitle(design.caption);
  const float f = DesignScale(font());
  setFixedSize(static_cast<int>(std::lround(kWidth * f / TwipsPerPixelX(*this))),
               static_cast<int>(std::lround(design.height * f / TwipsPerPixelY(*this))));

  std::map<std::string, QtComboBox*> lists;
  QtEditComboBox* tone = nullptr;
  const auto list = [&](const ListDesign& each, float top) {
    auto* combo = new QComboBox(this);
    Place(*combo, kLeft * f, top * f, kListWidth * f, kListHeight * f);
    if (std::string(each.name) == "cmbTone") {
      combo->setEditable(true);
      combo->setInsertPolicy(QComboBox::NoInsert);
      tone = &Make<QtEditComboBox>(combo, each.name);
    } else {
      lists[each.name] = &Make<QtComboBox>(combo, each.name);
    }
    Caption(this, each.caption, kCaptionLeft, top, f);
  };
  for (size_t i = 0; i < kTopLists.size(); ++i) list(kTopLists[i], 120 + 360 * static_cast<float>(i));
  list({"cmbWordSpace", "Wordspace before ending paddle operation"}, design.wordSpaceTop);
  list({"cmbPaddle", "Ultimatic paddle operation"}, design.paddleTop);

  std::map<std::string, QtCheckBox*> boxes;
  for (const BoxDesign& each : design.boxes) {
    auto* box = new QCheckBox(each.caption, this);
    const float room = (each.top >= kSlidersBottom ? kWidth - 2 * kLeft : kSliderLeft - kLeft) * f;
    Place(*box, kLeft * f, each.top * f, std::min(room, TextWidth(*box)), kRowHeight * f);
    boxes[each.name] = &Make<QtCheckBox>(box, each.name);
  }

  std::map<std::string, QtSlider*> sliders;
  std::map<std::string, QtLabel*> values;
  for (size_t i = 0; i < kSliders.size(); ++i) {
    const SliderDesign& each = kSliders[i];
    const float top = 120 + kSliderPitch * static_cast<float>(i);
    auto* caption = new QLabel(each.caption, this);
    caption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const float width = TextWidth(*caption);
    Place(*caption, kSliderCaptionRight * f - width, top * f, width, kSliderHeight * f);
    auto* slider = new QSlider(Qt::Horizontal, this);
    slider->setRange(each.min, each.max);
    slider->setPageStep(10);
    Place(*slider, kSliderLeft * f, top * f, kSliderWidth * f, kSliderHeight * f);
    sliders[each.name] = &Make<QtSlider>(slider, each.name);
    auto* value = new QLabel(this);
    Place(*value, kValueLeft * f, top * f, kValueWidth * f, kSliderHeight * f);
    values[each.label] = &Make<QtLabel>(value, each.label);
  }

  auto* apply = new QPushButton("Apply", this);
  auto* cancel = new QPushButton("Cancel", this);
  for (auto [button, left] : {std::pair{apply, kLeft}, std::pair{cancel, 1320.0F}}) {
    button->setAutoDefault(false);
    Place(*button, left * f, design.buttonsTop * f, kButtonWidth * f, kButtonHeight * f);
  }
  QtButton& applyButton = Make<QtButton>(apply, "ARButton1");
  QtButton& cancelButton = Make<QtButton>(cancel, "btnCancel");

  const auto optional = [&boxes](const char* name) -> CheckBox* {
    const auto found = boxes.find(name);
    return found == boxes.end() ? nullptr : found->second;
  };
  controls_.emplace(WinKeyConfigControls{.form = window_,
                                         .cmbPort = *lists.at("cmbPort"),
                                         .cmbKeyMode = *lists.at("cmbKeyMode"),
                                         .cmbTone = *tone,
                                         .cmbWordSpace = *lists.at("cmbWordSpace"),
                                         .cmbPaddle = *lists.at("cmbPaddle"),
                                         .Slider3 = *sliders.at("Slider3"),
                                         .Slider4 = *sliders.at("Slider4"),
                                         .Slider1 = *sliders.at("Slider1"),
                                         .Slider5 = *sliders.at("Slider5"),
                                         .Slider11 = *sliders.at("Slider11"),
                                         .Slider2 = *sliders.at("Slider2"),
                                         .Slider6 = *sliders.at("Slider6"),
                                         .Slider7 = *sliders.at("Slider7"),
                                         .Slider8 = *sliders.at("Slider8"),
                                         .Slider9 = *sliders.at("Slider9"),
                                         .Slider10 = *sliders.at("Slider10"),
                                         .Label16 = *values.at("Label16"),
                                         .Label17 = *values.at("Label17"),
                                         .Label18 = *values.at("Label18"),
                                         .Label19 = *values.at("Label19"),
                                         .Label26 = *values.at("Label26"),
                                         .Label20 = *values.at("Label20"),
                                         .Label21 = *values.at("Label21"),
                                         .Label22 = *values.at("Label22"),
                                         .Label23 = *values.at("Label23"),
                                         .Label24 = *values.at("Label24"),
                                         .Label25 = *values.at("Label25"),
                                         .ckWinKeyPTT = *boxes.at("ckWinKeyPTT"),
                                         .ckWinKeySideTone = *boxes.at("ckWinKeySideTone"),
                                         .ckWinKeySwitchPaddles = *boxes.at("ckWinKeySwitchPaddles"),
                                         .ckDisablePaddleMemory = *boxes.at("ckDisablePaddleMemory"),
                                         .ckPaddleInsertCancelsMacro = *boxes.at("ckPaddleInsertCancelsMacro"),
                                         .ckWinKeyAnalogSpeed = *boxes.at("ckWinKeyAnalogSpeed"),
                                         .ckWinKeyContestWordSpace = *boxes.at("ckWinKeyContestWordSpace"),
                                         .ckWinKeyAutoSpace = *boxes.at("ckWinKeyAutoSpace"),
                                         .ckRadioPolling = *boxes.at("ckRadioPolling"),
                                         .ckWinKeyPin3 = optional("ckWinKeyPin3"),
                                         .ckWinKeyPin5 = optional("ckWinKeyPin5"),
                                         .ckRadio1Pin3 = optional("ckRadio1Pin3"),
                                         .ckRadio1Pin5 = optional("ckRadio1Pin5"),
                                         .ckPaddleOnlySideTone = optional("ckPaddleOnlySideTone"),
                                         .ARButton1 = applyButton,
                                         .btnCancel = cancelButton});
}

}  // namespace vantrel::platform::qt
