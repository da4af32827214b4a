#include "platform/qt/qt_window.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>

#include "platform/qt/qt_controls.h"

namespace vantrel::platform::qt {

void MainWindowWidget::closeEvent(QCloseEvent* event) {
  bool cancel = false;
  if (onClose) onClose(cancel);
  if (cancel) {
    event->ignore();
  } else {
    event->accept();
  }
}

void MainWindowWidget::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (onResize) onResize();
}

std::string QtWindow::Caption() const { return FromQString(window_.windowTitle()); }

void QtWindow::SetCaption(const std::string& caption) {
  window_.setWindowTitle(ToQString(caption));
}

float QtWindow::Top() const { return top_.Get(window_.y(), TwipsPerPixelY(window_)); }
float QtWindow::Left() const { return left_.Get(window_.x(), TwipsPerPixelX(window_)); }
float QtWindow::Height() const {
  return height_.Get(window_.height(), TwipsPerPixelY(window_));
}
float QtWindow::Width() const { return width_.Get(window_.width(), TwipsPerPixelX(window_)); }

void QtWindow::SetTop(float twips) {
  window_.move(window_.x(), top_.Set(twips, TwipsPerPixelY(window_)));
}
void QtWindow::SetLeft(float twips) {
  window_.move(left_.Set(twips, TwipsPerPixelX(window_)), window_.y());
}
void QtWindow::SetHeight(float twips) {
  window_.resize(window_.width(), height_.Set(twips, TwipsPerPixelY(window_)));
}
void QtWindow::SetWidth(float twips) {
  window_.resize(width_.Set(twips, TwipsPerPixelX(window_)), window_.height());
}

float QtWindow::ScreenWidth() const {
  const QScreen* screen = window_.screen();
  return screen ? static_cast<float>(screen->geometry().width() * TwipsPerPixelX(window_)) : 0;
}

float QtWindow::ScreenHeight() const {
  const QScreen* screen = window_.screen();
  return screen ? static_cast<float>(screen->geometry().height() * TwipsPerPixelY(window_)) : 0;
}

void QtWindow::SetTopmost(bool topmost) { SetStaysOnTop(window_, topmost); }

void QtWindow::SetMousePointer(MousePointer pointer) {
  if (pointer == MousePointer::Hourglass) {
    window_.setCursor(Qt::WaitCursor);
  } else {
    window_.unsetCursor();
  }
}

void QtWindow::MsgBox(const std::string& text, int style, const std::string& title) {
  ShowMessageBox(window_, text, style, title);
}

std::string QtWindow::ClipboardText() const {
  return FromQString(QGuiApplication::clipboard()->text());
}

// Changing a window flag hides a shown window; it comes back at once.
void SetStaysOnTop(QWidget& window, bool topmost) {
  const bool shown = window.isVisible();
  window.setWindowFlag(Qt::WindowStaysOnTopHint, topmost);
  if (shown) window.show();
}

void ShowMessageBox(QWidget& owner, const std::string& text, int style, const std::string& title) {
  // The icon is the style's one field, bits 4 to 6.
  const int iconField = style & 0x70;
  const QMessageBox::Icon icon = iconField == kMsgBoxExclamation   ? QMessageBox::Warning
                                 : iconField == kMsgBoxInformation ? QMessageBox::Information
                                                                   : QMessageBox::NoIcon;
  QMessageBox box(icon, ToQString(title), ToQString(text), QMessageBox::Ok, &owner);
  box.exec();
}

}  // namespace vantrel::platform::qt
