// The logger link: the shared block read by polling, slots written back,
// events posted, and the commands the logger leaves in its control slot.
#pragma once

#include <cstdint>
#include <string>

#include "platform/link_channel.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "state/link_state.h"

namespace vantrel::loggerlink {

// What the logger's commands do to the main window, which the front end
// that owns the window provides.
class LinkWindow {
 public:
  virtual ~LinkWindow() = default;
  virtual void cwTextBox_KeyDown(int16_t& KeyCode, int16_t& Shift) = 0;
  virtual void RememberCallsign() = 0;
  // Unloads the window as if the operator had closed it.
  virtual void Unload() = 0;
  // 0 normal, 1 minimized.
  virtual void SetWindowState(int16_t state) = 0;
};

// Turns a number from the control slot into the key it stands for; false
// when the number is no key the logger may press.
bool LinkKey(double v, int16_t& KeyCode, int16_t& Shift);

class LoggerLinkLogic : public platform::LoggerLink {
 public:
  LoggerLinkLogic(platform::LinkChannel& channel, platform::MainWindowControls& controls)
      : channel_(channel), c_(controls) {}

  // The handles start-up finds, the window the commands act on and the chip
  // that follows the radio; until then the link does nothing.
  void Attach(LinkState& state, LinkWindow& window, platform::WinKeyLink& winkey);

  void PollLink() override;
  void PostLink(platform::LinkCode code, int32_t value) override;
  void WriteLinkSlot(int16_t slot, const std::string& text) override;
  void LogContact() override;
  void SendLinkCommand(const std::string& text) override;
  // What the last poll read; empty until the link is attached.
  std::string ReadLinkSlot(int16_t slot) const override;
  std::string MyCall() const override { return s_ ? s_->MyCall : std::string(); }
  std::string Band() const override { return s_ ? s_->Band : std::string(); }
  std::string SerialFormat() const override { return s_ ? s_->SerialFormat : std::string(); }

 private:
  void ShowInField(platform::TextBox& field, const std::string& text);
  void ActOnCommand(const std::string& command);

  platform::LinkChannel& channel_;
  platform::MainWindowControls& c_;
  LinkState* s_ = nullptr;
  platform::WinKeyLink* winkey_ = nullptr;
  LinkWindow* window_ = nullptr;
};

}  // namespace vantrel::loggerlink
