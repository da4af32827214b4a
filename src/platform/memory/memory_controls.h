// Menu items, a plain control and the status panel, in memory, each telling
// the trace what happens to it.
#pragma once

#include <string>

#include "platform/controls.h"
#include "platform/memory/trace.h"

namespace vantrel::platform::memory {

class MemoryMenuItem : public MenuItem {
 public:
  MemoryMenuItem(Trace& trace, std::string name) : trace_(trace), name_(std::move(name)) {}

  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override {
    enabled_ = enabled;
    trace_.Emit("menu " + name_ + (enabled ? " enabled" : " disabled"));
  }
  bool Checked() const override { return checked_; }
  void SetChecked(bool checked) override {
    checked_ = checked;
    trace_.Emit("menu " + name_ + (checked ? " checked" : " unchecked"));
  }

 private:
  Trace& trace_;
  std::string name_;
  bool enabled_ = true;
  bool checked_ = false;
};

class MemoryControl : public Control {
 public:
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override { enabled_ = enabled; }

 private:
  bool enabled_ = true;
};

class MemoryStatusPanel : public StatusPanel {
 public:
  explicit MemoryStatusPanel(Trace& trace) : trace_(trace) {}

  std::string Caption() const override { return caption_; }
  void SetCaption(const std::string& caption) override {
    caption_ = caption;
    trace_.Emit("status " + Trace::Quote(caption));
  }

 private:
  Trace& trace_;
  std::string caption_;
};

}  // namespace vantrel::platform::memory
