// A settings write during sending: the keyer sends PARIS on the real clock
// while every event pump inside its waits may run a write of "WPM" to a real
// settings file (what a click on the speed panel does), and the key edges
// are held against the ideal schedule. Runs without writes, with writes that
// reach the disk at once, and with writes through the store as the keyer
// makes them (held to the transmission's end) alternate, so that they meet
// the same machine.
//
//   bench_settings_write [--reps N] [--dir FOLDER] [--write FILE]
#include <stdlib.h>
#include <sys/statfs.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "app/vantrel.h"
#include "platform/linux/ini_profile_file.h"
#include "platform/linux/linux_scheduler.h"
#include "report.h"
#include "timing/timing_rig.h"

namespace vantrel::bench {
namespace {

using platform::linuxos::LinuxScheduler;
using platform::linuxos::WaitMode;

constexpr int kSpeeds[] = {20, 40};
constexpr int kWords = 6;

int64_t MonotonicNs() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

// The pump of the keyer's waits. When writing, a pump at or past the next
// write's moment runs one, and the moment after it is drawn anew within two
// dots, so that writes land at every phase of a wait.
enum class Writes { None, AtOnce, Store };

class WritingPump final : public platform::EventPump {
 public:
  WritingPump(platform::EventPump& inner, int64_t dotNs) : inner_(inner), dotNs_(dotNs) {}
  void DoEvents() override {
    inner_.DoEvents();
    if (!store || writes == Writes::None || MonotonicNs() < nextNs_) return;
    const int64_t start = MonotonicNs();
    if (writes == Writes::AtOnce) {
      store->WriteSettingNow("frmVantrel Settings", "WPM", "20");
    } else {
      store->WriteSetting("frmVantrel Settings", "WPM", "20");
    }
    const int64_t end = MonotonicNs();
    writeMs.push_back(static_cast<double>(end - start) / 1e6);
    nextNs_ = end + std::uniform_int_distribution<int64_t>(0, 2 * dotNs_)(random_);
  }

  settings::SettingsStore* store = nullptr;
  Writes writes = Writes::None;
  std::vector<double> writeMs;

