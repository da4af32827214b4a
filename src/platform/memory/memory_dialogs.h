// The keyer's dialogs in memory: each control tells the trace, under its
// form's name and its own, what an operator would see change, and offers the
// operator's actions (a click, a slider moved, text typed) to tests and the runner.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialog_controls.h"
#include "platform/keyer_setup_controls.h"
#include "platform/memory/event_queue.h"
#include "platform/memory/trace.h"
#include "platform/serial_port_list.h"

namespace vantrel::platform::memory {

// Enabled and Visible, traced as they change, for a control that knows its name.
template <typename Interface>
class MemoryNamed : public Interface {
 public:
  MemoryNamed(Trace& trace, std::string name) : trace_(trace), name_(std::move(name)) {}
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override {
    if (enabled != enabled_) Emit(enabled ? "enabled" : "disabled");
    enabled_ = enabled;
  }
  bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override {
    if (visible != visible_) Emit(visible ? "shown" : "hidden");
    visible_ = visible;
  }
  const std::string& name() const { return name_; }

 protected:
  void Emit(const std::string& what) { trace_.Emit(name_ + " " + what); }

 private:
  Trace& trace_;
  std::string name_;
  bool enabled_ = true;
  bool visible_ = true;
};

class MemoryLabel : public MemoryNamed<Label> {
 public:
  using MemoryNamed::MemoryNamed;
  std::string Caption() const override { return caption_; }
  void SetCaption(const std::string& caption) override {
    if (caption != caption_) Emit(Trace::Quote(caption));
    caption_ = caption;
  }

 private:
  std::string caption_;
};

class MemoryCheckBox : public MemoryNamed<CheckBox> {
 public:
  using MemoryNamed::MemoryNamed;
  bool Value() const override { return value_; }
  void SetValue(bool ticked) override {
    if (ticked != value_) Emit(ticked ? "ticked" : "unticked");
    value_ = ticked;
  }
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }
  // The operator's click: the tick turns over, then the handler runs.
  void Click() {
    if (!Enabled()) return;
    SetValue(!value_);
    if (onClick_) onClick_();
  }

 private:
  bool value_ = false;
  std::function<void()> onClick_;
};

class MemorySlider : public MemoryNamed<Slider> {
 public:
  MemorySlider(Trace& trace, std::string name, int32_t min, int32_t max)
      : MemoryNamed(trace, std::move(name)), min_(min), max_(max), value_(min) {}
  int32_t Value() const override { return value_; }
  void SetValue(int32_t value) override {
    value = std::clamp(value, min_, max_);
    if (value != value_) Emit(std::to_string(value));
    value_ = value;
  }
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }
  // The operator drags it to `value`.
  void Move(int32_t value) {
    if (!Enabled()) return;
    SetValue(value);
    if (onChange_) onChange_();
  }

 private:
  int32_t min_, max_, value_;
  std::function<void()> onChange_;
};

class MemoryTextField : public MemoryNamed<TextField> {
 public:
  using MemoryNamed::MemoryNamed;
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    if (text != text_) Emit(Trace::Quote(text));
    text_ = text;
    selStart_ = selLength_ = 0;
  }
  void SetSelStart(int start) override {
    selStart_ = std::clamp(start, 0, static_cast<int>(text_.size()));
    selLength_ = 0;
  }
  void SetSelLength(int length) override {
    selLength_ = std::clamp(length, 0, static_cast<int>(text_.size()) - selStart_);
  }
  std::string SelText() const override { return text_.substr(selStart_, selLength_); }
  void SetFocus() override {
    focused = true;
    if (onGotFocus_) onGotFocus_();
  }
  void OnGotFocus(std::function<void()> handler) override { onGotFocus_ = std::move(handler); }
  void OnKeyPress(std::function<void(int16_t&)> handler) override { onKeyPress_ = std::move(handler); }

  // The operator's keys: each goes through the key press handler, and what
  // is left replaces the selection or deletes before the caret.
  void Type(const std::string& keys) {
    std::string text = text_;
    for (const char key : keys) {
      int16_t code = static_cast<unsigned char>(key);
      if (onKeyPress_) onKeyPress_(code);
      if (code == 0) continue;
      text.erase(static_cast<size_t>(selStart_), static_cast<size_t>(selLength_));
      if (code == 8) {
        if (selLength_ == 0 && selStart_ > 0) text.erase(static_cast<size_t>(--selStart_), 1);
      } else {
        text.insert(text.begin() + selStart_++, static_cast<char>(code));
      }
      selLength_ = 0;
    }
    const int caret = selStart_;
    SetText(text);
    selStart_ = caret;
  }
  // Focus, all selected, and the keys typed over it.
  void Enter(const std::string& keys) {
    SetFocus();
    selStart_ = 0;
    selLength_ = static_cast<int>(text_.size());
    Type(keys);
  }

  bool focused = false;

 private:
  std::string text_;
  int selStart_ = 0;
  int selLength_ = 0;
  std::function<void()> onGotFocus_;
  std::function<void(int16_t&)> onKeyPress_;
};

