// The rich text box over a QTextEdit, with the caret rules the logic counts
// on: moving the caret empties the selection and takes up the colour of the
// character before it; a colour set with nothing selected is the colour of
// what is inserted next; OnChange runs once per change of the text, whoever
// made it, and never for a change of colour alone.
//
// The document holds the characters only. Their colours are kept here and
// painted over them as extra selections: a colour in the document's own
// formats makes Qt lay the whole paragraph out again, which on a long
// transmission costs more with every character marked.
#pragma once

#include <QMetaObject>
#include <QTextEdit>
#include <QTextCursor>
#include <functional>
#include <optional>
#include <string>

#include "platform/qt/qt_controls.h"
#include "platform/text_box.h"
#include "platform/text_colours.h"

namespace vantrel::platform::qt {

class QtTextBox : public QtPlacedBase<TextBox> {
 public:
  explicit QtTextBox(QTextEdit& edit, Colour initialColour = 0);
  ~QtTextBox() override;
  QtTextBox(const QtTextBox&) = delete;
  QtTextBox& operator=(const QtTextBox&) = delete;

  std::string Text() const override;
  void SetText(const std::string& text) override;
  int SelStart() const override;
  void SetSelStart(int start) override;
  int SelLength() const override;
  void SetSelLength(int length) override;
  void SetSelText(const std::string& text) override;
  void SetSelColor(Colour colour) override;
  void SetRedraw(bool on) override;
  void Refresh() override;
  Colour BackColor() const override { return backColor_; }
  void SetBackColor(Colour colour) override;
  std::string FontName() const override;
  float FontSize() const override;
  bool FontBold() const override;
  bool FontItalic() const override;
  void SetFontName(const std::string& name) override;
  void SetFontSize(float points) override;
  void SetFontBold(bool bold) override;
  void SetFontItalic(bool italic) override;
  void SetFocus() override;
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }

  Colour ColourAt(int offset) const;
  Colour InsertColour() const { return insertColour_; }
  QTextEdit& edit() const { return edit_; }

 private:
  // An edit made by the logic: the widget's own signals wait until it is
  // whole, so the handler sees the caret where the edit leaves it.
  class Edit;

  struct Span {
    int start;
    int length;
  };

  int Length() const;
  Span Selection() const;
  // Moves the caret without the operator's colour rule, which the logic's
  // moves apply themselves.
  void Select(Span span);
  void ColoursChanged();
  void TextMayHaveChanged();
  // The document's text now, read afresh: the whole of it, so only when the
  // characters may have changed.
  std::string DocumentText() const;
  void NoteContentsChange(int position, int removed);
  // Hands the colours to the widget in pieces that never cross a multiple
  // of `kPiece`: a step of the marking changes a few short pieces, and the
  // widget repaints only those. A piece whose place and colour stay is
  // handed over as it was, so its cursor is not made again.
  void PaintColours();
  static constexpr int kPiece = 1024;

  QTextEdit& edit_;
  Colour insertColour_;
  Colour backColor_ = 0xFFFFFF;
  // The font's name as the logic gave it, which the widget may draw in
  // another face of the desktop's.
  std::string fontName_;
  TextColours colours_;
  QList<QTextEdit::ExtraSelection> painted_;
  // The caret while redraw is off, and whether colours wait to be painted.
  std::optional<Span> held_;
  bool coloursHeld_ = false;
  // The text as of the last change reported; current unless
  // `charactersChanged_` says the characters have changed since.
  std::string lastText_;
  bool charactersChanged_ = false;
  int editing_ = 0;
  std::function<void()> onChange_;
  QMetaObject::Connection textChanged_;
  QMetaObject::Connection cursorMoved_;
  QMetaObject::Connection contentsChanged_;
};

}  // namespace vantrel::platform::qt
