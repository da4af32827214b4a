#include "platform/qt/qt_text_box.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <algorithm>

namespace vantrel::platform::qt {

class QtTextBox::Edit {
 public:
  explicit Edit(QtTextBox& box) : box_(box) { ++box_.editing_; }
  ~Edit() {
    if (--box_.editing_ == 0) box_.TextMayHaveChanged();
  }
  Edit(const Edit&) = delete;
  Edit& operator=(const Edit&) = delete;

 private:
  QtTextBox& box_;
};

QtTextBox::QtTextBox(QTextEdit& edit, Colour initialColour)
    : QtPlacedBase<TextBox>(edit), edit_(edit), insertColour_(initialColour) {
  edit_.setAcceptRichText(false);
  // The logic rewrites the text and its colours all the time; an undo of
  // that would only confuse the send loop.
  edit_.setUndoRedoEnabled(false);
  UseInsertColour(insertColour_);
  lastText_ = DocumentText();
  // A colour change is a contents change too, of the same length: only a
  // change of the characters makes the text worth reading again, which keeps
  // marking a long text cheap.
  contentsChanged_ = QObject::connect(edit_.document(), &QTextDocument::contentsChange,
                                      [this](int position, int removed, int added) {
                                        NoteContentsChange(position, removed, added);
                                      });
  textChanged_ = QObject::connect(&edit_, &QTextEdit::textChanged, [this] {
    if (editing_ == 0) TextMayHaveChanged();
  });
  // The operator's clicks and arrow keys follow the caret rule as well.
  cursorMoved_ = QObject::connect(&edit_, &QTextEdit::cursorPositionChanged, [this] {
    if (editing_ > 0) return;
    const QTextCursor cursor = edit_.textCursor();
    if (!cursor.hasSelection() && cursor.position() > 0) {
      UseInsertColour(ColourAt(cursor.position() - 1));
    }
  });
}

QtTextBox::~QtTextBox() {
  QObject::disconnect(textChanged_);
  QObject::disconnect(cursorMoved_);
  QObject::disconnect(contentsChanged_);
}

// A change of colour alone also makes the widget say its text changed;
// only a change of the characters counts.
void QtTextBox::NoteContentsChange(int position, int removed, int added) {
  if (charactersChanged_) return;
  if (removed != added || position + added > static_cast<int>(lastText_.size())) {
    charactersChanged_ = true;
    return;
  }
  QTextCursor range(edit_.document());
  range.setPosition(position);
  range.setPosition(position + added, QTextCursor::KeepAnchor);
  QString now = range.selectedText();
  now.replace(QChar::ParagraphSeparator, u'\n');
  now.replace(QChar::LineSeparator, u'\n');
  charactersChanged_ = FromQString(now) != lastText_.substr(position, added);
}

void QtTextBox::TextMayHaveChanged() {
  if (!charactersChanged_) return;
  charactersChanged_ = false;
  std::string now = DocumentText();
  if (now == lastText_) return;
  lastText_ = std::move(now);
  if (onChange_) onChange_();
}

std::string QtTextBox::Text() const { return charactersChanged_ ? DocumentText() : lastText_; }

// The raw text, as plain text would turn a no-break space (160) into a blank.
std::string QtTextBox::DocumentText() const {
  QString text = edit_.document()->toRawText();
  text.replace(QChar::ParagraphSeparator, u'\n');
  text.replace(QChar::LineSeparator, u'\n');
  return FromQString(text);
}

int QtTextBox::Length() const { return edit_.document()->characterCount() - 1; }

void QtTextBox::SetCaret(QTextCursor cursor) { edit_.setTextCursor(cursor); }

void QtTextBox::UseInsertColour(Colour colour) {
  insertColour_ = colour;
  QTextCharFormat format;
  format.setForeground(ToQColor(colour));
  // Typing takes the colour from here; with a selection it would recolour it.
  if (!edit_.textCursor().hasSelection()) edit_.setCurrentCharFormat(format);
}

void QtTextBox::SetText(const std::string& text) {
  Edit edit(*this);
  const int keep = SelStart();
  QTextCursor cursor(edit_.document());
  cursor.beginEditBlock();
  cursor.select(QTextCursor::Document);
  QTextCharFormat format;
  format.setForeground(ToQColor(insertColour_));
  cursor.insertText(ToQString(text), format);
  cursor.endEditBlock();
  cursor.setPosition(std::min(keep, Length()));
  SetCaret(cursor);
  UseInsertColour(insertColour_);
}

int QtTextBox::SelStart() const { return edit_.textCursor().selectionStart(); }

int QtTextBox::SelLength() const {
  const QTextCursor cursor = edit_.textCursor();
  return cursor.selectionEnd() - cursor.selectionStart();
}

void QtTextBox::SetSelStart(int start) {
  Edit edit(*this);
  const int clamped = std::clamp(start, 0, Length());
  Colour colour = insertColour_;
  if (clamped != SelStart() && clamped > 0) colour = ColourAt(clamped - 1);
  QTextCursor cursor = edit_.textCursor();
  cursor.setPosition(clamped);
  SetCaret(cursor);
  UseInsertColour(colour);
}

void QtTextBox::SetSelLength(int length) {
  Edit edit(*this);
  const int start = SelStart();
  QTextCursor cursor = edit_.textCursor();
  cursor.setPosition(start);
  cursor.setPosition(start + std::clamp(length, 0, Length() - start), QTextCursor::KeepAnchor);
  SetCaret(cursor);
}

void QtTextBox::SetSelText(const std::string& text) {
  Edit edit(*this);
  QTextCursor cursor = edit_.textCursor();
  const int start = cursor.selectionStart();
  cursor.beginEditBlock();
  QTextCharFormat format;
  format.setForeground(ToQColor(insertColour_));
  cursor.insertText(ToQString(text), format);
  cursor.endEditBlock();
  cursor.setPosition(start + static_cast<int>(text.size()));
  SetCaret(cursor);
  UseInsertColour(insertColour_);
}

void QtTextBox::SetSelColor(Colour colour) {
  QTextCursor cursor = edit_.textCursor();
  if (!cursor.hasSelection()) {
    UseInsertColour(colour);
    return;
  }
  Edit edit(*this);
  QTextCharFormat format;
  format.setForeground(ToQColor(colour));
  cursor.mergeCharFormat(format);
}

Colour QtTextBox::ColourAt(int offset) const {
  QTextCursor cursor(edit_.document());
  cursor.setPosition(offset);
  cursor.setPosition(offset + 1, QTextCursor::KeepAnchor);
  const QBrush brush = cursor.charFormat().foreground();
  return brush.style() == Qt::NoBrush ? FromQColor(edit_.palette().color(QPalette::Text))
                                      : FromQColor(brush.color());
}

void QtTextBox::SetRedraw(bool on) { edit_.setUpdatesEnabled(on); }

void QtTextBox::Refresh() { edit_.viewport()->update(); }

void QtTextBox::SetBackColor(Colour colour) {
  backColor_ = colour;
  QPalette palette = edit_.palette();
  palette.setColor(QPalette::Base, ToQColor(colour));
  edit_.setPalette(palette);
}

std::string QtTextBox::FontName() const { return FromQString(edit_.font().family()); }
float QtTextBox::FontSize() const { return static_cast<float>(edit_.font().pointSizeF()); }
bool QtTextBox::FontBold() const { return edit_.font().bold(); }
bool QtTextBox::FontItalic() const { return edit_.font().italic(); }

void QtTextBox::SetFontName(const std::string& name) {
  QFont font = edit_.font();
  font.setFamily(ToQString(name));
  edit_.setFont(font);
}

void QtTextBox::SetFontSize(float points) {
  if (points <= 0) return;
  QFont font = edit_.font();
  font.setPointSizeF(points);
  edit_.setFont(font);
}

void QtTextBox::SetFontBold(bool bold) {
  QFont font = edit_.font();
  font.setBold(bold);
  edit_.setFont(font);
}

void QtTextBox::SetFontItalic(bool italic) {
  QFont font = edit_.font();
  font.setItalic(italic);
  edit_.setFont(font);
}

void QtTextBox::SetFocus() { edit_.setFocus(); }

}  // namespace vantrel::platform::qt
