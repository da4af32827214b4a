// What "nothing clipped" means for a window of widgets, checked on the real
// widgets: each shown control inside its parent, each caption as wide as its
// text needs, and no two shown controls of one parent covering each other,
// but for the overlaps that a design draws on purpose.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QWidget>
#include <cmath>
#include <string>
#include <vector>

#include "platform/qt/qt_geometry.h"

namespace vantrel::testing {

inline std::string Describe(const QWidget& widget) {
  const QString name = widget.objectName().isEmpty() ? widget.metaObject()->className()
                                                     : widget.objectName();
  const QRect r = widget.geometry();
  return name.toStdString() + " at " + std::to_string(r.x()) + "," + std::to_string(r.y()) +
         " size " + std::to_string(r.width()) + "x" + std::to_string(r.height());
}

// The controls a layout check looks at: those shown with a face of their
// own, not the plain containers and the scroll areas' inner parts.
inline bool IsControl(const QWidget& widget) {
  return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLabel*>(&widget) ||
         widget.inherits("QAbstractScrollArea") || widget.inherits("QComboBox") ||
         widget.inherits("QLineEdit") || widget.inherits("QSlider") || widget.inherits("QGroupBox");
}

// Problems under `root`; `slackTwips` is the overlap a design may draw.
inline std::vector<std::string> LayoutProblems(const QWidget& root, float slackTwips = 0) {
  std::vector<std::string> problems;
  const int slack =
      static_cast<int>(std::ceil(slackTwips / vantrel::platform::qt::TwipsPerPixelX(root)));
  std::vector<const QWidget*> controls;
  for (const QWidget* widget : root.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&root) || !IsControl(*widget)) continue;
    if (widget->parentWidget() && widget->parentWidget()->inherits("QAbstractScrollArea")) continue;
    if (widget->inherits("QAbstractScrollArea") && widget->parentWidget() &&
        widget->parentWidget()->inherits("QComboBox")) {
      continue;  // a combo box's own popup list
    }
    controls.push_back(widget);
    const QRect inside = widget->parentWidget()->rect().adjusted(-slack, -slack, slack, slack);
    if (!inside.contains(widget->geometry())) {
      problems.push_back(Describe(*widget) + " runs out of " + Describe(*widget->parentWidget()));
    }
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const auto* label = qobject_cast<const QLabel*>(widget);
    const bool hasText = (button && !button->text().isEmpty()) || (label && !label->text().isEmpty());
    // "&" marks a mnemonic and takes no room.
    const QString shown = (button ? button->text() : hasText ? label->text() : QString())
                              .replace(QStringLiteral("&&"), QStringLiteral("\x01"))
                              .remove(QLatin1Char('&'));
    // A button's frame and padding take a few pixels on each side.
    const int padding = button ? 8 : 0;
    if (hasText && widget->width() < widget->fontMetrics().horizontalAdvance(shown) + padding) {
      problems.push_back(Describe(*widget) + " cuts its text");
    }
  }
  for (size_t i = 0; i < controls.size(); ++i) {
    for (size_t j = i + 1; j < controls.size(); ++j) {
      if (controls[i]->parentWidget() != controls[j]->parentWidget()) continue;
      const QRect overlap = controls[i]->geometry() & controls[j]->geometry();
      if (overlap.width() > slack && overlap.height() > slack) {
        problems.push_back(Describe(*controls[i]) + " covers " + Describe(*controls[j]));
      }
    }
  }
  return problems;
}

}  // namespace vantrel::testing
