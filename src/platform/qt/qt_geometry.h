// Twips on a Qt screen: 1440 to the inch, so 15 to the pixel at 96 dpi,
// scaled by the logical dpi of the screen the widget is on.
#pragma once

#include <climits>

#include "platform/controls.h"

class QColor;
class QWidget;

namespace vantrel::platform::qt {

double TwipsPerPixelX(const QWidget& widget);
double TwipsPerPixelY(const QWidget& widget);

// One coordinate as it was set in twips, kept while the widget still has the
// pixels it was given, so that a value reads back exactly as written (a
// window stored at 3500 twips is not saved as 3495). A move or resize made
// by the operator reads afresh from the pixels.
class TwipsCoordinate {
 public:
  // The pixels for `twips`, remembered with it.
  int Set(float twips, double twipsPerPixel);
  float Get(int pixels, double twipsPerPixel) const;

 private:
  float twips_ = 0;
  int pixels_ = INT_MIN;
};

// Windows RGB (low byte red) and back.
QColor ToQColor(Colour colour);
Colour FromQColor(const QColor& colour);

// A control's rectangle in twips over its widget's geometry in its parent.
class WidgetGeometry {
 public:
  explicit WidgetGeometry(QWidget& widget) : widget_(widget) {}
  float Left() const;
  float Top() const;
  float Width() const;
  float Height() const;
  void SetLeft(float twips);
  void SetTop(float twips);
  void SetWidth(float twips);
  void SetHeight(float twips);

 private:
  QWidget& widget_;
  TwipsCoordinate left_, top_, width_, height_;
};

// Puts a dialog's widget where its design says, in twips.
void Place(QWidget& widget, float left, float top, float width, float height);

}  // namespace vantrel::platform::qt
