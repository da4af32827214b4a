#include "platform/qt/qt_text_box.h"

#include <QTextDocument>
#include <QTextEdit>
#include <algorithm>

#include "platform/qt/qt_fonts.h"

namespace vantrel::platform::qt {

class QtTextBox::Edit {
 public:
  explicit Edit(QtTextBox& box) : box_(box) { ++box_.editing_; }
  ~Edit() {
    if (--box_.editing_ > 0) return;
    if (box_.charactersChanged_) box_.ColoursChanged();
    box_.TextMayHaveChanged();
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
  lastText_ = DocumentText();
  colours_.Replace(0, 0, Length(), insertColour_);
  PaintColours();
  contentsChanged_ = QObject::connect(
      edit_.document(), &QTextDocument::contentsChange,
      [this](int position, int removed, int) { NoteContentsChange(position, removed); });
  textChanged_ = QObject::connect(&edit_, &QTextEdit::textChanged, [this] {
    if (editing_ == 0) TextMayHaveChanged();
  });
  // The operator's clicks and arrow keys follow the caret rule as well.
  cursorMoved_ = QObject::connect(&edit_, &QTextEdit::cursorPositionChanged, [this] {
    if (editing_ > 0) return;
    const QTextCursor cursor = edit_.textCursor();
    if (!cursor.hasSelection() && cursor.position() > 0) {
      insertColour_ = ColourAt(cursor.position() - 1);
    }
  });
}

QtTextBox::~QtTextBox() {
  QObject::disconnect(textChanged_);
  QObject::disconnect(cursorMoved_);
  QObject::disconnect(contentsChanged_);
}

// The document holds no formats, so whatever it reports is a change of the
// characters; new ones take the colour of inserting, as typed ones do.
void QtTextBox::NoteContentsChange(int position, int removed) {
  charactersChanged_ = true;
  const int before = colours_.Length();
  const int after = Length();
  // A change of the whole document counts its closing paragraph mark too.
  position = std::min(position, before);
  removed = std::min(removed, before - position);
  colours_.Replace(position, removed, after - before + removed, insertColour_);
  if (editing_ == 0) ColoursChanged();
}

void QtTextBox::PaintColours() {
  QList<QTextEdit::ExtraSelection> pieces;
  auto reuse = painted_.cbegin();
  const auto add = [&](int start, int end, const QTextCharFormat& format) {
    while (reuse != painted_.cend() && reuse->cursor.selectionStart() < start) ++reuse;
    if (reuse != painted_.cend() && reuse->cursor.selectionStart() == start &&
        reuse->cursor.selectionEnd() == end && reuse->format == format) {
      pieces.append(*reuse);
      return;
    }
    QTextEdit::ExtraSelection piece{QTextCursor(edit_.document()), format};
    piece.cursor.setPosition(start);
    piece.cursor.setPosition(end, QTextCursor::KeepAnchor);
    pieces.append(piece);
  };
  // The widget leaves out a piece of text colour alone that touches one
  // drawn before it; one with a background of its own is always drawn.
  QTextCharFormat format;
  format.setBackground(edit_.palette().color(QPalette::Base));
  int start = 0;
  for (const TextColours::Run& run : colours_.Runs()) {
    format.setForeground(ToQColor(run.colour));
    for (int at = start, end = start + run.length; at < end;) {
      const int next = std::min(end, (at / kPiece + 1) * kPiece);
      add(at, next, format);
      at = next;
    }
    start += run.length;
  }
  painted_ = pieces;
  coloursHeld_ = false;
  edit_.setExtraSelections(pieces);
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

QtTextBox::Span QtTextBox::Selection() const {
  if (held_) return *held_;
  const QTextCursor cursor = edit_.textCursor();
  return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
}

void QtTextBox::Select(Span span) {
  if (held_) {
    *held_ = span;
    return;
  }
  Edit edit(*this);
  QTextCursor cursor = edit_.textCursor();
  cursor.setPosition(span.start);
  cursor.setPosition(span.start + span.length, QTextCursor::KeepAnchor);
  edit_.setTextCursor(cursor);
}

void QtTextBox::ColoursChanged() {
  if (held_) {
    coloursHeld_ = true;
  } else {
    PaintColours();
  }
}

void QtTextBox::SetText(const std::string& text) {
  Edit edit(*this);
  const int keep = SelStart();
  QTextCursor cursor(edit_.document());
  cursor.beginEditBlock();
  cursor.select(QTextCursor::Document);
  cursor.insertText(ToQString(text));
  cursor.endEditBlock();
  Select({std::min(keep, Length()), 0});
}

int QtTextBox::SelStart() const { return Selection().start; }

int QtTextBox::SelLength() const { return Selection().length; }

void QtTextBox::SetSelStart(int start) {
  const int clamped = std::clamp(start, 0, Length());
  if (clamped != SelStart() && clamped > 0) insertColour_ = ColourAt(clamped - 1);
  Select({clamped, 0});
}

void QtTextBox::SetSelLength(int length) {
  const int start = SelStart();
  Select({start, std::clamp(length, 0, Length() - start)});
}

void QtTextBox::SetSelText(const std::string& text) {
  Edit edit(*this);
  const Span selection = Selection();
  QTextCursor cursor(edit_.document());
  cursor.setPosition(selection.start);
  cursor.setPosition(selection.start + selection.length, QTextCursor::KeepAnchor);
  cursor.beginEditBlock();
  cursor.insertText(ToQString(text));
  cursor.endEditBlock();
  Select({selection.start + static_cast<int>(text.size()), 0});
}

void QtTextBox::SetSelColor(Colour colour) {
  const Span selection = Selection();
  if (selection.length == 0) {
    insertColour_ = colour;
    return;
  }
  colours_.Recolour(selection.start, selection.length, colour);
  ColoursChanged();
}

Colour QtTextBox::ColourAt(int offset) const { return colours_.At(offset); }

// With redraw off the widget is left alone: the caret and the colours wait
// here, and reach it once when redraw comes back, as one repaint.
void QtTextBox::SetRedraw(bool on) {
  if (!on && !held_) {
    held_ = Selection();
  } else if (on && held_) {
    const Span span = *held_;
    held_.reset();
    Select(span);
    if (coloursHeld_) PaintColours();
  }
  edit_.setUpdatesEnabled(on);
}

void QtTextBox::Refresh() { edit_.viewport()->update(); }

void QtTextBox::SetBackColor(Colour colour) {
  backColor_ = colour;
  QPalette palette = edit_.palette();
  palette.setColor(QPalette::Base, ToQColor(colour));
  edit_.setPalette(palette);
  ColoursChanged();
}

std::string QtTextBox::FontName() const {
  return fontName_.empty() ? FromQString(edit_.font().family()) : fontName_;
}
float QtTextBox::FontSize() const { return static_cast<float>(edit_.font().pointSizeF()); }
bool QtTextBox::FontBold() const { return edit_.font().bold(); }
bool QtTextBox::FontItalic() const { return edit_.font().italic(); }

void QtTextBox::SetFontName(const std::string& name) {
  fontName_ = name;
  QFont font = edit_.font();
  font.setFamily(DesktopFamily(name));
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
