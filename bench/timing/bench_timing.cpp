// Element timing on the real clock: the keyer sends PARIS through SendLoop,
// every key edge is stamped, and the edges are held against the ideal schedule.
// The two ways of waiting, and the sleeping one with fixed wake margins beside
// the learned one, run interleaved in one run, so that they meet the same
// machine.
//
//   bench_timing [--reps N] [--seconds S] [--priority normal|raise] [--write FILE]
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "app/vantrel.h"
#include "report.h"
#include "platform/linux/linux_scheduler.h"
#include "sending/morse_table.h"
#include "sending/software_keyer.h"
#include "timing_rig.h"

namespace vantrel::bench {
namespace {

using platform::linuxos::LinuxScheduler;
using platform::linuxos::PriorityRaise;
using platform::linuxos::WaitMode;
using platform::linuxos::WakeMargin;

constexpr const char* kSettingsFolder = "/bench";
constexpr int32_t kPttDelayMs = 100;
constexpr int kSpeeds[] = {20, 40, 60};
// Fixed wake margins, in µs, held beside the learned one.
constexpr int kFixedMarginsUs[] = {0, 100, 250, 500, 1000, 2000};

// What the Sleep mode is held to, at normal priority on an idle machine.
constexpr double kTargetP99Us = 50;
constexpr double kTargetMaxUs = 1000;
constexpr double kTargetDurationError = 0.0001;
constexpr double kTargetCpu = 0.05;

int64_t ClockNs(clockid_t id) {
  timespec ts{};
  clock_gettime(id, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}
int64_t MonotonicNs() { return ClockNs(CLOCK_MONOTONIC); }

// Holds the keyer at normal priority unless the run asks for the raise, and
// notes what a raise obtained.
class PriorityGate final : public platform::Scheduler {
 public:
  PriorityGate(LinuxScheduler& inner, bool allowRaise) : inner_(inner), allow_(allowRaise) {}
  int64_t QueryPerformanceCounter() override { return inner_.QueryPerformanceCounter(); }
  int64_t QueryPerformanceFrequency() override { return inner_.QueryPerformanceFrequency(); }
  bool IsWindowsNT() override { return inner_.IsWindowsNT(); }
  void SetPriorityClass(int priorityClass) override {
    if (allow_) inner_.SetPriorityClass(priorityClass);
  }
  void SetThreadPriority(int priority) override {
    if (!allow_) return;
    inner_.SetThreadPriority(priority);
    if (priority == platform::kThreadPriorityTimeCritical) obtained = inner_.raise();
  }
  void SwitchToThread(int64_t until) override { inner_.SwitchToThread(until); }
  void IdleUntil(int64_t until) override { inner_.IdleUntil(until); }

  PriorityRaise obtained = PriorityRaise::None;

 private:
  LinuxScheduler& inner_;
  bool allow_;
};

std::string Paris(int words) {
  std::string text;
  for (int i = 0; i < words; ++i) text += i == 0 ? "PARIS" : " PARIS";
  return text;
}


// Enough words for about `seconds` of sending, and never fewer than two, so
// that a word gap is measured.
int WordsFor(int wpm, double seconds) {
  const double wordMs = 50.0 * DotMs(wpm);
  return std::max(2, static_cast<int>(std::ceil(seconds * 1000 / wordMs)));
}

struct Run {
  size_t edges = 0;
  size_t idealEdges = 0;
  bool edgesAlternate = true;
  std::vector<double> errorsUs;        // every edge after the first, absolute
  std::vector<double> lengthErrorsUs;  // every element and space, absolute
  double leadUs = 0;                   // first key-down against start + PTT delay, signed
  double durationRatio = 0;
  double cpuFraction = 0;
  double marginUs = 0;
  PriorityRaise priority = PriorityRaise::None;
};

void Score(const TimingRig& rig, const std::string& text, int wpm, Run& run) {
  const std::vector<Edge>& edges = rig.port.edges;
  const std::vector<int64_t> ideal = IdealEdges(text, wpm);
  run.edges = edges.size();
  run.idealEdges = ideal.size();
  if (edges.empty() || ideal.empty()) return;
  for (size_t i = 0; i < edges.size(); ++i) {
    if (edges[i].down != (i % 2 == 0)) run.edgesAlternate = false;
  }
  const int64_t first = edges.front().ns;
  const size_t n = std::min(edges.size(), ideal.size());
  for (size_t i = 1; i < n; ++i) {
    run.errorsUs.push_back(std::abs(static_cast<double>(edges[i].ns - first - ideal[i])) / 1e3);
    const int64_t length = edges[i].ns - edges[i - 1].ns;
    run.lengthErrorsUs.push_back(std::abs(static_cast<double>(length - (ideal[i] - ideal[i - 1]))) /
                                 1e3);
  }
  run.leadUs =
      static_cast<double>(first - rig.link.startNs - int64_t{kPttDelayMs} * 1'000'000) / 1e3;
  run.durationRatio =
      static_cast<double>(edges[n - 1].ns - first) / static_cast<double>(ideal[n - 1]);
}

void Configure(app::Vantrel& keyer, int wpm) {
  const char* section = "frmVantrel Settings";
  keyer.store.LocateSettingsFile(kSettingsFolder, "");
  keyer.store.WriteSetting(section, "WPM", std::to_string(wpm));
  keyer.store.WriteSetting(section, "Dash Length", "3");
  keyer.store.WriteSetting(section, "Letter Space", "3");
  keyer.store.WriteSetting(section, "Word Space", "7");
  keyer.store.WriteSetting(section, "PTT", "OFF");
  keyer.store.WriteSetting(section, "PTT Delay", std::to_string(kPttDelayMs));
  keyer.store.WriteSetting(section, "Slow Typing", "OFF");
  keyer.store.WriteSetting(section, "SideTone", "OFF");
}

// Typing the text into the box starts the transmission; the change event
// returns when SendLoop has sent all of it.
void Send(TimingRig& rig, int wpm, const std::string& text) {
  app::Vantrel keyer(rig.platform(), {kSettingsFolder, ""});
  Configure(keyer, wpm);
  keyer.form.Form_Load();
  rig.p.CWTextBox.SetText(text);
}

// The scheduler lives across runs, as it lives the whole session in the
// program: the sleep mode's margin carries what it has learnt of the machine.
Run RunReal(LinuxScheduler& scheduler, int wpm, const std::string& text, bool allowRaise) {
  PriorityGate gate(scheduler, allowRaise);
  TimingRig rig(gate, MonotonicNs);
  const int64_t cpu0 = ClockNs(CLOCK_PROCESS_CPUTIME_ID);
  const int64_t wall0 = MonotonicNs();
  Send(rig, wpm, text);
  const int64_t wall1 = MonotonicNs();
  const int64_t cpu1 = ClockNs(CLOCK_PROCESS_CPUTIME_ID);
  Run run;
  Score(rig, text, wpm, run);
  run.cpuFraction = static_cast<double>(cpu1 - cpu0) / static_cast<double>(wall1 - wall0);
  run.marginUs =
      scheduler.mode() == WaitMode::Sleep ? static_cast<double>(scheduler.margin().Ns()) / 1e3 : 0;
  run.priority = gate.obtained;
  return run;
}

// On virtual time every wait ends exactly at its deadline, so the keyer's
// edges must fall on the ideal schedule to the nanosecond: a bench whose
// schedule disagrees would measure its own mistake.
bool ScheduleAgreesWithTheKeyer(int wpm, const std::string& text) {
  platform::memory::VirtualClock clock;
  TimingRig rig(clock, [&clock] { return clock.NowNs(); });
  Send(rig, wpm, text);
  Run run;
  Score(rig, text, wpm, run);
  const bool exact =
      std::all_of(run.errorsUs.begin(), run.errorsUs.end(), [](double e) { return e == 0; });
  if (run.edges != run.idealEdges || !run.edgesAlternate || !exact || run.leadUs != 0) {
    std::fprintf(stderr,
                 "%d WPM: the keyer keyed %zu edges on virtual time, the schedule has %zu%s\n", wpm,
                 run.edges, run.idealEdges, exact ? "" : ", and they differ in time");
    return false;
  }
  return true;
}

double Percentile(std::vector<double> values, double p) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const auto rank = static_cast<size_t>(std::ceil(p * static_cast<double>(values.size())));
  return values[std::clamp<size_t>(rank, 1, values.size()) - 1];
}

double Median(std::vector<double> values) { return Percentile(std::move(values), 0.5); }

std::string PriorityName(PriorityRaise raise, bool allowRaise) {
  if (!allowRaise) return "normal";
  switch (raise) {
    case PriorityRaise::Realtime:
      return "SCHED_FIFO";
    case PriorityRaise::Nice:
      return "lower nice";
    case PriorityRaise::None:
      break;
  }
  return "normal (raise refused)";
}

// One way of waiting: spinning, or sleeping with a learned or a fixed wake margin.
struct Waiter {
  std::string name;
  LinuxScheduler scheduler;

