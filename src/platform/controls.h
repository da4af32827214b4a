// The controls of a window as the logic reaches them by name.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vantrel::platform {

using Colour = int32_t;  // Windows RGB: low byte red

class Control {
 public:
  virtual ~Control() = default;
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
};

class MenuItem : public Control {
 public:
  virtual bool Checked() const = 0;
  virtual void SetChecked(bool checked) = 0;
};

class StatusPanel {
 public:
  virtual ~StatusPanel() = default;
  virtual std::string Caption() const = 0;
  virtual void SetCaption(const std::string& caption) = 0;
};

// A timer with the old rule that an interval of 0 never fires, even enabled.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual int32_t Interval() const = 0;
  virtual void SetInterval(int32_t ms) = 0;
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual void OnTimer(std::function<void()> handler) = 0;
};

}  // namespace vantrel::platform
