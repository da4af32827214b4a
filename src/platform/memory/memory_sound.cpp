#include "platform/memory/memory_sound.h"

#include <string>

namespace vantrel::platform::memory {

class MemorySoundSystem::Buffer : public SoundBuffer {
 public:
  Buffer(MemorySoundSystem& system) : system_(system) {}
  ~Buffer() override { system_.trace_.Emit("sound buffer released"); }

  void WriteWhole(const int16_t* first) override {
    system_.lastWritten.assign(first, first + system_.lastDescription.bytes / 2);
    system_.trace_.Emit("sound write");
  }
  void Play(int32_t flags) override { Emit("play " + std::to_string(flags)); }
  void SetVolume(int32_t volume) override { Emit("volume " + std::to_string(volume)); }
  void Stop() override { Emit("stop"); }
  void SetCurrentPosition(int32_t bytes) override { Emit("position " + std::to_string(bytes)); }

 private:
  void Emit(const std::string& what) { system_.trace_.Emit("sound " + what); }
  MemorySoundSystem& system_;
};

class MemorySoundSystem::Device : public SoundDevice {
 public:
  explicit Device(MemorySoundSystem& system) : system_(system) {}
  ~Device() override { system_.trace_.Emit("sound device released"); }

  void SetCooperativeLevel(int32_t level) override {
    system_.trace_.Emit("sound level " + std::to_string(level));
  }
  std::unique_ptr<SoundBuffer> CreateSoundBuffer(const SoundBufferDescription& d) override {
    system_.lastDescription = d;
    system_.trace_.Emit("sound buffer " + std::to_string(d.bytes));
    return std::make_unique<Buffer>(system_);
  }

 private:
  MemorySoundSystem& system_;
};

std::unique_ptr<SoundDevice> MemorySoundSystem::CreateDevice() {
  if (missing) return nullptr;
  trace_.Emit("sound device");
  return std::make_unique<Device>(*this);
}

}  // namespace vantrel::platform::memory
