// The small dialog behind "Assign INS key": a line of help and the list of
// the 36 function keys. It stays above the main window while open, and goes
// with whatever it was given to keep when it closes.
#pragma once

#include <QDialog>
#include <memory>

#include "platform/qt/qt_controls.h"

namespace vantrel::platform::qt {

class FrmAssignKeyWindow : public QDialog {
 public:
  explicit FrmAssignKeyWindow(QWidget& owner);

  QtListBox& List1() { return *list1_; }
  // The dialog's logic, alive as long as the dialog.
  void Keep(std::shared_ptr<void> logic) { kept_ = std::move(logic); }

 private:
  std::unique_ptr<QtListBox> list1_;
  std::shared_ptr<void> kept_;
};

}  // namespace vantrel::platform::qt
