// The system's colour and font dialogs, started from a value and giving the
// operator's choice.
#pragma once

#include <string>

#include "platform/controls.h"

namespace vantrel::platform {

struct FontChoice {
  std::string name;
  float size = 0;
  bool bold = false;
  bool italic = false;
  Colour colour = 0;
};

class CommonDialog {
 public:
  virtual ~CommonDialog() = default;
  // Both start from what they are given and change it only when the
  // operator confirms; false after a cancel.
  virtual bool ShowColor(Colour& colour) = 0;
  virtual bool ShowFont(FontChoice& font) = 0;
};

}  // namespace vantrel::platform
