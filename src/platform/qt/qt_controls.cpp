#include "platform/qt/qt_controls.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <map>

#include "platform/qt/qt_button_events.h"
#include "platform/qt/qt_fonts.h"

#include "platform/qt/qt_key_events.h"

namespace vantrel::platform::qt {
namespace {

// Hands every mouse press on the widgets it watches to one handler.
class MousePressFilter : public QObject {
 public:
  MousePressFilter(QWidget& owner, std::function<void(int16_t)> pressed)
      : QObject(&owner), pressed_(std::move(pressed)) {
    owner.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonPress) {
      pressed_(WindowsButton(static_cast<QMouseEvent*>(event)->button()));
    }
    return false;
  }

 private:
  std::function<void(int16_t)> pressed_;
};

// Runs a handler after each resize of the widget it watches.
class ResizeFilter : public QObject {
 public:
  ResizeFilter(QWidget& owner, std::function<void()> resized)
      : QObject(&owner), resized_(std::move(resized)) {
    owner.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Resize) resized_();
    return false;
  }

 private:
  std::function<void()> resized_;
};

// The two faces of a line indicator, a disc `side` pixels across, drawn once
// for each size the indicators take.
const QPixmap& Face(Picture picture, int side) {
  static std::map<int, std::array<QPixmap, 2>> faces;
  auto [found, made] = faces.try_emplace(std::max(side, 4));
  if (made) {
    const int d = found->first;
    const std::array<QColor, 2> fills{QColor(0, 200, 0), QColor(220, 0, 0)};
    for (size_t i = 0; i < fills.size(); ++i) {
      QPixmap& face = found->second[i];
      face = QPixmap(d, d);
      face.fill(Qt::transparent);
      QPainter painter(&face);
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(QColor(64, 64, 64));
      painter.setBrush(fills[i]);
      painter.drawEllipse(QRectF(1, 1, d - 2, d - 2));
    }
  }
  return found->second[picture == Picture::Green ? 0 : 1];
}

}  // namespace

QString ToQString(const std::string& latin1) {
  return QString::fromLatin1(latin1.data(), static_cast<qsizetype>(latin1.size()));
}

