// The main window as the logger's commands reach it: keys and the list of
// calls go to the form, closing and the window's state to the front end.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "loggerlink/logger_link.h"
#include "mainwindow/frm_vantrel.h"

namespace vantrel::app {

class FormLinkWindow : public loggerlink::LinkWindow {
 public:
  FormLinkWindow(mainwindow::FrmVantrel& form, std::function<void()> unload,
                 std::function<void(int16_t)> setWindowState)
      : form_(form), unload_(std::move(unload)), setWindowState_(std::move(setWindowState)) {}

  void cwTextBox_KeyDown(int16_t& KeyCode, int16_t& Shift) override {
    form_.cwTextBox_KeyDown(KeyCode, Shift);
  }
  void RememberCallsign() override { form_.RememberCallsign(); }
  void Unload() override { unload_(); }
  void SetWindowState(int16_t state) override { setWindowState_(state); }

 private:
  mainwindow::FrmVantrel& form_;
  std::function<void()> unload_;
  std::function<void(int16_t)> setWindowState_;
};

}  // namespace vantrel::app
