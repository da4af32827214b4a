// The rich text box over a QTextEdit, with the caret rules the logic counts
// on: moving the caret empties the selection and takes up the colour of the
// character before it; a colour set with nothing selected is the colour of
// what is inserted next; OnChange runs once per change of the text, whoever
// made it, and never for a change of colour alone.
#pragma once

#include <QMetaObject>
#include <QTextCursor>
#include <functional>
#include <string>

#include "platform/qt/qt_controls.h"
#include "platform/text_box.h"

class QTextEdit;

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

  int Length() const;
  void SetCaret(QTextCursor cursor);
  void UseInsertColour(Colour colour);
  void TextMayHaveChanged();
  // The document's text now, read afresh: the whole of it, so only when the
  // characters may have changed.
  std::string DocumentText() const;
  void NoteContentsChange(int position, int removed, int added);

  QTextEdit& edit_;
  Colour insertColour_;
  Colour backColor_ = 0xFFFFFF;
  // The text as of the last change reported; current unless `textChanged_`
  // says the characters have changed since.
  std::string lastText_;
  bool charactersChanged_ = false;
  int editing_ = 0;
  std::function<void()> onChange_;
  QMetaObject::Connection textChanged_;
  QMetaObject::Connection cursorMoved_;
  QMetaObject::Connection contentsChanged_;
};

}  // namespace vantrel::platform::qt
