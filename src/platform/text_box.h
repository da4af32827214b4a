// A rich text box: text of 8-bit characters, a colour per character, and a
// selection that is also the caret. Positions here are 0-based offsets.
#pragma once

#include <functional>
#include <string>

#include "platform/controls.h"

namespace vantrel::platform {

class TextBox : public PlacedControl {
 public:
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;

  virtual int SelStart() const = 0;
  // Moving the caret empties the selection.
  virtual void SetSelStart(int start) = 0;
  virtual int SelLength() const = 0;
  virtual void SetSelLength(int length) = 0;
  virtual void SetSelText(const std::string& text) = 0;
  // With an empty selection this is the colour of what is inserted next.
  virtual void SetSelColor(Colour colour) = 0;

  virtual void SetRedraw(bool on) = 0;
  virtual void Refresh() = 0;

  virtual Colour BackColor() const = 0;
  virtual void SetBackColor(Colour colour) = 0;
  virtual std::string FontName() const = 0;
  virtual float FontSize() const = 0;
  virtual bool FontBold() const = 0;
  virtual bool FontItalic() const = 0;
  virtual void SetFontName(const std::string& name) = 0;
  virtual void SetFontSize(float points) = 0;
  virtual void SetFontBold(bool bold) = 0;
  virtual void SetFontItalic(bool italic) = 0;
  virtual void SetFocus() = 0;

  // Runs after every change of the text, whoever made it.
  virtual void OnChange(std::function<void()> handler) = 0;
};

}  // namespace vantrel::platform
