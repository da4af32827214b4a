// One line per observable event, stamped with the time in ms: what the tests
// assert on and what the headless runner prints.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vantrel::platform::memory {

class Trace {
 public:
  explicit Trace(std::function<double()> nowMs) : nowMs_(std::move(nowMs)) {}

  void Emit(const std::string& event);
  // Every action the trace sees, shown or not, is told here first: a clock
  // that charges each one its cost, as the real calls take time.
  void OnAction(std::function<void()> hook) { onAction_ = std::move(hook); }
  // An action that shows no line: a marking step, a poll.
  void Action() {
    if (onAction_) onAction_();
  }
  // Every line also goes here as it happens, e.g. to standard output.
  void SetSink(std::function<void(const std::string&)> sink) { sink_ = std::move(sink); }
  // While muted nothing is formatted or kept: a benchmark times the keyer, not its trace.
  void SetMuted(bool muted) { muted_ = muted; }

  const std::vector<std::string>& Lines() const { return lines_; }
  // The events alone, without their times.
  std::vector<std::string> Events() const;
  void Clear() { lines_.clear(); }

  // A text as a quoted trace argument: quote and backslash escaped, bytes
  // outside printable ASCII as \xNN.
  static std::string Quote(std::string_view text);
  // Bytes as the wire carries them: "0F 16 FF".
  static std::string Hex(std::string_view bytes);

 private:
  void Show(const std::string& event);

  std::function<double()> nowMs_;
  std::function<void(const std::string&)> sink_;
  std::function<void()> onAction_;
  std::vector<std::string> lines_;
  bool muted_ = false;
};

}  // namespace vantrel::platform::memory