  Waiter(std::string waiterName, WaitMode mode, const WakeMargin::Limits& limits = {})
      : name(std::move(waiterName)), scheduler(mode, platform::linuxos::MonotonicClock(), limits) {}
  bool Sleeps() const { return scheduler.mode() == WaitMode::Sleep; }
};

WakeMargin::Limits FixedMargin(int us) {
  const int64_t ns = int64_t{us} * 1000;
  return {.floorNs = ns, .ceilingNs = ns, .headroomNs = 0, .initialNs = ns};
}

// Every round's run of one speed and one way of waiting, summed up as the
// median run, and the worst edge of all of them.
struct Cell {
  int wpm = 0;
  Waiter* waiter = nullptr;
  std::vector<Run> runs;

  template <typename Field>
  double MedianOf(Field field) const {
    std::vector<double> v;
    for (const Run& r : runs) v.push_back(field(r));
    return Median(v);
  }
  double MedianError() const {
    return MedianOf([](const Run& r) { return Percentile(r.errorsUs, 0.5); });
  }
  double P99() const {
    return MedianOf([](const Run& r) { return Percentile(r.errorsUs, 0.99); });
  }
  double Max() const {
    return MedianOf([](const Run& r) { return Percentile(r.errorsUs, 1.0); });
  }
  double Worst() const {
    double worst = 0;
    for (const Run& r : runs) worst = std::max(worst, Percentile(r.errorsUs, 1.0));
    return worst;
  }
  double LengthP99() const {
    return MedianOf([](const Run& r) { return Percentile(r.lengthErrorsUs, 0.99); });
  }
  double Cpu() const {
    return MedianOf([](const Run& r) { return r.cpuFraction; });
  }
  double Ratio() const {
    return MedianOf([](const Run& r) { return r.durationRatio; });
  }
  bool EdgesRight() const {
    return std::all_of(runs.begin(), runs.end(),
                       [](const Run& r) { return r.edges == r.idealEdges && r.edgesAlternate; });
  }
};

std::string Format(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

// The spinning and the learned sleeping cells, speed by speed.
std::string Tables(const std::vector<const Cell*>& cells, bool allowRaise) {
  std::ostringstream out;
  out << "| WPM | wait | priority | edges | median µs | p99 µs | max µs | worst µs | length p99 µs "
         "| lead µs | duration / ideal | CPU % | margin µs |\n";
  out << "|---:|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n";
  for (const Cell* cell : cells) {
    const Cell& c = *cell;
    const Run& first = c.runs.front();
    out << "| " << c.wpm << " | " << c.waiter->name << " | "
        << PriorityName(first.priority, allowRaise) << " | " << first.edges
        << (c.EdgesRight() ? "" : " (wrong)") << " | " << Format("%.1f", c.MedianError()) << " | "
        << Format("%.1f", c.P99()) << " | " << Format("%.1f", c.Max()) << " | "
        << Format("%.1f", c.Worst()) << " | " << Format("%.1f", c.LengthP99()) << " | "
        << Format("%+.1f", c.MedianOf([](const Run& r) { return r.leadUs; })) << " | "
        << Format("%.6f", c.Ratio()) << " | " << Format("%.1f", c.Cpu() * 100) << " | "
        << (c.waiter->Sleeps()
                ? Format("%.0f", c.MedianOf([](const Run& r) { return r.marginUs; }))
                : "–")
        << " |\n";
  }
  out << "\n| WPM | p99 sleep / spin | CPU sleep / spin |\n|---:|---:|---:|\n";
  for (size_t i = 0; i + 1 < cells.size(); i += 2) {
    const Cell& spin = *cells[i];
    const Cell& sleep = *cells[i + 1];
    out << "| " << spin.wpm << " | "
        << (spin.P99() > 0 ? Format("%.3g", sleep.P99() / spin.P99()) : "–") << " | "
        << (spin.Cpu() > 0 ? Format("%.3g", sleep.Cpu() / spin.Cpu()) : "–") << " |\n";
  }
  return out.str();
}

std::string Targets(const std::vector<const Cell*>& cells) {
  std::ostringstream out;
  out << "Sleep mode against its targets (p99 ≤ " << kTargetP99Us << " µs, max ≤ " << kTargetMaxUs
      << " µs, duration within " << kTargetDurationError * 100 << " %, CPU ≤ " << kTargetCpu * 100
      << " % of a core):\n\n";
  for (const Cell* cell : cells) {
    const Cell& c = *cell;
    if (!c.waiter->Sleeps()) continue;
    const auto mark = [](bool met) { return met ? "met" : "MISSED"; };
    out << "- " << c.wpm << " WPM: p99 " << mark(c.P99() <= kTargetP99Us) << ", max "
        << mark(c.Max() <= kTargetMaxUs) << ", duration "
        << mark(std::abs(c.Ratio() - 1) <= kTargetDurationError) << ", CPU "
        << mark(c.Cpu() <= kTargetCpu) << "\n";
  }
  return out.str();
}

// Each sleeping waiter's p99 and CPU at every speed, and the cheapest that
// keeps p99 within the target at all of them.
std::string MarginSweep(const std::vector<Cell>& cells, const std::vector<Waiter*>& sleepers,
                        const Waiter* learned) {
  const auto name = [learned](const Waiter* waiter) {
    return waiter == learned ? std::string("learned") : waiter->name;
  };
  std::ostringstream out;
  out << "| wake margin |";
  for (const int wpm : kSpeeds) out << " p99 µs @" << wpm << " | CPU % @" << wpm << " |";
  out << "\n|---|";
  for (size_t i = 0; i < std::size(kSpeeds); ++i) out << "---:|---:|";
  out << "\n";
  const Waiter* cheapest = nullptr;
  double cheapestCpu = 0;
  for (const Waiter* waiter : sleepers) {
    out << "| " << name(waiter) << " |";
    bool withinTarget = true;
    double cpu = 0;
    for (const Cell& c : cells) {
      if (c.waiter != waiter) continue;
      out << " " << Format("%.1f", c.P99()) << " | " << Format("%.1f", c.Cpu() * 100) << " |";
      withinTarget = withinTarget && c.P99() <= kTargetP99Us;
      cpu += c.Cpu();
    }
    out << "\n";
    if (withinTarget && (cheapest == nullptr || cpu < cheapestCpu)) {
      cheapest = waiter;
      cheapestCpu = cpu;
    }
  }
  out << "\nThe cheapest margin with p99 ≤ " << kTargetP99Us << " µs at every speed: "
      << (cheapest ? name(cheapest) : std::string("none")) << ".\n";
  return out.str();
}

// How much a spinning thread is kept from running: every gap between two
// clock readings over 50 us is time the processor was taken away, which no
// way of waiting can win back.
struct Noise {
  int gaps = 0;
  double maxUs = 0;
  double lostFraction = 0;

  std::string Describe() const {
    return std::to_string(gaps) + " gaps over 50 µs, longest " + Format("%.0f", maxUs) + " µs, " +
           Format("%.2f", lostFraction * 100) + " % of the time lost";
  }
};

Noise MeasureNoise() {
  constexpr int64_t kGapNs = 50'000;
  Noise noise;
  const int64_t start = MonotonicNs();
  int64_t last = start;
  int64_t lost = 0;
  for (int64_t now = start; now - start < 1'000'000'000; now = MonotonicNs()) {
    const int64_t gap = now - last;
    if (gap > kGapNs) {
      ++noise.gaps;
      lost += gap;
      noise.maxUs = std::max(noise.maxUs, static_cast<double>(gap) / 1e3);
    }
    last = now;
  }
  noise.lostFraction = static_cast<double>(lost) / 1e9;
  return noise;
}

std::string FirstLine(const char* path, const std::string& prefix) {
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(prefix, 0) == 0) {
      const size_t colon = line.find(':');
      return colon == std::string::npos ? line
                                        : line.substr(line.find_first_not_of(" \t", colon + 1));
    }
  }
  return "unknown";
}

std::string Machine() {
  utsname name{};
  uname(&name);
  std::ostringstream out;
  out << sysconf(_SC_NPROCESSORS_ONLN) << " CPUs (" << FirstLine("/proc/cpuinfo", "model name")
      << "), kernel " << name.release;
  return out.str();
}

std::string UtcNow() {
  const std::time_t now = std::time(nullptr);
  std::tm tm{};
  gmtime_r(&now, &tm);
  char buffer[32];
  std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M UTC", &tm);
  return buffer;
}

// Replaces this bench's section of a document others add their own to, or
// appends it; the file is made if there is none.
int Usage() {
  std::fprintf(stderr,
               "usage: bench_timing [--reps N] [--seconds S] [--priority normal|raise] "
               "[--write FILE]\n");
  return 2;
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  using namespace vantrel::bench;
  int reps = 3;
  double seconds = 4;
  bool allowRaise = false;
  std::string writePath;
  std::string command = argv[0];
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    command += " " + arg;
    if (i + 1 >= argc) return Usage();
    const std::string value = argv[++i];
    command += " " + value;
    if (arg == "--reps") {
      reps = std::atoi(value.c_str());
    } else if (arg == "--seconds") {
      seconds = std::atof(value.c_str());
    } else if (arg == "--priority" && (value == "normal" || value == "raise")) {
      allowRaise = value == "raise";
    } else if (arg == "--write") {
      writePath = value;
    } else {
      return Usage();
    }
  }
  if (reps < 1 || !(seconds > 0)) return Usage();

