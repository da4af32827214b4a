// "WinKey config ..." and "WinKey2 config ...": the keyer chips' settings,
// laid out in twips as designed. Made at each opening, owned by the main
// window, and gone when closed, with the logic it was given to keep.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/qt/qt_controls.h"
#include "platform/qt/qt_dialog_controls.h"
#include "platform/winkey_config_controls.h"

namespace vantrel::platform::qt {

class FrmWinKeyConfigWindow : public DialogWidget {
 public:
  FrmWinKeyConfigWindow(QWidget& owner, bool winKey2);

  WinKeyConfigControls& controls() { return *controls_; }
  bool winKey2() const { return winKey2_; }

 private:
  bool winKey2_;
  QtDialogWindow window_{*this};
  std::optional<WinKeyConfigControls> controls_;
};

}  // namespace vantrel::platform::qt
