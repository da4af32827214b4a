#include "platform/qt/frm_vantrel_window.h"

#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <string_view>

#include "platform/main_window_design.h"

namespace vantrel::platform::qt {
namespace {

// The window's grey, &HC0C0C0.
constexpr Colour kFormBackColor = 0xC0C0C0;
constexpr int kButtonsPerRow = 12;
constexpr float kRowHeight = 270;
constexpr float kToolBarHeight = 315;

void FillBackground(QWidget& widget, Colour colour) {
  QPalette palette = widget.palette();
  palette.setColor(QPalette::Window, ToQColor(colour));
  widget.setPalette(palette);
  widget.setAutoFillBackground(true);
}

void Place(Placed& control, float left, float top, float width, float height) {
  control.SetLeft(left);
  control.SetTop(top);
  control.SetWidth(width);
  control.SetHeight(height);
}

// A line indicator says what it shows, to the mouse and to a screen reader.
void Describe(QWidget& lamp, const char* name, const char* tip) {
  lamp.setAccessibleName(name);
  lamp.setToolTip(tip);
}

// Keeps the window wide enough for the menu bar's every entry and, while the
// tool bar shows, for its whole caption beside the group that the resize
// rules hold against its right edge, from the key lamp to the name field.
// The group counts only once the rules have put it there: the name field
// then reaches the right edge.
class ContentWidth : public QObject {
 public:
  ContentWidth(QMainWindow& window, QWidget& bar, QWidget& caption, QWidget& keyLamp,
               QWidget& lastField)
      : QObject(&window), menuBar_(*window.menuBar()), bar_(bar), caption_(caption),
        keyLamp_(keyLamp), lastField_(lastField) {
    for (QWidget* watched : {static_cast<QWidget*>(&menuBar_), &caption_, &keyLamp_, &lastField_}) {
      watched->installEventFilter(this);
    }
    FitMenuBar();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::ActionAdded:
      case QEvent::ActionChanged:
      case QEvent::FontChange:
        if (watched == &menuBar_) FitMenuBar();
        break;
      case QEvent::Move:
      case QEvent::Resize:
        // Once the resize rules have placed the whole group, not between two
        // of its moves.
        if (watched != &menuBar_ && !fitPending_) {
          fitPending_ = true;
          QMetaObject::invokeMethod(this, [this] { FitBar(); }, Qt::QueuedConnection);
        }
        break;
      default:
        break;
    }
    return false;
  }

 private:
  void FitMenuBar() { menuBar_.setMinimumWidth(menuBar_.sizeHint().width()); }

  void FitBar() {
    fitPending_ = false;
    const bool arranged = lastField_.x() + lastField_.width() >= bar_.width();
    if (bar_.isHidden() || !arranged) return;
    const int group = bar_.width() - keyLamp_.x();
    bar_.setMinimumWidth(std::max(0, caption_.x() + caption_.width() + group));
  }

  QMenuBar& menuBar_;
  QWidget& bar_;
  QWidget& caption_;
  QWidget& keyLamp_;
  QWidget& lastField_;
  bool fitPending_ = false;
};

// A one-line rich text field of the tool bar.
QTextEdit* NewField(QWidget& parent) {
  auto* field = new QTextEdit(&parent);
  field->setLineWrapMode(QTextEdit::NoWrap);
  field->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  field->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  field->setTabChangesFocus(true);
  field->document()->setDocumentMargin(1);
  return field;
}

}  // namespace