 private:
  platform::EventPump& inner_;
  int64_t dotNs_;
  int64_t nextNs_ = 0;
  std::mt19937_64 random_{std::random_device{}()};
};

struct Run {
  std::vector<double> errorsUs;  // every edge after the first, against the ideal
  std::vector<double> writeMs;
  bool edgesRight = true;
};

Run Send(LinuxScheduler& scheduler, platform::linuxos::IniProfileFile& disk, const std::string& folder,
         int wpm, Writes writes) {
  TimingRig rig(scheduler, MonotonicNs);
  WritingPump pump(rig.p.queue, int64_t{DotMs(wpm)} * 1'000'000);
  platform::Platform platform = rig.platform();
  const platform::Platform onDisk{platform.controls, platform.scheduler, pump,
                                  disk,              platform.wallClock, platform.language,
                                  platform.parallel, platform.cwControl, platform.linkChannel,
                                  platform.sound,    platform.link,      platform.macroSetup};
  app::Vantrel keyer(onDisk, {folder, ""});
  keyer.store.LocateSettingsFile(folder, "");
  for (const auto& [key, value] : {std::pair{"WPM", std::to_string(wpm)}, {"PTT", "OFF"},
                                   {"Slow Typing", "OFF"}, {"SideTone", "OFF"}}) {
    keyer.store.WriteSetting("frmVantrel Settings", key, value);
  }
  keyer.form.Form_Load();
  pump.store = &keyer.store;
  pump.writes = writes;

  std::string text;
  for (int i = 0; i < kWords; ++i) text += i ? " PARIS" : "PARIS";
  rig.p.CWTextBox.SetText(text);

  Run run;
  run.writeMs = pump.writeMs;
  const std::vector<Edge>& edges = rig.port.edges;
  const std::vector<int64_t> ideal = IdealEdges(text, wpm);
  run.edgesRight = edges.size() == ideal.size();
  // The schedule is placed where it fits the edges best (their median
  // offset), so that a late start of the first element, which a loaded
  // machine's first wake-up may give, does not hide how each edge moved.
  std::vector<double> offsetsUs;
  for (size_t i = 0; i < std::min(edges.size(), ideal.size()); ++i) {
    offsetsUs.push_back(static_cast<double>(edges[i].ns - edges.front().ns - ideal[i]) / 1e3);
  }
  const double placed = Summarise(offsetsUs).median;
  for (const double offset : offsetsUs) run.errorsUs.push_back(std::abs(offset - placed));
  return run;
}

size_t OffByMoreThanMs(const Run& run, double ms) {
  return static_cast<size_t>(std::count_if(run.errorsUs.begin(), run.errorsUs.end(),
                                            [ms](double us) { return us > ms * 1000; }));
}

std::string FileSystem(const std::string& folder) {
  struct statfs info {};
  if (statfs(folder.c_str(), &info) != 0) return "unknown";
  switch (info.f_type) {
    case 0xEF53:
      return "ext4";
    case 0x01021994:
      return "tmpfs";
    case 0x794c7630:
      return "overlayfs";
    case 0x58465342:
      return "xfs";
    case 0x9123683E:
      return "btrfs";
    default: {
      char hex[32];
      std::snprintf(hex, sizeof hex, "0x%lx", static_cast<unsigned long>(info.f_type));
      return hex;
    }
  }
}

std::string Fixed(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

int Usage() {
  std::fprintf(stderr, "usage: bench_settings_write [--reps N] [--dir FOLDER] [--write FILE]\n");
  return 2;
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  using namespace vantrel::bench;
  int reps = 3;
  std::string parent = "/var/tmp";
  std::string writePath;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string arg = argv[i], value = argv[i + 1];
    if (arg == "--reps") {
      reps = std::max(1, std::atoi(value.c_str()));
    } else if (arg == "--dir") {
      parent = value;
    } else if (arg == "--write") {
      writePath = value;
    } else {
      return Usage();
    }
  }
  if (argc % 2 == 0) return Usage();
  std::string folder = parent + "/vantrel-bench-XXXXXX";
  if (::mkdtemp(folder.data()) == nullptr) {
    std::perror(folder.c_str());
    return 1;
  }

  LinuxScheduler scheduler{WaitMode::Sleep};
  vantrel::platform::linuxos::IniProfileFile disk;
  std::ostringstream table;
  table << "| WPM | writes | cost of a write in the pump, median / max ms | edge p99 µs | edge max µs "
           "| edges off > 1 ms |\n"
        << "|---:|---|---:|---:|---:|---:|\n";
  bool allRight = true;
  const std::pair<Writes, const char*> kinds[] = {
      {Writes::None, "none"}, {Writes::AtOnce, "at once (durable, in the wait)"},
      {Writes::Store, "through the store (held to the end)"}};
  for (const int wpm : kSpeeds) {
    Run runs[3];
    for (int r = 0; r < reps; ++r) {
      for (size_t k = 0; k < 3; ++k) {
        const Run run = Send(scheduler, disk, folder, wpm, kinds[k].first);
        runs[k].errorsUs.insert(runs[k].errorsUs.end(), run.errorsUs.begin(), run.errorsUs.end());
        runs[k].writeMs.insert(runs[k].writeMs.end(), run.writeMs.begin(), run.writeMs.end());
        allRight = allRight && run.edgesRight;
      }
    }
    for (size_t k = 0; k < 3; ++k) {
      const Stats edges = Summarise(runs[k].errorsUs), cost = Summarise(runs[k].writeMs);
      table << "| " << wpm << " | " << kinds[k].second << " (" << runs[k].writeMs.size() << ") | "
            << (runs[k].writeMs.empty() ? "–" : Fixed(cost.median) + " / " + Fixed(cost.max)) << " | "
            << Fixed(edges.p99) << " | " << Fixed(edges.max) << " | " << OffByMoreThanMs(runs[k], 1)
            << " / " << runs[k].errorsUs.size() << " |\n";
    }
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);

  std::ostringstream body;
  body << "## A settings write during sending\n\n"
       << "`bench_settings_write --reps " << reps << "`: PARIS " << kWords
       << " times on the real clock (sleeping waits, normal priority), every event pump inside "
          "a wait running a durable write of \"WPM\" (temporary file, fsync, rename, fsync of "
          "the folder) on "
       << FileSystem(parent)
       << " whenever the moment drawn for it has come; runs without writes, with writes at "
          "once, and with writes through the keyer's store alternate. "
          "Edge errors are |edge − ideal|, the ideal schedule placed at the edges' median "
          "offset from it. A write runs only where the wait pumps events, never in its last "
          "stretch, so an edge moves when a write lasts longer than that stretch; the keyer's "
          "own writes during a transmission wait for its end.\n\n"
       << table.str() << (allRight ? "" : "\nSome run keyed the wrong number of edges.\n");
  Publish("settings-write", body.str(), writePath);
  return allRight ? 0 : 1;
}
