// The keyer on a scheduler of the bench's choosing, with the memory platform's
// controls around it and a key line that stamps every edge with the clock the
// bench measures by.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/memory/memory_platform.h"
#include "platform/platform.h"
#include "sending/morse_table.h"
#include "sending/software_keyer.h"

namespace vantrel::bench {

using NowNs = std::function<int64_t()>;

inline constexpr int16_t kEnglish = 1033;
// The proportions the benches send with: the keyer's defaults.
inline constexpr double kDash = 3, kLetterSpace = 3, kWordSpace = 7;

inline int32_t DotMs(int wpm) {
  return sending::ComputeDotLength(static_cast<int16_t>(wpm), kDash, kLetterSpace, kWordSpace);
}

// Ideal edge times in ns from the first key-down, by the keyer's own table and
// dot: element gaps of one dot, letter gaps of kLetterSpace, and a space adds
// what is left of kWordSpace.
inline std::vector<int64_t> IdealEdges(const std::string& text, int wpm) {
  const int64_t dot = int64_t{DotMs(wpm)} * 1'000'000;
  std::vector<int64_t> edges;
  int64_t t = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const std::string code = sending::CharToMorse(text[i], kEnglish);
    if (code == "_") {
      t += static_cast<int64_t>((kWordSpace - 2 * kLetterSpace) * static_cast<double>(dot));
    } else {
      for (size_t e = 0; e < code.size(); ++e) {
        edges.push_back(t);
        t += code[e] == '-' ? static_cast<int64_t>(kDash * static_cast<double>(dot)) : dot;
        edges.push_back(t);
        if (e + 1 < code.size()) t += dot;
      }
    }
    if (i + 1 < text.size()) t += static_cast<int64_t>(kLetterSpace * static_cast<double>(dot));
  }
  return edges;
}

struct Edge {
  int64_t ns;
  bool down;
};

// The parallel port's control register, stamping every change of the key
// bit. The bit is inverted on the port: clear is key down.
class EdgeRecorder final : public platform::ParallelPort {
 public:
  static constexpr int16_t kKeyBit = 8;

  explicit EdgeRecorder(NowNs now) : now_(std::move(now)) { edges.reserve(8192); }
  int16_t Inp32(int16_t /*port*/) override { return register_; }
  void Out32(int16_t /*port*/, int16_t value) override {
    if ((register_ ^ value) & kKeyBit) edges.push_back({now_(), (value & kKeyBit) == 0});
    register_ = value;
  }
  void Release() override {}
  std::string Error() const override { return {}; }
  void ClearError() override {}

  std::vector<Edge> edges;

 private:
  NowNs now_;
  int16_t register_ = 0x0C;
};

// The keyer tells the logger a transmission has begun as it begins one: that
// message marks the start the lead delay is measured from.
class StartMarker final : public platform::LoggerLink {
 public:
  explicit StartMarker(NowNs now) : now_(std::move(now)) {}
  void PollLink() override {}
  void PostLink(platform::LinkCode code, int32_t value) override {
    if (code == platform::LinkCode::Transmitting && value == 1 && startNs < 0) startNs = now_();
  }
  void LogContact() override {}
  void WriteLinkSlot(int16_t, const std::string&) override {}
  void SendLinkCommand(const std::string&) override {}
  // A logger that has written nothing.
  std::string ReadLinkSlot(int16_t) const override { return ""; }
  std::string MyCall() const override { return ""; }
  std::string Band() const override { return ""; }
  std::string SerialFormat() const override { return ""; }

  int64_t startNs = -1;

 private:
  NowNs now_;
};

struct TimingRig {
  TimingRig(platform::Scheduler& scheduler, NowNs now)
      : scheduler(scheduler), port(now), link(std::move(now)) {
    // The indicators and menus would trace every change; the program has no trace.
    p.trace.SetMuted(true);
  }

  platform::Scheduler& scheduler;
  // Controls, files and a pump whose own clock stands still: no timer fires
  // inside a measured wait.
  platform::memory::MemoryPlatform p;
  EdgeRecorder port;
  StartMarker link;

  platform::Platform platform() {
    return platform::Platform{p.controls,  scheduler,   p.queue,     p.profile, p.wallClock,
                              p.language,  port,        p.cwControl, p.linkChannel, p.sound,
                              link,        p.macroSetup};
  }
};

}  // namespace vantrel::bench