FrmVantrelWindow::FrmVantrelWindow() : window_(std::make_unique<MainWindowWidget>()) {
  frmVantrel_ = std::make_unique<QtWindow>(*window_);
  frmVantrel_->SetCaption("Vantrel");
  auto* central = new QWidget(window_.get());
  FillBackground(*central, kFormBackColor);
  window_->setCentralWidget(central);
  auto* column = new QVBoxLayout(central);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);

  BuildMenus();
  BuildToolBar(*central);
  column->addWidget(&sBar_->widget());

  auto* middle = new QWidget(central);
  elasticOne4_ = std::make_unique<QtDockedPanel>(*middle);
  auto* textEdit = new QTextEdit(middle);
  // The resize rules set the window's least height, not the widgets' hints.
  textEdit->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  middle->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  auto* middleLayout = new QVBoxLayout(middle);
  // CWTextBox sits 15 twips, one pixel, inside its panel.
  middleLayout->setContentsMargins(1, 1, 1, 1);
  middleLayout->addWidget(textEdit);
  cwTextBox_ = std::make_unique<QtTextBox>(*textEdit);
  column->addWidget(middle, 1);

  BuildRows(*central);
  column->addWidget(&elasticOne3_->widget());
  column->addWidget(&elasticOne2_->widget());
  column->addWidget(&elasticOne1_->widget());

  commonDialog1_ = std::make_unique<QtCommonDialog>(*window_);

  const std::map<std::string_view, Control*> others{
      {"CWTextBox", cwTextBox_.get()},     {"CallsignField", callsignField_.get()},
      {"NameField", nameField_.get()},     {"SRXField", srxField_.get()},
      {"cmbPrevious", cmbPrevious_.get()}, {"ElasticOne1", elasticOne1_.get()},
      {"ElasticOne2", elasticOne2_.get()}, {"ElasticOne3", elasticOne3_.get()},
      {"ElasticOne4", elasticOne4_.get()}, {"sBar", sBar_.get()}};
  std::vector<Control*> order = ControlOrder([&](std::string_view name) -> Control& { return *others.at(name); },
                                             [this](MenuId id) -> Control& { return menu(id); });

  controls_.reset(new MainWindowControls{
      .frmVantrel = *frmVantrel_,
      .CWTextBox = *cwTextBox_,
      .CallsignField = *callsignField_,
      .NameField = *nameField_,
      .SRXField = *srxField_,
      .cmbPrevious = *cmbPrevious_,
      .mnuTX = menu(MenuId::mnuTX),
      .mnuAbort = menu(MenuId::mnuAbort),
      .mnuConfig = menu(MenuId::mnuConfig),
      .mnuView = menu(MenuId::mnuView),
      .mnuKeying = menu(MenuId::mnuKeying),
      .mnuVOX = menu(MenuId::mnuVOX),
      .mnuMOX = menu(MenuId::mnuMOX),
      .mnuDedicatedSerialPort = menu(MenuId::mnuDedicatedSerialPort),
      .mnuWinKey = menu(MenuId::mnuWinKey),
      .mnuWinKey2 = menu(MenuId::mnuWinKey2),
      .mnuSoftwareKeyer = menu(MenuId::mnuSoftwareKeyer),
      .mnuOnTop = menu(MenuId::mnuOnTop),
      .mFkeys = menu(MenuId::mFkeys),
      .mAFkeys = menu(MenuId::mAFkeys),
      .mSFkeys = menu(MenuId::mSFkeys),
      .mnuShowCallsign = menu(MenuId::mnuShowCallsign),
      .mnuShowSRX = menu(MenuId::mnuShowSRX),
      .mnuSend0as0 = menu(MenuId::mnuSend0as0),
      .mnuSend0asT = menu(MenuId::mnuSend0asT),
      .mnuSend0asO = menu(MenuId::mnuSend0asO),
      .mnuVersion = menu(MenuId::mnuVersion),
      .ElasticOne1 = *elasticOne1_,
      .ElasticOne2 = *elasticOne2_,
      .ElasticOne3 = *elasticOne3_,
      .btnf = btnf_,
      .sBar = *sBar_,
      .KeyBox = *keyBox_,
      .PTTBox = *pttBox_,
      .Timer1 = timer1_,
      .LoopTimer = loopTimer_,
      .CommonDialog1 = *commonDialog1_,
      .Controls = std::move(order),
  });
}

FrmVantrelWindow::~FrmVantrelWindow() {
  // The handlers reach into the logic, which may be gone before the window.
  window_->onClose = nullptr;
  window_->onResize = nullptr;
}

