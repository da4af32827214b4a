// The main window: a QMainWindow that hands its close and resize events to
// the logic, and the Window interface over it.
#pragma once

#include <QMainWindow>
#include <functional>
#include <string>

#include "platform/qt/qt_geometry.h"
#include "platform/window.h"

namespace vantrel::platform::qt {

class MainWindowWidget : public QMainWindow {
 public:
  // `cancel` set keeps the window open.
  std::function<void(bool& cancel)> onClose;
  std::function<void()> onResize;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
};

// What every window of the keyer does alike: staying on top, which hides and
// shows a shown window again, and a message box it owns, which waits.
void SetStaysOnTop(QWidget& window, bool topmost);
void ShowMessageBox(QWidget& owner, const std::string& text, int style, const std::string& title);

// The main window or a dialog. The rectangle is the frame's place on the
// screen and the size inside the frame: both read back as set, so a window
// saved at shutdown comes back the same, whatever the window manager adds
// around it.
class QtWindow : public Window {
 public:
  explicit QtWindow(QWidget& window) : window_(window) {}

  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;
  float Top() const override;
  float Left() const override;
  float Height() const override;
  float Width() const override;
  void SetTop(float twips) override;
  void SetLeft(float twips) override;
  void SetHeight(float twips) override;
  void SetWidth(float twips) override;
  bool Minimized() const override { return window_.isMinimized(); }
  float ScreenWidth() const override;
  float ScreenHeight() const override;
  void SetTopmost(bool topmost) override;
  void SetMousePointer(MousePointer pointer) override;
  void MsgBox(const std::string& text, int style, const std::string& title) override;
  std::string ClipboardText() const override;

 private:
  QWidget& window_;
  TwipsCoordinate left_, top_, width_, height_;
};

}  // namespace vantrel::platform::qt
