// The sound system the sidetone plays through: a device, and on it one
// buffer that loops a precomputed tone, gated by volume, stop and position.
#pragma once

#include <cstdint>
#include <memory>

namespace vantrel::platform {

struct SoundFormat {
  int16_t formatTag = 1;  // PCM
  int16_t channels = 1;
  int32_t samplesPerSecond = 22050;
  int16_t bitsPerSample = 16;
  int16_t blockAlign = 2;
  int32_t averageBytesPerSecond = 44100;
};

struct SoundBufferDescription {
  int32_t flags = 0;
  SoundFormat format;
  int32_t bytes = 0;
};

// Hundredths of a decibel: 0 is full volume, this is silence.
inline constexpr int32_t kSilentVolume = -10000;
inline constexpr int32_t kPlayLooping = 1;
inline constexpr int32_t kPriorityLevel = 2;
inline constexpr int32_t kControlVolume = 128;

class SoundBuffer {
 public:
  virtual ~SoundBuffer() = default;
  // Fills the whole buffer from `first`, which holds at least its size.
  virtual void WriteWhole(const int16_t* first) = 0;
  virtual void Play(int32_t flags) = 0;
  virtual void SetVolume(int32_t hundredthsDb) = 0;
  virtual void Stop() = 0;
  virtual void SetCurrentPosition(int32_t bytes) = 0;
};

class SoundDevice {
 public:
  virtual ~SoundDevice() = default;
  virtual void SetCooperativeLevel(int32_t level) = 0;
  virtual std::unique_ptr<SoundBuffer> CreateSoundBuffer(const SoundBufferDescription& d) = 0;
};

class SoundSystem {
 public:
  virtual ~SoundSystem() = default;
  // The default device; none when no usable sound system exists.
  virtual std::unique_ptr<SoundDevice> CreateDevice() = 0;
};

}  // namespace vantrel::platform