  for (const int wpm : kSpeeds) {
    if (!ScheduleAgreesWithTheKeyer(wpm, Paris(WordsFor(wpm, seconds)))) return 1;
  }

  Waiter spin("spin", WaitMode::Spin);
  Waiter sleep("sleep", WaitMode::Sleep);
  std::vector<std::unique_ptr<Waiter>> fixed;
  std::vector<Waiter*> sleepers;
  for (const int us : kFixedMarginsUs) {
    fixed.push_back(std::make_unique<Waiter>(std::to_string(us) + " µs", WaitMode::Sleep,
                                             FixedMargin(us)));
    sleepers.push_back(fixed.back().get());
  }
  sleepers.push_back(&sleep);
  const Noise before = MeasureNoise();
  std::vector<Cell> cells;
  for (const int wpm : kSpeeds) {
    for (Waiter* waiter : {&spin, &sleep}) cells.push_back({wpm, waiter, {}});
    for (const auto& waiter : fixed) cells.push_back({wpm, waiter.get(), {}});
  }
  for (int rep = 0; rep < reps; ++rep) {
    for (Cell& cell : cells) {
      const std::string text = Paris(WordsFor(cell.wpm, seconds));
      cell.runs.push_back(RunReal(cell.waiter->scheduler, cell.wpm, text, allowRaise));
      std::fprintf(stderr, "\rrepetition %d/%d: %d WPM %-8s", rep + 1, reps, cell.wpm,
                   cell.waiter->name.c_str());
    }
  }
  std::fprintf(stderr, "\n");
  const Noise after = MeasureNoise();