void FrmVantrelWindow::BuildMenus() {
  QMenuBar& bar = *window_->menuBar();
  std::vector<QMenu*> open;  // the submenu at each depth now being filled
  const size_t count = std::size(kMenuTree);
  for (size_t i = 0; i < count; ++i) {
    const MenuEntry& entry = kMenuTree[i];
    const auto depth = static_cast<size_t>(entry.depth);
    open.resize(depth);
    QMenu* parent = depth == 0 ? nullptr : open.back();
    const QString caption = ToQString(entry.caption);
    const bool opensSubmenu = i + 1 < count && kMenuTree[i + 1].depth > entry.depth;

    QAction* action = nullptr;
    QMenu* submenu = nullptr;
    if (opensSubmenu) {
      submenu = parent ? parent->addMenu(caption) : bar.addMenu(caption);
      action = submenu->menuAction();
      open.push_back(submenu);
    } else if (std::string(entry.caption) == "-") {
      action = parent->addSeparator();
    } else {
      action = parent ? parent->addAction(caption) : bar.addAction(caption);
    }
    menus_[i] = std::make_unique<QtMenuItem>(*action, submenu);
  }
}

void FrmVantrelWindow::BuildToolBar(QWidget& central) {
  auto* bar = new QFrame(&central);
  auto* caption = new QLabel(bar);
  sBar_ = std::make_unique<QtStatusPanel>(*bar, *caption);
  sBar_->SetHeight(kToolBarHeight);
  WidgetGeometry captionPlace(*caption);
  captionPlace.SetLeft(60);
  captionPlace.SetTop(0);
  captionPlace.SetWidth(1140);
  captionPlace.SetHeight(kToolBarHeight);

  keyBox_ = std::make_unique<QtPictureBox>(*new QLabel(bar));
  pttBox_ = std::make_unique<QtPictureBox>(*new QLabel(bar));
  auto* combo = new QComboBox(bar);
  combo->setEditable(false);
  cmbPrevious_ = std::make_unique<QtComboBox>(*combo);
  callsignField_ = std::make_unique<QtTextBox>(*NewField(*bar));
  srxField_ = std::make_unique<QtTextBox>(*NewField(*bar));
  srxField_->SetText("###");  // as designed: no number yet
  nameField_ = std::make_unique<QtTextBox>(*NewField(*bar));

  Describe(keyBox_->widget(), "Key line", "Key line: green while the key is down, red while it is up");
  Describe(pttBox_->widget(), "PTT line",
           "PTT line: green while the transmitter is switched to send, red while it receives");

  Place(*keyBox_, 1200, 0, 375, 255);
  Place(*pttBox_, 1560, 0, 255, 255);
  Place(*cmbPrevious_, 1920, 0, 1335, 315);
  Place(*callsignField_, 3240, -10, 1095, 345);
  Place(*srxField_, 4440, -15, 700, 345);
  Place(*nameField_, 5520, -15, 1095, 345);
  new ContentWidth(*window_, *bar, *caption, keyBox_->widget(), nameField_->widget());
  // Hidden until the settings say otherwise.
  sBar_->SetVisible(false);
}

void FrmVantrelWindow::BuildRows(QWidget& central) {
  // ElasticOne3 holds buttons 1 to 12, ElasticOne2 13 to 24, ElasticOne1 25 to 36.
  auto row = [&](int16_t first) {
    auto* panel = new QWidget(&central);
    auto* layout = new QHBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (int16_t index = first; index < first + kButtonsPerRow; ++index) {
      auto* button = new QPushButton(panel);
      // The typing stays in the text box when a button is clicked.
      button->setFocusPolicy(Qt::NoFocus);
      button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
      layout->addWidget(button, 1);
      btnf_.Set(index, *button);
    }
    auto docked = std::make_unique<QtDockedPanel>(*panel);
    docked->SetHeight(kRowHeight);
    return docked;
  };
  elasticOne3_ = row(1);
  elasticOne2_ = row(13);
  elasticOne1_ = row(25);
}

}  // namespace vantrel::platform::qt
