// The keyer's main window built of Qt widgets: the tool bar on top, the
// transmit text filling the middle, three rows of twelve macro buttons at
// the bottom, and the whole menu tree. The logic reaches it through
// controls(); the program connects the events to the logic's handlers.
#pragma once

#include <QPointer>
#include <array>
#include <memory>
#include <vector>

#include "platform/main_window_controls.h"
#include "platform/main_window_design.h"
#include "platform/qt/qt_controls.h"
#include "platform/qt/qt_text_box.h"
#include "platform/qt/qt_window.h"

namespace vantrel::platform::qt {

class FrmVantrelWindow {
 public:
  FrmVantrelWindow();
  ~FrmVantrelWindow();
  FrmVantrelWindow(const FrmVantrelWindow&) = delete;
  FrmVantrelWindow& operator=(const FrmVantrelWindow&) = delete;

  MainWindowControls& controls() { return *controls_; }
  EventPump& pump() { return pump_; }
  MainWindowWidget& widget() { return *window_; }

  // Every menu entry, separators included.
  QtMenuItem& menu(MenuId id) { return *menus_[static_cast<size_t>(id)]; }

  QtTextBox& CWTextBox() { return *cwTextBox_; }
  QtTextBox& CallsignField() { return *callsignField_; }
  QtTextBox& NameField() { return *nameField_; }
  QtTextBox& SRXField() { return *srxField_; }
  QtPictureBox& KeyBox() { return *keyBox_; }
  QtPictureBox& PTTBox() { return *pttBox_; }
  QtButtonArray& btnf() { return btnf_; }

 private:
  void BuildMenus();
  void BuildToolBar(QWidget& central);
  void BuildRows(QWidget& central);

  // Owns every widget; declared first, so it outlives the adapters over them.
  std::unique_ptr<MainWindowWidget> window_;
  QtEventPump pump_;
  std::unique_ptr<QtWindow> frmVantrel_;
  std::array<std::unique_ptr<QtMenuItem>, kMenuCount> menus_;
  std::unique_ptr<QtTextBox> cwTextBox_, callsignField_, nameField_, srxField_;
  std::unique_ptr<QtComboBox> cmbPrevious_;
  std::unique_ptr<QtDockedPanel> elasticOne1_, elasticOne2_, elasticOne3_, elasticOne4_;
  std::unique_ptr<QtStatusPanel> sBar_;
  std::unique_ptr<QtPictureBox> keyBox_, pttBox_;
  QtButtonArray btnf_;
  QtTimer timer1_;
  QtTimer loopTimer_;
  std::unique_ptr<QtCommonDialog> commonDialog1_;
  std::unique_ptr<MainWindowControls> controls_;
};

}  // namespace vantrel::platform::qt
