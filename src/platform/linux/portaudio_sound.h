// The sound system on PortAudio. Each buffer runs its own output stream for
// as long as it lives, playing silence until told to play, so that a key
// edge only changes what the audio thread reads and never starts a device.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/sound.h"

namespace vantrel::platform::linuxos {

class PortAudioSoundSystem : public SoundSystem {
 public:
  // About 12 ms a block at 22050 samples a second: PulseAudio asks for sound in
  // bursts, and smaller blocks broke the tone recorded from its sink.
  static constexpr unsigned long kDefaultFramesPerBlock = 256;

  explicit PortAudioSoundSystem(unsigned long framesPerBlock = kDefaultFramesPerBlock)
      : framesPerBlock_(framesPerBlock) {}
  ~PortAudioSoundSystem() override;
  PortAudioSoundSystem(const PortAudioSoundSystem&) = delete;
  PortAudioSoundSystem& operator=(const PortAudioSoundSystem&) = delete;

  std::unique_ptr<SoundDevice> CreateDevice() override;

  // For measuring the last tone start: from the call that turned the volume
  // up to its first sample handed to the device, and to that sample
  // reaching the converter; with the output latency the library reports.
  struct ToneStarts {
    std::atomic<int64_t> count{0};
    std::atomic<int64_t> handedNs{0};
    std::atomic<int64_t> convertedNs{0};
    std::atomic<double> outputLatencyS{0};
    // Blocks the server wanted before the audio thread had them ready.
    std::atomic<int64_t> underflows{0};
  };
  const ToneStarts& toneStarts() const { return toneStarts_; }

 private:
  class Device;
  class Buffer;
  unsigned long framesPerBlock_;
  bool initialised_ = false;
  ToneStarts toneStarts_;
};

}  // namespace vantrel::platform::linuxos
