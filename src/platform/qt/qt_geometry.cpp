#include "platform/qt/qt_geometry.h"

#include <QColor>
#include <QScreen>
#include <QWidget>
#include <cmath>

namespace vantrel::platform::qt {
namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kFallbackDpi = 96;

double DpiOr96(double dpi) { return dpi > 0 ? dpi : kFallbackDpi; }

}  // namespace

double TwipsPerPixelX(const QWidget& widget) {
  const QScreen* screen = widget.screen();
  return kTwipsPerInch / DpiOr96(screen ? screen->logicalDotsPerInchX() : 0);
}

double TwipsPerPixelY(const QWidget& widget) {
  const QScreen* screen = widget.screen();
  return kTwipsPerInch / DpiOr96(screen ? screen->logicalDotsPerInchY() : 0);
}

int TwipsCoordinate::Set(float twips, double twipsPerPixel) {
  twips_ = twips;
  pixels_ = static_cast<int>(std::lround(twips / twipsPerPixel));
  return pixels_;
}

float TwipsCoordinate::Get(int pixels, double twipsPerPixel) const {
  return pixels == pixels_ ? twips_ : static_cast<float>(pixels * twipsPerPixel);
}

QColor ToQColor(Colour colour) {
  return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

Colour FromQColor(const QColor& colour) {
  return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

float WidgetGeometry::Left() const { return left_.Get(widget_.x(), TwipsPerPixelX(widget_)); }
float WidgetGeometry::Top() const { return top_.Get(widget_.y(), TwipsPerPixelY(widget_)); }
float WidgetGeometry::Width() const {
  return width_.Get(widget_.width(), TwipsPerPixelX(widget_));
}
float WidgetGeometry::Height() const {
  return height_.Get(widget_.height(), TwipsPerPixelY(widget_));
}

void WidgetGeometry::SetLeft(float twips) {
  widget_.move(left_.Set(twips, TwipsPerPixelX(widget_)), widget_.y());
}
void WidgetGeometry::SetTop(float twips) {
  widget_.move(widget_.x(), top_.Set(twips, TwipsPerPixelY(widget_)));
}
void WidgetGeometry::SetWidth(float twips) {
  widget_.resize(width_.Set(twips, TwipsPerPixelX(widget_)), widget_.height());
}
void WidgetGeometry::SetHeight(float twips) {
  widget_.resize(widget_.width(), height_.Set(twips, TwipsPerPixelY(widget_)));
}

void Place(QWidget& widget, float left, float top, float width, float height) {
  WidgetGeometry geometry(widget);
  geometry.SetLeft(left);
  geometry.SetTop(top);
  geometry.SetWidth(width);
  geometry.SetHeight(height);
}

}  // namespace vantrel::platform::qt
