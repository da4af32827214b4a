// "Keyer setup": the software keyer's settings and the speed tests. Made
// once and owned by the main window; closing only hides it, so that a test
// running from one of its buttons never loses the window under it.
#pragma once

#include <memory>
#include <vector>

#include "platform/keyer_setup_controls.h"
#include "platform/qt/qt_dialog_controls.h"

namespace vantrel::platform::qt {

class FrmPortWindow : public DialogWidget {
 public:
  explicit FrmPortWindow(QWidget& owner);

  KeyerSetupControls controls();
  QtCalibrateForm& frmCalibrate() { return frmCalibrate_; }

 private:
  QtDialogWindow window_{*this};
  QtSlider* DotLengthSlider_ = nullptr;
  QtLabel* lbl_ = nullptr;
  QtSlider* Pitch_ = nullptr;
  QtTextField *Text2_ = nullptr, *Text3_ = nullptr, *Text4_ = nullptr, *Text5_ = nullptr, *Text6_ = nullptr;
  QtLabel *Label2_ = nullptr, *Label10_ = nullptr, *lblDevice_ = nullptr, *lblProgress_ = nullptr;
  QtEditComboBox* cmbPort_ = nullptr;
  QtCheckBox *CheckParallel_ = nullptr, *CheckSharedSerial_ = nullptr, *CheckSerial_ = nullptr,
             *Check5_ = nullptr, *ckSlowTyping_ = nullptr, *Chk6_ = nullptr, *ckSidetone_ = nullptr;
  QtButton *btnTest_ = nullptr, *ARButton1_ = nullptr, *ARButton2_ = nullptr, *btnOK_ = nullptr,
           *btnCancel_ = nullptr, *btnStopTest_ = nullptr;
  QtProgressBar* prgTest_ = nullptr;
  QtTimer ProgressTimer_;
  QtCalibrateForm frmCalibrate_{*this};
};

}  // namespace vantrel::platform::qt
