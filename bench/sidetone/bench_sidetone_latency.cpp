// How late the sidetone sounds: from the call that turns the tone up to its
// first sample handed to the sound device, and to that sample reaching the
// converter, over many key-downs on the default output device, with the
// output latency the library reports. Needs a working sound device (a
// PulseAudio null sink will do).
//
//   bench_sidetone_latency [--tones N] [--write docs/performance.md]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "report.h"
#include "platform/linux/portaudio_sound.h"
#include "platform/memory/memory_text_box.h"
#include "platform/memory/trace.h"
#include "sending/sidetone.h"

namespace {

using namespace vantrel;
using bench::Stats;
using bench::Summarise;
}  // namespace

int main(int argc, char** argv) {
  int tones = 100;
  std::string writePath;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--tones" && i + 1 < argc) tones = std::atoi(argv[++i]);
    else if (arg == "--write" && i + 1 < argc) writePath = argv[++i];
    else {
      std::fprintf(stderr, "usage: bench_sidetone_latency [--tones N] [--write FILE]\n");
      return 2;
    }
  }
  platform::memory::Trace trace{[] { return 0.0; }};
  platform::memory::MemoryTextBox box{trace};
  platform::linuxos::PortAudioSoundSystem sound;
  sending::CwState cw;
  cw.SidetoneEnabled = true;
  cw.SidetoneFrequency = 700;
  sending::Sidetone sidetone{cw, box, sound};
  sidetone.CreateSidetone();
  if (!cw.SidetoneEnabled) {
    std::fprintf(stderr, "no usable sound device: %s\n", box.Text().c_str());
    return 1;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // the stream settles

  const auto& starts = sound.toneStarts();
  std::vector<double> handed, converted;
  for (int i = 0; i < tones; ++i) {
    const int64_t before = starts.count;
    sidetone.ToneOn();
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    sidetone.ToneOff();
    std::this_thread::sleep_for(std::chrono::milliseconds(140));
    if (starts.count == before) continue;  // not yet handed over: left out
    handed.push_back(static_cast<double>(starts.handedNs) / 1e6);
    converted.push_back(static_cast<double>(starts.convertedNs) / 1e6);
  }
  if (handed.empty()) {
    std::fprintf(stderr, "the device never asked for the tone\n");
    return 1;
  }
  const Stats h = Summarise(handed), c = Summarise(converted);
  char table[800];
  std::snprintf(table, sizeof table,
                "| from the call to | median ms | p99 ms |\n|---|---:|---:|\n"
                "| the first tone sample handed to the device | %.1f | %.1f |\n"
                "| that sample at the converter | %.1f | %.1f |\n\n"
                "%zu of %d key-downs of 60 ms measured; output latency the library reports: "
                "%.1f ms.\n",
                h.median, h.p99, c.median, c.p99, handed.size(), tones,
                starts.outputLatencyS * 1e3);
  std::ostringstream section;
  section << "## Sidetone latency\n\n"
          << "Made by `./build/bench/sidetone/bench_sidetone_latency --tones " << tones
          << " --write docs/performance.md` on the default output device.\n\n"
          << table;
  bench::Publish("sidetone", section.str(), writePath);
  return 0;
}
