// What the sending core and the main window call in the subsystems around
// them: the sound, the logger, a WinKey chip, the macro loop and the speed
// calibration. Each is an interface so the core runs, and is tested, alone.
#pragma once

#include <cstdint>
#include <string>

namespace vantrel::platform {

// The sidetone's sound objects, made at start-up and released at the end;
// on and off are the key's, the measuring around them the core's.
class ToneOutput {
 public:
  virtual ~ToneOutput() = default;
  virtual void CreateSidetone() = 0;
  virtual void ReleaseSidetone() = 0;
  virtual void ToneOn() = 0;
  virtual void ToneOff() = 0;
};

// The codes of the keyer's messages to the logger. The line requests are
// sent, each with the shared serial port's number added; the rest are posted
// with a value of their own.
enum class LinkCode : int32_t {
  LogContact = 100,
  HoldRadioPolling = 150,  // 1 hold, 0 release
  SlotChanged = 200,       // the keyer has written a slot of the shared block
  KeyUp = 300,
  KeyDown = 400,
  PTTOn = 500,
  PTTOff = 600,
  ClearLog = 700,
  Bookmark = 750,
  Rotor = 800,         // 0, or 1 for the long path
  Transmitting = 900,  // 1 starts, 0 ends
};

// A line request's number for shared serial port `port`.
constexpr int32_t LineRequest(LinkCode request, int32_t port) { return static_cast<int32_t>(request) + port; }

class LoggerLink {
 public:
  virtual ~LoggerLink() = default;
  virtual void PollLink() = 0;
  virtual void PostLink(LinkCode code, int32_t value) = 0;
  // Puts text into one slot of the shared block, cut to the slot's size.
  virtual void WriteLinkSlot(int16_t slot, const std::string& text) = 0;
  virtual void LogContact() = 0;
  // A command to the logger in the name slot, then the post that says so.
  virtual void SendLinkCommand(const std::string& text) = 0;
  // A slot of the shared block as it stands, NUL padding and all.
  virtual std::string ReadLinkSlot(int16_t slot) const = 0;
  // What the logger last told of itself: own call, band, serial number format.
  virtual std::string MyCall() const = 0;
  virtual std::string Band() const = 0;
  virtual std::string SerialFormat() const = 0;
};

class WinKeyLink {
 public:
  virtual ~WinKeyLink() = default;
  virtual bool WinKeyOpen() const = 0;
  // The attached chip answered as a WinKey2.
  virtual bool IsWinKey2() const = 0;
  // Whether the serial port control that the chip sits on is open.
  virtual bool PortOpen() const = 0;
  // Bytes go out as they are: text characters and command bytes alike.
  virtual void WriteWinKey(const std::string& bytes) = 0;
  virtual void StartWinKeyRun() = 0;
  virtual void OpenWinKeyPort() = 0;
  // Sends the host close if the chip is open.
  virtual void CloseWinKeyHost() = 0;
  // The chip's key output to the radio the logger has made active.
  virtual void SelectWinKeyRadio() = 0;
  // Looked at by the window's poll timer: ends a run whose chip has gone silent.
  virtual void WatchWinKeySilence() = 0;
};

// The macros as the core and the window reach them: the loop that repeats
// one, firing one by key, and queueing a text at the end of the box.
class MacroLoop {
 public:
  virtual ~MacroLoop() = default;
  virtual void ArmMacroLoop() = 0;
  virtual void CancelMacroLoop() = 0;
  // ALT and a key: fires the macro whose caption has that hot key; false
  // when none has.
  virtual bool FireHotKey(int16_t keyCode) = 0;
  // The macro FireHotKey would fire for the key, 0 when no caption holds it.
  virtual int16_t HotKeyMacro(int16_t keyCode) const = 0;
  // A function key code, 112 to 147, with the shift state it came with.
  virtual void DispatchFunctionKey(int16_t keyCode, int16_t shift) = 0;
  virtual void QueueMacro(const std::string& macro) = 0;
};

// The macro editor as the macro buttons open and close it.
class MacroEditor {
 public:
  virtual ~MacroEditor() = default;
  // Opens the editor on one macro, 1 to 36, in place of any open one.
  virtual void ShowMacroSetup(int16_t index) = 0;
  // Closes it without storing; nothing when it is not open.
  virtual void UnloadMacroSetup() = 0;
};

class SpeedCalibration {
 public:
  virtual ~SpeedCalibration() = default;
  virtual bool Calibrating() const = 0;
  // The calibration's own steps at the start and end of its transmission.
  virtual void TransmissionStarted() = 0;
  virtual void TransmissionEnded() = 0;
};

}  // namespace vantrel::platform
