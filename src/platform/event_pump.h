#pragma once

namespace vantrel::platform {

// Lets queued window events run, nested inside the caller.
class EventPump {
 public:
  virtual ~EventPump() = default;
  virtual void DoEvents() = 0;
};

}  // namespace vantrel::platform
