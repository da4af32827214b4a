#include "platform/linux/portaudio_sound.h"

#include <portaudio.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <vector>

namespace vantrel::platform::linuxos {
namespace {

float GainOf(int32_t hundredthsDb) {
  if (hundredthsDb <= kSilentVolume) return 0;
  return static_cast<float>(std::pow(10.0, hundredthsDb / 2000.0));
}

int64_t SteadyNowNs() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

// The calls of the keyer's thread reach the audio thread as events stamped
// with the steady clock. The audio thread plays each one at the sample that
// reaches the converter a fixed delay after its stamp, so that a tone lasts
// exactly as long as the key was down, however the server batches its
// requests for sound.
class PortAudioSoundSystem::Buffer : public SoundBuffer {
 public:
  Buffer(const SoundBufferDescription& d, unsigned long framesPerBlock, ToneStarts& starts)
      : samples_(static_cast<size_t>(std::max(d.bytes, 0) / 2)),
        framesPerBlock_(framesPerBlock),
        starts_(starts) {}

  ~Buffer() override {
    if (!stream_) return;
    Pa_AbortStream(stream_);
    Pa_CloseStream(stream_);
  }

  bool Open(int rate) {
    nsPerSample_ = 1e9 / rate;
    PaStreamParameters output{};
    output.device = Pa_GetDefaultOutputDevice();
    if (output.device == paNoDevice) return false;
    output.channelCount = 1;
    output.sampleFormat = paInt16;
    output.suggestedLatency = Pa_GetDeviceInfo(output.device)->defaultLowOutputLatency;
    if (Pa_OpenStream(&stream_, nullptr, &output, rate, framesPerBlock_, paNoFlag, &Buffer::Fill,
                      this) != paNoError) {
      stream_ = nullptr;
      return false;
    }
    if (const PaStreamInfo* info = Pa_GetStreamInfo(stream_)) {
      starts_.outputLatencyS = info->outputLatency;
    }
    return Pa_StartStream(stream_) == paNoError;
  }

  // Comes before any play, while the audio thread still reads nothing.
  void WriteWhole(const int16_t* first) override {
    std::copy(first, first + samples_.size(), samples_.begin());
  }
  void Play(int32_t) override { Post({Kind::Play, 0}); }
  void SetVolume(int32_t hundredthsDb) override { Post({Kind::Gain, GainOf(hundredthsDb)}); }
  void Stop() override { Post({Kind::Stop, 0}); }
  void SetCurrentPosition(int32_t) override { Post({Kind::Restart, 0}); }

 private:
  enum class Kind { Play, Gain, Stop, Restart };
  struct Event {
    Kind kind;
    float gain;
    int64_t atNs = 0;
  };
  static constexpr size_t kQueue = 256;

  // One writer (the keyer's thread), one reader (the audio thread). A full
  // queue drops the event: only a stalled audio thread lets it fill.
  void Post(Event event) {
    event.atNs = SteadyNowNs();
    const size_t tail = tail_.load(std::memory_order_relaxed);
    if (tail - head_.load(std::memory_order_acquire) == kQueue) return;
    queue_[tail % kQueue] = event;
    tail_.store(tail + 1, std::memory_order_release);
  }

  static int Fill(const void*, void* out, unsigned long frames, const PaStreamCallbackTimeInfo* time,
                  PaStreamCallbackFlags flags, void* self) {
    auto& buffer = *static_cast<Buffer*>(self);
    if (flags & paOutputUnderflow) ++buffer.starts_.underflows;
    buffer.Fill(static_cast<int16_t*>(out), frames, *time);
    return paContinue;
  }

  // On the audio thread: no locks, no allocation.
  void Fill(int16_t* out, unsigned long frames, const PaStreamCallbackTimeInfo& time) {
    const int64_t now = SteadyNowNs();
    // When the first sample of this block reaches the converter.
    const double leadNs = time.outputBufferDacTime > time.currentTime
                              ? (time.outputBufferDacTime - time.currentTime) * 1e9
                              : starts_.outputLatencyS * 1e9;
    const int64_t firstSampleNs = now + static_cast<int64_t>(leadNs);
    // An event must be in hand before the block that plays it is made: the
    // delay covers the furthest block ahead seen so far, once, not per edge.
    delayNs_ = std::max(delayNs_, static_cast<int64_t>(leadNs + frames * nsPerSample_) + 1'000'000);
    for (unsigned long i = 0; i < frames; ++i) {
      const auto sampleNs = firstSampleNs + static_cast<int64_t>(i * nsPerSample_);
      TakeEventsDueBy(sampleNs);
      if (!playing_ || gain_ == 0 || samples_.empty()) {
        out[i] = 0;
        sounding_ = false;
        continue;
      }
      if (!sounding_) {
        sounding_ = true;
        starts_.handedNs = now - toneAskedNs_;
        starts_.convertedNs = sampleNs - toneAskedNs_;
        ++starts_.count;
      }
      out[i] = static_cast<int16_t>(std::lround(samples_[position_] * gain_));
      if (++position_ == samples_.size()) position_ = 0;
    }
  }

  void TakeEventsDueBy(int64_t sampleNs) {
    size_t head = head_.load(std::memory_order_relaxed);
    while (head != tail_.load(std::memory_order_acquire)) {
      const Event& event = queue_[head % kQueue];
      if (event.atNs + delayNs_ > sampleNs) break;
      switch (event.kind) {
        case Kind::Play:
          playing_ = true;
          break;
        case Kind::Gain:
          if (gain_ == 0 && event.gain > 0) toneAskedNs_ = event.atNs;
          gain_ = event.gain;
          break;
        case Kind::Stop:
          playing_ = false;
          break;
        case Kind::Restart:
          position_ = 0;
          break;
      }
      head_.store(++head, std::memory_order_release);
    }
  }

  std::vector<int16_t> samples_;
  unsigned long framesPerBlock_;
  ToneStarts& starts_;
  PaStream* stream_ = nullptr;
  double nsPerSample_ = 0;
  std::array<Event, kQueue> queue_{};
  std::atomic<size_t> head_{0};
  std::atomic<size_t> tail_{0};
  // The audio thread's own.
  bool playing_ = false;
  float gain_ = 0;
  size_t position_ = 0;
  bool sounding_ = false;
  int64_t delayNs_ = 0;
  int64_t toneAskedNs_ = 0;
};

class PortAudioSoundSystem::Device : public SoundDevice {
 public:
  Device(unsigned long framesPerBlock, ToneStarts& starts)
      : framesPerBlock_(framesPerBlock), starts_(starts) {}
  // A stream of its own per buffer stands in for any sharing of the device.
  void SetCooperativeLevel(int32_t) override {}
  std::unique_ptr<SoundBuffer> CreateSoundBuffer(const SoundBufferDescription& d) override {
    auto buffer = std::make_unique<Buffer>(d, framesPerBlock_, starts_);
    if (!buffer->Open(d.format.samplesPerSecond)) return nullptr;
    return buffer;
  }

 private:
  unsigned long framesPerBlock_;
  ToneStarts& starts_;
};

PortAudioSoundSystem::~PortAudioSoundSystem() {
  if (initialised_) Pa_Terminate();
}

std::unique_ptr<SoundDevice> PortAudioSoundSystem::CreateDevice() {
  if (!initialised_) initialised_ = Pa_Initialize() == paNoError;
  if (!initialised_ || Pa_GetDefaultOutputDevice() == paNoDevice) return nullptr;
  return std::make_unique<Device>(framesPerBlock_, toneStarts_);
}

}  // namespace vantrel::platform::linuxos
