// How late the sidetone sounds: from the call that turns the tone up to its
// first sample handed to the sound device, and to that sample reaching the
// converter, over many key-downs on the default output device, with the
// output latency the library reports. Needs a working sound device (a
// PulseAudio null sink will do).
//
// Each block size the stream might use is measured in turn, with how often
// the server found the next block not ready.
//
//   bench_sidetone_latency [--tones N] [--server NAME] [--write docs/performance.md]
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

constexpr unsigned long kBlocks[] = {64, 128, 256};

struct Measured {
  std::vector<double> handed, converted;
  int64_t underflows = 0;
  double outputLatencyMs = 0;
};

// Key-downs of 60 ms, 200 ms apart, on a stream of `block` samples a block.
bool Measure(unsigned long block, int tones, Measured& m) {
  platform::memory::Trace trace{[] { return 0.0; }};
  platform::memory::MemoryTextBox box{trace};
  platform::linuxos::PortAudioSoundSystem sound{block};
  sending::CwState cw;
  cw.SidetoneEnabled = true;
  cw.SidetoneFrequency = 700;
  sending::Sidetone sidetone{cw, box, sound};
  sidetone.CreateSidetone();
  if (!cw.SidetoneEnabled) {
    std::fprintf(stderr, "no usable sound device: %s\n", box.Text().c_str());
    return false;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // the stream settles
  const auto& starts = sound.toneStarts();
  const int64_t underflowsBefore = starts.underflows;
  for (int i = 0; i < tones; ++i) {
    const int64_t before = starts.count;
    sidetone.ToneOn();
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    sidetone.ToneOff();
    std::this_thread::sleep_for(std::chrono::milliseconds(140));
    if (starts.count == before) continue;  // not yet handed over: left out
    m.handed.push_back(static_cast<double>(starts.handedNs) / 1e6);
    m.converted.push_back(static_cast<double>(starts.convertedNs) / 1e6);
  }
  m.underflows = starts.underflows - underflowsBefore;
  m.outputLatencyMs = starts.outputLatencyS * 1e3;
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  int tones = 100;
  std::string writePath, server = "the default output device";
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--tones" && i + 1 < argc) tones = std::atoi(argv[++i]);
    else if (arg == "--server" && i + 1 < argc) server = argv[++i];
    else if (arg == "--write" && i + 1 < argc) writePath = argv[++i];
    else {
      std::fprintf(stderr,
                   "usage: bench_sidetone_latency [--tones N] [--server NAME] [--write FILE]\n");
      return 2;
    }
  }
  std::ostringstream table;
  table << "| samples a block | to the device, median / p99 ms | to the converter, median / p99 ms "
           "| key-downs measured | underflows | latency the library reports |\n"
           "|---:|---:|---:|---:|---:|---:|\n";
  for (const unsigned long block : kBlocks) {
    Measured m;
    if (!Measure(block, tones, m)) return 1;
    const Stats h = Summarise(m.handed), c = Summarise(m.converted);
    char row[300];
    std::snprintf(row, sizeof row, "| %lu | %.1f / %.1f | %.1f / %.1f | %zu of %d | %lld | %.1f ms |\n",
                  block, h.median, h.p99, c.median, c.p99, m.handed.size(), tones,
                  static_cast<long long>(m.underflows), m.outputLatencyMs);
    table << row;
    std::fprintf(stderr, "%s", row);
  }
  std::ostringstream section;
  section << "### Sidetone latency on " << server << "\n\n"
          << "Made by `./build/bench/sidetone/bench_sidetone_latency --tones " << tones
          << " --server \"" << server << "\" --write docs/performance.md`: key-downs of 60 ms, "
             "200 ms apart, on one stream per block size, one after the other.\n\n"
          << table.str();
  bench::Publish("sidetone on " + server, section.str(), writePath);
  return 0;
}
