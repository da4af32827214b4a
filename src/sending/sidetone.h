// The sidetone through the sound card: the tone is computed once into a
// buffer that loops, so that a key edge costs only a few sound calls.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/neighbours.h"
#include "platform/sound.h"
#include "platform/text_box.h"
#include "sending/cw_state.h"

namespace vantrel::sending {

class Sidetone : public platform::ToneOutput {
 public:
  static constexpr const char* kNoSoundMessage = "Unable to create DirectX 8 sound.";

  Sidetone(CwState& cw, platform::TextBox& CWTextBox, platform::SoundSystem& sound)
      : cw_(cw), box_(CWTextBox), sound_(sound) {}

  // Builds every sound object anew from the settings of now.
  void CreateSidetone() override;
  // The buffer goes before the device it was made on.
  void ReleaseSidetone() override;
  void ToneOn() override;
  void ToneOff() override;

  // The sample array the buffer was filled from; its last element stays 0.
  const std::vector<int16_t>& Samples() const { return samples_; }

 private:
  CwState& cw_;
  platform::TextBox& box_;
  platform::SoundSystem& sound_;
  std::unique_ptr<platform::SoundDevice> device_;
  std::unique_ptr<platform::SoundBuffer> buffer_;
  std::vector<int16_t> samples_;
};

}  // namespace vantrel::sending
