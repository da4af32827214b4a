#include "platform/qt/frm_port_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace vantrel::platform::qt {
namespace {

QSlider* MakeSlider(QWidget* parent, int min, int max, int tick) {
  auto* slider = new QSlider(Qt::Horizontal, parent);
  slider->setRange(min, max);
  slider->setSingleStep(1);
  slider->setPageStep(tick);
  slider->setTickInterval(tick);
  slider->setTickPosition(QSlider::TicksBelow);
  return slider;
}

QPushButton* MakeButton(QWidget* parent, const char* caption) {
  auto* button = new QPushButton(caption, parent);
  button->setAutoDefault(false);
  return button;
}

LineField* MakeField(QWidget* parent, int width) {
  auto* field = new LineField(parent);
  field->setFixedWidth(width);
  return field;
}

}  // namespace

FrmPortWindow::FrmPortWindow(QWidget& owner) : DialogWidget(&owner, Qt::Dialog) {
  setModal(false);
  setWindowTitle("Keyer setup");
  auto* layout = new QVBoxLayout(this);

  auto* speed = new QGroupBox("Speed and tone", this);
  auto* speedGrid = new QGridLayout(speed);
  DotLengthSlider_ = &Make<QtSlider>(MakeSlider(speed, 10, 99, 14), "DotLengthSlider");
  lbl_ = &Make<QtLabel>(new QLabel(speed), "lbl");
  Pitch_ = &Make<QtSlider>(MakeSlider(speed, 300, 1500, 150), "Pitch");
  speedGrid->addWidget(&lbl_->widget(), 0, 0, 1, 2);
  speedGrid->addWidget(&DotLengthSlider_->widget(), 1, 0, 1, 2);
  speedGrid->addWidget(new QLabel("Tone", speed), 2, 0);
  speedGrid->addWidget(&Pitch_->widget(), 2, 1);
  ckSidetone_ = &Make<QtCheckBox>(new QCheckBox(" Sidetone (requires DirectX)", speed), "ckSidetone");
  btnTest_ = &Make<QtButton>(MakeButton(speed, "Tone test"), "btnTest");
  speedGrid->addWidget(&ckSidetone_->widget(), 3, 0);
  speedGrid->addWidget(&btnTest_->widget(), 3, 1, Qt::AlignRight);
  speedGrid->setColumnStretch(1, 1);
  layout->addWidget(speed);

  auto* timing = new QGroupBox("Proportions and PTT", this);
  auto* timingGrid = new QGridLayout(timing);
  const std::pair<const char*, QtTextField**> proportions[] = {
      {"A dash =", &Text4_}, {"A letter space =", &Text5_}, {"A word space =", &Text6_}};
  const char* names[] = {"Text4", "Text5", "Text6"};
  for (int row = 0; row < 3; ++row) {
    timingGrid->addWidget(new QLabel(proportions[row].first, timing), row, 0);
    *proportions[row].second = &Make<QtTextField>(MakeField(timing, 60), names[row]);
    timingGrid->addWidget(&(*proportions[row].second)->widget(), row, 1);
    timingGrid->addWidget(new QLabel("dots.", timing), row, 2);
  }
  timingGrid->addWidget(new QLabel("Tx delay (in ms)", timing), 3, 0);
  Text3_ = &Make<QtTextField>(MakeField(timing, 60), "Text3");
  timingGrid->addWidget(&Text3_->widget(), 3, 1);
  Check5_ = &Make<QtCheckBox>(new QCheckBox("PTT on selected port", timing), "Check5");
  ckSlowTyping_ = &Make<QtCheckBox>(new QCheckBox("Slow typing", timing), "ckSlowTyping");
  Chk6_ = &Make<QtCheckBox>(new QCheckBox("Disable radio polling when keying", timing), "Chk6");
  timingGrid->addWidget(&Check5_->widget(), 4, 0, 1, 3);
  timingGrid->addWidget(&ckSlowTyping_->widget(), 5, 0, 1, 3);
  timingGrid->addWidget(&Chk6_->widget(), 6, 0, 1, 3);
  layout->addWidget(timing);

  auto* port = new QGroupBox("Key line", this);
  auto* portGrid = new QGridLayout(port);
  CheckParallel_ = &Make<QtCheckBox>(new QCheckBox("             Use parallel port for CW", port), "CheckParallel");
  CheckSharedSerial_ =
      &Make<QtCheckBox>(new QCheckBox("    Use shared serial port for CW", port), "CheckSharedSerial");
  CheckSerial_ = &Make<QtCheckBox>(new QCheckBox("Use dedicated serial port for CW", port), "CheckSerial");
  portGrid->addWidget(&CheckParallel_->widget(), 0, 0, 1, 2);
  portGrid->addWidget(&CheckSharedSerial_->widget(), 1, 0, 1, 2);
  portGrid->addWidget(&CheckSerial_->widget(), 2, 0, 1, 2);
  Label2_ = &Make<QtLabel>(new QLabel("Parallel port address", port), "Label2");
  Text2_ = &Make<QtTextField>(MakeField(port, 90), "Text2");
  portGrid->addWidget(&Label2_->widget(), 3, 0);
  portGrid->addWidget(&Text2_->widget(), 3, 1);
  Label10_ = &Make<QtLabel>(new QLabel("Com port", port), "Label10");
  auto* combo = new QComboBox(port);
  combo->setEditable(true);
  combo->setInsertPolicy(QComboBox::NoInsert);
  cmbPort_ = &Make<QtEditComboBox>(combo, "cmbPort");
  portGrid->addWidget(&Label10_->widget(), 4, 0);
  portGrid->addWidget(combo, 4, 1);
  auto* device = new QLabel(port);
  device->setWordWrap(true);
  lblDevice_ = &Make<QtLabel>(device, "lblDevice");
  portGrid->addWidget(device, 5, 0, 1, 2);
  layout->addWidget(port);

  auto* test = new QGroupBox("Speed calibration", this);
  auto* testGrid = new QGridLayout(test);
  ARButton1_ = &Make<QtButton>(MakeButton(test, "20 WPM test"), "ARButton1");
  ARButton2_ = &Make<QtButton>(MakeButton(test, "40 WPM test"), "ARButton2");
  btnStopTest_ = &Make<QtButton>(MakeButton(test, "Stop test"), "btnStopTest");
  testGrid->addWidget(&ARButton1_->widget(), 0, 0);
  testGrid->addWidget(&ARButton2_->widget(), 0, 1);
  testGrid->addWidget(&btnStopTest_->widget(), 0, 2);
  lblProgress_ = &Make<QtLabel>(new QLabel(test), "lblProgress");
  auto* bar = new QProgressBar(test);
  bar->setRange(0, 100);
  prgTest_ = &Make<QtProgressBar>(bar, "prgTest");
  testGrid->addWidget(&lblProgress_->widget(), 1, 0, 1, 3);
  testGrid->addWidget(bar, 2, 0, 1, 3);
  layout->addWidget(test);

  auto* buttons = new QHBoxLayout;
  btnOK_ = &Make<QtButton>(MakeButton(this, "Apply"), "btnOK");
  btnCancel_ = &Make<QtButton>(MakeButton(this, "Cancel"), "btnCancel");
  buttons->addStretch();
  buttons->addWidget(&btnOK_->widget());
  buttons->addWidget(&btnCancel_->widget());
  layout->addLayout(buttons);
  // Sized before the logic centres it.
  adjustSize();
}

KeyerSetupControls FrmPortWindow::controls() {
  return KeyerSetupControls{window_,        *DotLengthSlider_, *lbl_,          *Pitch_,
                            *Text2_,        *Text3_,           *Text4_,        *Text5_,
                            *Text6_,        *Label2_,          *Label10_,      *cmbPort_,
                            *lblDevice_,    *CheckParallel_,   *CheckSharedSerial_, *CheckSerial_,
                            *Check5_,       *ckSlowTyping_,    *Chk6_,         *ckSidetone_,
                            *btnTest_,      *ARButton1_,       *ARButton2_,    *btnOK_,
                            *btnCancel_,    *lblProgress_,     *prgTest_,      *btnStopTest_,
                            ProgressTimer_, frmCalibrate_};
}

}  // namespace vantrel::platform::qt
