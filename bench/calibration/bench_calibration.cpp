// The speed calibration as the operator runs it, on the real clock: the 20
// (or 40) WPM test of the keyer setup dialog sends PARIS through the sending
// core onto a recording parallel port, and the result window's figures are
// set beside the key edges the port saw and the process time the run took.
//
//   bench_calibration [--wpm 20|40] [--write FILE]
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sstream>
#include <string>

#include "app/vantrel.h"
#include "platform/linux/linux_scheduler.h"
#include "platform/memory/memory_dialogs.h"
#include "report.h"
#include "setup/frm_port.h"
#include "timing/timing_rig.h"
#include "vb/vb.h"

namespace vantrel::bench {
namespace {

int64_t MonotonicNs() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

double ProcessSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

int Usage() {
  std::fprintf(stderr, "usage: bench_calibration [--wpm 20|40] [--write FILE]\n");
  return 2;
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  using namespace vantrel;
  using namespace vantrel::bench;
  int16_t wpm = 20;
  std::string writePath;
  std::string command = "./build/bench/calibration/bench_calibration";
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (i + 1 >= argc) return Usage();
    const std::string value = argv[++i];
    command += " " + arg + " " + value;
    if (arg == "--wpm" && (value == "20" || value == "40")) {
      wpm = static_cast<int16_t>(std::atoi(value.c_str()));
    } else if (arg == "--write") {
      writePath = value;
    } else {
      return Usage();
    }
  }

  platform::linuxos::LinuxScheduler scheduler(platform::linuxos::WaitMode::Sleep);
  TimingRig rig(scheduler, MonotonicNs);
  rig.p.linkChannel.loggerRunning = true;
  app::Vantrel keyer(rig.platform(), {"/bench", ""});
  platform::memory::MemorySerialPortList ports;
  platform::memory::MemoryKeyerSetup dialog(rig.p.trace, rig.p.queue);
  setup::FrmPort frmPort(dialog.controls(), setup::SetupNeighbours{keyer.cw, keyer.software, keyer.control,
                                                                   keyer.lines, keyer.sidetone, keyer.store,
                                                                   keyer.calibration, ports});
  keyer.store.LocateSettingsFile("/bench", "");
  keyer.form.Form_Load();
  frmPort.Form_Load();
  dialog.frmPort.Show();

  std::fprintf(stderr, "sending PARIS %d times at %d WPM, about a minute ...\n", wpm, wpm);
  const double cpuBefore = ProcessSeconds();
  const int64_t wallBefore = MonotonicNs();
  (wpm == 20 ? dialog.ARButton1 : dialog.ARButton2).Click();
  const double wall = static_cast<double>(MonotonicNs() - wallBefore) / 1e9;
  const double cpu = ProcessSeconds() - cpuBefore;

  const std::vector<Edge>& edges = rig.port.edges;
  if (edges.size() < 2 || !dialog.frmCalibrate.window.open) {
    std::fprintf(stderr, "the test gave no result\n");
    return 1;
  }
  const double keyed = static_cast<double>(edges.back().ns - edges.front().ns) / 1e9;
  const double lead = static_cast<double>(edges.front().ns - rig.link.startNs) / 1e6;
  const std::string label1 = dialog.frmCalibrate.Label1.Caption();
  const std::string label2 = dialog.frmCalibrate.Label2.Caption();
  // The ideal: the dot at this speed times the 50 dots of each word, less the last word space.
  const setup::CalibrationState& counts = keyer.calibration.state;
  const double counted = static_cast<double>(counts.CalibrationEnd - counts.CalibrationStart) /
                             static_cast<double>(keyer.cw.TimerFrequency) -
                         keyer.cw.PTTDelay / 1000.0;
  const double ideal = keyer.cw.DotLength(wpm) * (50.0 * wpm - 7) / 1000;

  char table[1024];
  std::snprintf(table, sizeof table,
                "| | seconds |\n|---|---:|\n"
                "| the result window's elapsed time (PTT delay off, never below 60) | %s |\n"
                "| the keyer's count with the PTT delay off, before that floor | %.6f |\n"
                "| first key-down to last key-up, as the port saw it | %.6f |\n"
                "| the same for the dot of %d ms, with no time lost | %.6f |\n"
                "| the click's whole run, PTT delay included | %.6f |\n"
                "| process time used in it | %.3f |\n",
                label1.substr(13, label1.size() - 21).c_str(), counted, keyed, keyer.cw.DotLength(wpm),
                ideal, wall, cpu);
  std::ostringstream section;
  section << "## Speed calibration on the real clock\n\n"
          << "Made by `" << command << "`: the " << wpm
          << " WPM test of the keyer setup dialog, on CLOCK_MONOTONIC with the sleeping waits, "
             "normal priority, default settings (PTT delay 100 ms, Slow Typing on) and a recording "
             "parallel port in place of a real one. The first key-down came "
          << static_cast<int>(lead + 0.5) << " ms after the start of the transmission.\n\n"
          << table << "\nOverhead against the nominal minute: "
          << vb::Format((counted - 60) / 60 * 100, "#0.000") << " % before the floor, "
          << vb::Format((counted - ideal) / ideal * 100, "#0.000")
          << " % against the ideal run of this dot.\n\nThe result window said: \"" << label2 << "\"\n\n"
          << "The keyer's own count runs from the start of the transmission to its end; the "
             "PTT delay comes off, and a run shorter than the minute shows as the minute. "
             "The dot is a whole number of ms, so the ideal run is itself under the minute "
             "at these speeds: the window's 60 s and 0.0 % mean the keyer lost less than "
             "that rounding gave it.\n";
  Publish("calibration", section.str(), writePath);
  return 0;
}