std::string FromQString(const QString& text) {
  // Characters beyond Latin-1 have no 8-bit code; they become "?".
  const QByteArray bytes = text.toLatin1();
  return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

QtStatusPanel::QtStatusPanel(QWidget& panel, QLabel& caption)
    : QtDockedBase<StatusPanel>(panel), caption_(caption) {}

std::string QtStatusPanel::Caption() const { return FromQString(caption_.text()); }

// The caption is as wide as its text, so that the speed always shows whole.
void QtStatusPanel::SetCaption(const std::string& caption) {
  caption_.setText(ToQString(caption));
  caption_.resize(caption_.sizeHint().width(), caption_.height());
}

void QtStatusPanel::SetForeColor(Colour colour) {
  foreColor_ = colour;
  QPalette palette = caption_.palette();
  palette.setColor(QPalette::WindowText, ToQColor(colour));
  caption_.setPalette(palette);
}

// A press on the caption reaches the panel too: a plain label ignores it.
void QtStatusPanel::OnClick(std::function<void(int16_t button)> handler) {
  if (!onClick_) {
    new MousePressFilter(widget(), [this](int16_t button) {
      if (onClick_) onClick_(button);
    });
  }
  onClick_ = std::move(handler);
}

QtMenuItem::QtMenuItem(QAction& action, QMenu* submenu) : action_(action), submenu_(submenu) {
  triggered_ = QObject::connect(&action_, &QAction::triggered, [this] {
    // Qt ticks a checkable entry on its own; the tick belongs to the handler.
    action_.setChecked(checked_);
    if (onClick_) onClick_();
  });
  if (submenu_) {
    aboutToShow_ = QObject::connect(submenu_, &QMenu::aboutToShow, [this] {
      if (onOpen_) onOpen_();
    });
  }
}

QtMenuItem::~QtMenuItem() {
  QObject::disconnect(triggered_);
  QObject::disconnect(aboutToShow_);
}

bool QtMenuItem::Enabled() const { return action_.isEnabled(); }
void QtMenuItem::SetEnabled(bool enabled) { action_.setEnabled(enabled); }
bool QtMenuItem::Visible() const { return action_.isVisible(); }
void QtMenuItem::SetVisible(bool visible) { action_.setVisible(visible); }

// Only a ticked entry is checkable, so an unticked one shows no empty box.
void QtMenuItem::SetChecked(bool checked) {
  checked_ = checked;
  action_.setCheckable(checked);
  action_.setChecked(checked);
}

std::string QtMenuItem::Caption() const {
  return action_.isSeparator() ? "-" : FromQString(action_.text());
}

void QtMenuItem::SetCaption(const std::string& caption) {
  action_.setSeparator(caption == "-");
  action_.setText(ToQString(caption));
}

// The "&" still underlines its letter, but Qt's own shortcut would take the
// ALT letter before the keyer's search of the captions, which decides.
template <typename Interface>
void QtButtonBase<Interface>::SetCaption(const std::string& caption) {
  button_.setText(ToQString(caption));
  button_.setShortcut(QKeySequence());
}

template <typename Interface>
void QtButtonBase<Interface>::SetBackColor(Colour colour) {
  QPalette palette = button_.palette();
  palette.setColor(QPalette::Button, ToQColor(colour));
  button_.setPalette(palette);
}

template <typename Interface>
void QtButtonBase<Interface>::SetForeColor(Colour colour) {
  QPalette palette = button_.palette();
  palette.setColor(QPalette::ButtonText, ToQColor(colour));
  button_.setPalette(palette);
}

template <typename Interface>
void QtButtonBase<Interface>::SetFontBold(bool bold) {
  QFont font = button_.font();
  font.setBold(bold);
  button_.setFont(font);
}

template <typename Interface>
void QtButtonBase<Interface>::SetFontName(const std::string& name) {
  QFont font = button_.font();
  font.setFamily(DesktopFamily(name));
  button_.setFont(font);
}

template <typename Interface>
void QtButtonBase<Interface>::SetFontSize(float points) {
  if (points <= 0) return;
  QFont font = button_.font();
  font.setPointSizeF(points);
  button_.setFont(font);
}

template <typename Interface>
void QtButtonBase<Interface>::SetFontItalic(bool italic) {
  QFont font = button_.font();
  font.setItalic(italic);
  button_.setFont(font);
}

template class QtButtonBase<CommandButton>;
template class QtButtonBase<DialogButton>;

QtDialogButton::QtDialogButton(QPushButton& button)
    : QtButtonBase<DialogButton>(button),
      events_(std::make_unique<ButtonEvents>(
          button, ButtonHandlers{[this] { if (onClick_) onClick_(); }, nullptr, nullptr,
                                 [this] { if (onEnter_) onEnter_(); },
                                 [this] { if (onLeave_) onLeave_(); }})) {}

QtDialogButton::~QtDialogButton() = default;

class QtEditBox::KeyFilter : public QObject {
 public:
  explicit KeyFilter(QtEditBox& box) : box_(box) {}

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    return event->type() == QEvent::KeyPress && box_.KeyPress(*static_cast<QKeyEvent*>(event));
  }

 private:
  QtEditBox& box_;
};

QtEditBox::QtEditBox(QLineEdit& line)
    : QtControlBase<EditBox>(line), line_(&line), filter_(std::make_unique<KeyFilter>(*this)) {
  line.installEventFilter(filter_.get());
  changed_ = QObject::connect(&line, &QLineEdit::textChanged, [this] {
    if (onChange_) onChange_();
  });
}

QtEditBox::QtEditBox(QPlainTextEdit& lines)
    : QtControlBase<EditBox>(lines), lines_(&lines), filter_(std::make_unique<KeyFilter>(*this)) {
  lines.installEventFilter(filter_.get());
  changed_ = QObject::connect(&lines, &QPlainTextEdit::textChanged, [this] {
    if (onChange_) onChange_();
  });
}

