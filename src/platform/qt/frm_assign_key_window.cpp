#include "platform/qt/frm_assign_key_window.h"

#include <QLabel>
#include <QListWidget>
#include <QScreen>
#include <cmath>

namespace vantrel::platform::qt {
namespace {

// The design, in twips.
constexpr float kWidth = 2535;
constexpr float kHeight = 1800;

}  // namespace

FrmAssignKeyWindow::FrmAssignKeyWindow(QWidget& owner)
    : QDialog(&owner, Qt::Dialog | Qt::WindowStaysOnTopHint) {
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  setWindowTitle("Assign INS Key");
  setFixedSize(static_cast<int>(std::lround(kWidth / TwipsPerPixelX(*this))),
               static_cast<int>(std::lround(kHeight / TwipsPerPixelY(*this))));
  auto* help = new QLabel(
      "You can set the INS key on the keyboard to map to a Function key of your choice.  "
      "Select the Function Key from the list below :",
      this);
  help->setWordWrap(true);
  help->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Place(*help, 120, 0, 2415, 855);
  auto* list = new QListWidget(this);
  Place(*list, 120, 840, 2295, 840);
  list1_ = std::make_unique<QtListBox>(*list);
  if (const QScreen* screen = owner.screen()) {
    const QRect free = screen->availableGeometry();
    move(free.center() - rect().center());
  }
}

}  // namespace vantrel::platform::qt