class MemoryButton : public MemoryNamed<Button> {
 public:
  using MemoryNamed::MemoryNamed;
  void SetFocus() override { focused = true; }
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }
  void OnMouseDown(std::function<void()> handler) override { onDown_ = std::move(handler); }
  void OnMouseUp(std::function<void()> handler) override { onUp_ = std::move(handler); }
  void Press() {
    if (Enabled() && onDown_) onDown_();
  }
  void Release() {
    if (Enabled() && onUp_) onUp_();
  }
  // Press, release, then the click; a greyed button takes none of them.
  void Click() {
    if (!Enabled()) return;
    Press();
    Release();
    if (onClick_) onClick_();
  }

  bool focused = false;

 private:
  std::function<void()> onClick_, onDown_, onUp_;
};

class MemoryEditComboBox : public MemoryNamed<EditComboBox> {
 public:
  using MemoryNamed::MemoryNamed;
  void Clear() override { items.clear(); }
  void AddItem(const std::string& item, const std::string& note) override { items.emplace_back(item, note); }
  int16_t ListCount() const override { return static_cast<int16_t>(items.size()); }
  std::string List(int16_t index) const override { return items.at(static_cast<size_t>(index)).first; }
  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override {
    if (text != text_) Emit(Trace::Quote(text));
    text_ = text;
    if (onChange_) onChange_();
  }
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }
  void Enter(const std::string& text) {
    if (Enabled()) SetText(text);
  }

  std::vector<std::pair<std::string, std::string>> items;

 private:
  std::string text_;
  std::function<void()> onChange_;
};

class MemoryProgressBar : public MemoryNamed<ProgressBar> {
 public:
  using MemoryNamed::MemoryNamed;
  void SetValue(int value) override { this->value = value; }
  int value = 0;
};

// A dialog window on a screen of 1024 by 768 pixels.
class MemoryDialogWindow : public DialogWindow {
 public:
  MemoryDialogWindow(Trace& trace, std::string name, float width, float height)
      : trace_(trace), name_(std::move(name)), width_(width), height_(height) {}
  float Width() const override { return width_; }
  float Height() const override { return height_; }
  float ScreenWidth() const override { return 15360; }
  float ScreenHeight() const override { return 11520; }
  void Move(float left, float top) override {
    this->left = left;
    this->top = top;
  }
  void SetTopmost(bool topmost) override {
    this->topmost = topmost;
    Emit(topmost ? "topmost on" : "topmost off");
  }
  void SetMousePointer(DialogPointer pointer) override {
    Emit(pointer == DialogPointer::NoDrop ? "pointer nodrop" : "pointer default");
  }
  void MsgBox(const std::string& text, int /*style*/, const std::string& title) override {
    Emit("msgbox " + Trace::Quote(title) + " " + Trace::Quote(text));
  }
  void Unload() override {
    if (!open) return;
    open = false;
    Emit("closed");
    if (onUnload_) onUnload_();
  }
  void OnUnload(std::function<void()> handler) override { onUnload_ = std::move(handler); }
  void Show() {
    open = true;
    Emit("shown");
  }

  bool open = false;
  bool topmost = false;
  float left = 0, top = 0;

 private:
  void Emit(const std::string& what) { trace_.Emit(name_ + " " + what); }

  Trace& trace_;
  std::string name_;
  float width_, height_;
  std::function<void()> onUnload_;
};

class MemoryCalibrateForm : public CalibrateForm {
 public:
  explicit MemoryCalibrateForm(Trace& trace)
      : window(trace, "frmCalibrate", 6000, 2400),
        Label1(trace, "frmCalibrate Label1"),
        Label2(trace, "frmCalibrate Label2") {}
  void Show(const std::function<void(CalibrateControls&)>& load) override {
    if (window.open) return;
    Label1.SetCaption("");
    Label2.SetCaption("");
    CalibrateControls controls{window, Label1, Label2};
    load(controls);
    window.Show();
  }

  MemoryDialogWindow window;
  MemoryLabel Label1;
  MemoryLabel Label2;
};

// A fixed list of serial devices.
class MemorySerialPortList : public SerialPortList {
 public:
  std::vector<SerialPortChoice> SerialPorts() const override { return ports; }
  std::string LinkFolder() const override { return "/vantrel"; }
  std::vector<SerialPortChoice> ports;
};

// Every control of "Keyer setup" with its design range, and the result
// window it owns. Controls are also found by name, as the runner names them.
class MemoryKeyerSetup {
 public:
  MemoryKeyerSetup(Trace& trace, EventQueue& queue);

  KeyerSetupControls controls();
  // An operator's action on the named control: a click on a button or a check
  // box, a value for a slider, text typed into a text box or the combo box.
  // False when the name is none of the dialog's, or the action does not suit it.
  bool Click(const std::string& name);
  bool Enter(const std::string& name, const std::string& value);
  static bool KnownControl(const std::string& name);

  MemoryDialogWindow frmPort;
  MemorySlider DotLengthSlider;
  MemoryLabel lbl;
  MemorySlider Pitch;
  MemoryTextField Text2, Text3, Text4, Text5, Text6;
  MemoryLabel Label2, Label10;
  MemoryEditComboBox cmbPort;
  MemoryLabel lblDevice;
  MemoryCheckBox CheckParallel, CheckSharedSerial, CheckSerial, Check5, ckSlowTyping, Chk6, ckSidetone;
  MemoryButton btnTest, ARButton1, ARButton2, btnOK, btnCancel;
  MemoryLabel lblProgress;
  MemoryProgressBar prgTest;
  MemoryButton btnStopTest;
  MemoryTimer ProgressTimer;
  MemoryCalibrateForm frmCalibrate;
};

}  // namespace vantrel::platform::memory