QtEditBox::~QtEditBox() { QObject::disconnect(changed_); }

std::string QtEditBox::Text() const {
  if (line_) return FromQString(line_->text());
  QString text = lines_->toPlainText();
  text.replace('\n', "\r\n");
  return FromQString(text);
}

void QtEditBox::SetText(const std::string& text) {
  QString shown = ToQString(text);
  if (line_) {
    line_->setText(shown);
    return;
  }
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  lines_->setPlainText(shown);
}

// Shortcuts with CTRL or ALT make no character and are left to the widget.
bool QtEditBox::KeyPress(const QKeyEvent& event) {
  if (!onKeyPress_ || (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))) return false;
  const QString text = event.text();
  if (text.size() != 1 || text.at(0).unicode() > 0xFF) return false;
  const auto typed = static_cast<int16_t>(text.at(0).unicode());
  int16_t keyAscii = typed;
  onKeyPress_(keyAscii);
  if (keyAscii == typed) return false;
  if (keyAscii <= 0 || keyAscii > 0xFF) return true;
  const QString changed(QChar(static_cast<char16_t>(keyAscii)));
  if (line_) {
    line_->insert(changed);
  } else {
    lines_->insertPlainText(changed);
  }
  return true;
}

QtCommandButton& QtButtonArray::operator[](int16_t index) {
  const auto& item = items_.at(static_cast<size_t>(index));
  if (!item) throw std::out_of_range("no macro button " + std::to_string(index));
  return *item;
}

void QtButtonArray::Set(int16_t index, QPushButton& button) {
  items_.at(static_cast<size_t>(index)) = std::make_unique<QtCommandButton>(button);
}

// The disc stays round and sits at the top: the design draws the indicators
// taller than wide and lower than the tool bar, which cuts off their foot.
QtPictureBox::QtPictureBox(QLabel& label)
    : QtPlacedBase<PictureBox>(label), label_(label) {
  label_.setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  new ResizeFilter(label_, [this] {
    side_ = std::min(label_.width(), label_.height());
    label_.setPixmap(Face(shown_, side_));
  });
  label_.setPixmap(Face(shown_, side_));
}

void QtPictureBox::SetPicture(Picture picture) {
  if (picture == shown_) return;
  shown_ = picture;
  label_.setPixmap(Face(picture, side_));
}

QtTimer::QtTimer() {
  QObject::connect(&timer_, &QTimer::timeout, [this] {
    if (handler_) handler_();
  });
}

// As the old timer does, a new interval starts the count again.
void QtTimer::SetInterval(int32_t ms) {
  interval_ = ms;
  Restart();
}

void QtTimer::SetEnabled(bool enabled) {
  const bool wasEnabled = enabled_;
  enabled_ = enabled;
  if (enabled != wasEnabled) Restart();
}

void QtTimer::Restart() {
  if (enabled_ && interval_ > 0) {
    timer_.start(interval_);
  } else {
    timer_.stop();
  }
}

void QtEventPump::DoEvents() { QCoreApplication::processEvents(); }

// Above whichever window is active, so a dialog opened from a window that
// stays on top is not hidden behind it.
QWidget& QtCommonDialog::Parent() const {
  QWidget* active = QApplication::activeWindow();
  return active ? *active : owner_;
}

bool QtCommonDialog::ShowColor(Colour& colour) {
  const QColor chosen = QColorDialog::getColor(ToQColor(colour), &Parent());
  if (!chosen.isValid()) return false;
  colour = FromQColor(chosen);
  return true;
}