  std::ostringstream words;
  for (const int wpm : kSpeeds)
    words << (wpm == kSpeeds[0] ? "" : ", ") << WordsFor(wpm, seconds) << " at " << wpm;
  std::vector<const Cell*> learned;
  for (const Cell& cell : cells) {
    if (cell.waiter == &spin || cell.waiter == &sleep) learned.push_back(&cell);
  }
  const std::string tables = Tables(learned, allowRaise);
  const std::string targets = Targets(learned);
  const std::string sweep = MarginSweep(cells, sleepers, &sleep);
  const std::string noise =
      "Machine noise, a thread spinning on the clock for 1 s before and after: " +
      before.Describe() + "; " + after.Describe() + ".\n";
  {
    std::ostringstream section;
    section
        << "Made by `" << command << "` on " << UtcNow() << ", " << Machine() << ".\n\n"
        << "The keyer sends \"PARIS PARIS ...\" (words: " << words.str()
        << " WPM) through `SendLoop` on CLOCK_MONOTONIC, with dash 3, letter space 3, word "
           "space 7, PTT off, Slow Typing off and no sidetone; the line driver keys a "
           "recording parallel port that stamps every change of the key bit, with the "
           "in-memory trace muted. Spin and sleep alternate, speed by speed, in "
        << reps << (reps == 1 ? " round" : " rounds")
        << ". Edge errors are |edge − ideal| with the first key-down as zero, so a late "
           "edge moves every edge after it; length p99 holds each element and space against "
           "its own ideal length instead. Lead is the first key-down against the start of the "
           "transmission plus the "
        << kPttDelayMs
        << " ms PTT delay; duration runs from the first key-down to the last key-up; CPU is "
           "process time over wall time; margin is where the sleep mode's wake margin ended. "
           "Each figure is the median of the rounds' own, except worst, the largest edge error of "
           "all rounds.\n\n"
        << tables << "\n"
        << targets << "\n"
        << "The sleeping wait with fixed wake margins, beside the learned one (the \"sleep\" rows above), "
           "in the same rounds: edge p99 and CPU, medians of the rounds.\n\n"
        << sweep << "\n"
        << noise;
    Publish("element timing", "## Element timing\n\n" + section.str(), writePath);
  }
  return 0;
}
