#include "platform/qt/frm_assign_key_window.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace vantrel::platform::qt {

FrmAssignKeyWindow::FrmAssignKeyWindow(QWidget& owner)
    : QDialog(&owner, Qt::Dialog | Qt::WindowStaysOnTopHint) {
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  setWindowTitle("Assign INS Key");
  auto* layout = new QVBoxLayout(this);
  auto* help = new QLabel(
      "You can set the INS key on the keyboard to map to a Function key of your choice.  "
      "Select the Function Key from the list below :",
      this);
  help->setWordWrap(true);
  layout->addWidget(help);
  auto* list = new QListWidget(this);
  layout->addWidget(list);
  list1_ = std::make_unique<QtListBox>(*list);
}

}  // namespace vantrel::platform::qt
