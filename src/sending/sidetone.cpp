#include "sending/sidetone.h"

#include <cmath>

#include "vb/vb.h"

namespace vantrel::sending {

void Sidetone::CreateSidetone() {
  if (!cw_.SidetoneEnabled) return;
  std::unique_ptr<platform::SoundDevice> device = sound_.CreateDevice();
  if (!device) {
    box_.SetText(kNoSoundMessage);
    cw_.SidetoneEnabled = false;
    return;
  }
  buffer_.reset();
  device_ = std::move(device);
  device_->SetCooperativeLevel(platform::kPriorityLevel);

  platform::SoundBufferDescription description;
  description.flags = platform::kControlVolume;
  constexpr int32_t kRate = 22050;
  // A hand-edited frequency of 0 or above the sample rate leaves no whole
  // period: no tone, and keying goes on silently.
  const double rounded = vb::RoundHalfEven(cw_.SidetoneFrequency);
  if (rounded < 1 || rounded > kRate) {
    samples_.clear();
    return;
  }
  const int32_t n = (kRate / static_cast<int32_t>(rounded)) * 1500;
  samples_.assign(static_cast<size_t>(n) + 1, 0);
  const double twoPi = 8 * std::atan(1.0);
  for (int32_t i = 0; i < n; ++i) {
    samples_[static_cast<size_t>(i)] = static_cast<int16_t>(
        vb::RoundHalfEven(32767 * std::sin(i * twoPi * cw_.SidetoneFrequency / kRate)));
  }
  // The size in bytes is N itself: the buffer holds the first half of the array.
  description.bytes = n;
  buffer_ = device_->CreateSoundBuffer(description);
  if (!buffer_) return;
  buffer_->WriteWhole(samples_.data());
  buffer_->SetVolume(platform::kSilentVolume);
}

void Sidetone::ReleaseSidetone() {
  buffer_.reset();
  device_.reset();
}

void Sidetone::ToneOn() {
  if (!buffer_) return;
  buffer_->Play(platform::kPlayLooping);
  buffer_->SetVolume(0);
}

// Silence comes before the stop, and the buffer is back at its start, where
// the sine is zero, before the next key-down.
void Sidetone::ToneOff() {
  if (!buffer_) return;
  buffer_->SetVolume(platform::kSilentVolume);
  buffer_->Stop();
  buffer_->SetCurrentPosition(0);
}

}  // namespace vantrel::sending