// Qt's font dialog has no colour of its own; a button beside it gives one.
bool QtCommonDialog::ShowFont(FontChoice& font) {
  QFont start(DesktopFamily(font.name));
  if (font.size > 0) start.setPointSizeF(font.size);
  start.setBold(font.bold);
  start.setItalic(font.italic);

  QDialog dialog(&Parent());
  dialog.setWindowTitle("Font");
  auto* column = new QVBoxLayout(&dialog);
  auto* fonts = new QFontDialog(start, &dialog);
  fonts->setOptions(QFontDialog::NoButtons | QFontDialog::DontUseNativeDialog);
  fonts->setWindowFlags(Qt::Widget);
  column->addWidget(fonts);
  auto* row = new QHBoxLayout;
  auto* colourButton = new QPushButton("Color...", &dialog);
  auto* swatch = new QLabel(&dialog);
  swatch->setFixedSize(48, 20);
  swatch->setAutoFillBackground(true);
  Colour colour = font.colour;
  const auto showColour = [swatch, &colour] {
    QPalette palette = swatch->palette();
    palette.setColor(QPalette::Window, ToQColor(colour));
    swatch->setPalette(palette);
  };
  showColour();
  QObject::connect(colourButton, &QPushButton::clicked, &dialog, [&dialog, &colour, showColour] {
    const QColor chosen = QColorDialog::getColor(ToQColor(colour), &dialog);
    if (!chosen.isValid()) return;
    colour = FromQColor(chosen);
    showColour();
  });
  row->addWidget(colourButton);
  row->addWidget(swatch);
  row->addStretch();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  row->addWidget(buttons);
  column->addLayout(row);
  if (dialog.exec() != QDialog::Accepted) return false;

  const QFont chosen = fonts->currentFont();
  font.name = FromQString(chosen.family());
  font.size = static_cast<float>(chosen.pointSizeF());
  font.bold = chosen.bold();
  font.italic = chosen.italic();
  font.colour = colour;
  return true;
}

QtComboBox::QtComboBox(QComboBox& combo) : QtPlacedBase<ComboBox>(combo), combo_(combo) {
  QObject::connect(&combo_, QOverload<int>::of(&QComboBox::activated), [this](int) {
    if (onClick_) onClick_();
  });
}

std::string QtComboBox::Text() const { return FromQString(combo_.currentText()); }
int16_t QtComboBox::ListCount() const { return static_cast<int16_t>(combo_.count()); }
void QtComboBox::AddItem(const std::string& item, int16_t index) {
  combo_.insertItem(index, ToQString(item));
}
void QtComboBox::RemoveItem(int16_t index) { combo_.removeItem(index); }
void QtComboBox::SetItemNote(int16_t index, const std::string& note) {
  combo_.setItemData(index, ToQString(note), Qt::ToolTipRole);
}
int16_t QtComboBox::ListIndex() const { return static_cast<int16_t>(combo_.currentIndex()); }

// Set by the program, not by the operator: Qt gives no signal for that.
void QtComboBox::SetListIndex(int16_t index) {
  combo_.setCurrentIndex(index);
  if (onClick_) onClick_();
}

// A press that moves the selection has clicked already, by the row's
// change, as the arrow keys do; a press on the entry already chosen clicks
// on its release.
QtListBox::QtListBox(QListWidget& list) : QtControlBase<ListBox>(list), list_(list) {
  QObject::connect(&list_, &QListWidget::currentRowChanged, [this](int) {
    if (!settingIndex_ && onClick_) onClick_();
  });
  new MousePressFilter(*list_.viewport(), [this](int16_t) { rowAtPress_ = list_.currentRow(); });
  QObject::connect(&list_, &QListWidget::itemClicked, [this](QListWidgetItem* item) {
    if (list_.row(item) == rowAtPress_ && onClick_) onClick_();
  });
}

void QtListBox::AddItem(const std::string& item) { list_.addItem(ToQString(item)); }
int16_t QtListBox::ListCount() const { return static_cast<int16_t>(list_.count()); }
std::string QtListBox::List(int16_t index) const {
  const QListWidgetItem* item = list_.item(index);
  return item ? FromQString(item->text()) : "";
}
int16_t QtListBox::ListIndex() const { return static_cast<int16_t>(list_.currentRow()); }

// Set by the program: the click runs once, here, not from the change of row.
void QtListBox::SetListIndex(int16_t index) {
  const bool entry = index >= 0 && index < ListCount();
  settingIndex_ = true;
  list_.setCurrentRow(entry ? index : -1);
  settingIndex_ = false;
  if (entry && onClick_) onClick_();
}

}  // namespace vantrel::platform::qt
