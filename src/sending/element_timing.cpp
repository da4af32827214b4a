#include <algorithm>
#include <cmath>
#include <limits>

#include "sending/morse_table.h"
#include "sending/software_keyer.h"
#include "vb/vb.h"

namespace vantrel::sending {
namespace {

// The final stretch of every wait spins: no events, no yielding to other work.
constexpr double kSpinMs = 20;
// The lateness policy's two bounds, in dots.
constexpr double kCatchUpDots = 0.1;
constexpr double kReanchorDots = 1;
constexpr int32_t kShortestDot = 12;

}  // namespace

int32_t ComputeDotLength(int16_t wpm, double dashLength, double letterSpace, double wordSpace) {
  const double paris = 4 * dashLength + 19 + 4 * letterSpace + wordSpace;
  const double divisor = paris * wpm - wordSpace;
  if (divisor == 0) return kShortestDot;
  const double dot = vb::RoundHalfEven(60000.0 / divisor);
  // A negative speed or spacing gives a negative dot; it too ends at the floor.
  if (!(dot >= kShortestDot)) return kShortestDot;
  if (dot > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(dot);
}

SoftwareKeyer::SoftwareKeyer(CwState& cw, platform::MainWindowControls& controls,
                             platform::Scheduler& scheduler, platform::EventPump& pump,
                             SoftwareKeyerNeighbours neighbours)
    : cw_(cw), c_(controls), scheduler_(scheduler), pump_(pump), n_(neighbours) {}

// Elapsed time is computed in this one way everywhere, so that an edge and
// the wait that ends at it agree to the last bit.
double SoftwareKeyer::ElapsedMs(int64_t start, int64_t stop) const {
  return static_cast<double>(stop - start) / static_cast<double>(cw_.TimerFrequency) * 1000.0;
}

// The first counter reading at which ElapsedMs, computed the one way it is
// computed, reaches `ms`: a wait that idles to it never wakes a count early.
int64_t SoftwareKeyer::CounterAfter(int64_t start, double ms) const {
  const auto elapsedAt = [&](int64_t count) { return ElapsedMs(start, count); };
  int64_t count =
      start + static_cast<int64_t>(std::ceil(ms / 1000.0 * static_cast<double>(cw_.TimerFrequency)));
  while (elapsedAt(count) < ms) ++count;
  while (count > start && elapsedAt(count - 1) >= ms) --count;
  return count;
}

int64_t SoftwareKeyer::Counts(double ms) const {
  return static_cast<int64_t>(ms / 1000.0 * static_cast<double>(cw_.TimerFrequency));
}

void SoftwareKeyer::TimedWait(double ms) {
  const int64_t now = scheduler_.QueryPerformanceCounter();
  WaitUntil(now, CounterAfter(now, ms));
}

void SoftwareKeyer::StartTimeline() { edge_ = scheduler_.QueryPerformanceCounter(); }

// Lateness: a late wake, a slow line call or a handler run by the pump can
// start an interval after its ideal start. Up to a dot late, the interval
// still ends at its ideal edge, but loses no more than a tenth of a dot: what
// is left of the lateness carries into the next one, until caught up, so
// nothing drifts. More than a dot late, the timeline starts again at the late
// edge and the interval keeps its whole length.
void SoftwareKeyer::WaitForEdge(double ms) {
  const int64_t now = scheduler_.QueryPerformanceCounter();
  int64_t from = edge_;
  if (now - from > Counts(cw_.DotTime * kReanchorDots)) from = now;
  edge_ = CounterAfter(from, ms);
  const int64_t shortest = CounterAfter(now, ms - cw_.DotTime * kCatchUpDots);
  WaitUntil(now, std::max(edge_, shortest));
}

// Pumps events while more than the spin stretch is left, never within it.
void SoftwareKeyer::WaitUntil(int64_t now, int64_t end) {
  const int64_t spin = Counts(kSpinMs);
  if (end - now > spin) pump_.DoEvents();
  while (!cw_.StopSending()) {
    const int64_t reading = scheduler_.QueryPerformanceCounter();
    if (reading >= end) break;
    if (end - reading > spin) {
      if (cw_.IsNT) {
        scheduler_.SwitchToThread(end - spin);
      } else {
        pump_.DoEvents();
      }
    } else {
      scheduler_.IdleUntil(end);
    }
  }
}

void SoftwareKeyer::SidetoneOn() {
  if (cw_.SidetoneEnabled) n_.tone.ToneOn();
}

void SoftwareKeyer::SidetoneOff() {
  if (cw_.SidetoneEnabled) n_.tone.ToneOff();
}

void SoftwareKeyer::SendCharacter() {
  const auto length = static_cast<int16_t>(cw_.CurrentCode.size());
  cw_.ElementIndex = 1;
  while (cw_.ElementIndex <= length && !cw_.StopSending()) {
    const char element = cw_.CurrentCode[cw_.ElementIndex - 1];
    if (element == '.' || element == '-') {
      SidetoneOn();
      n_.lines.KeyLineDown();
      WaitForEdge(element == '.' ? static_cast<double>(cw_.DotTime) : cw_.DotTime * cw_.DashLength);
      n_.lines.KeyLineUp();
      SidetoneOff();
    } else if (element == '_') {
      const FixedMs wordRest =
          FixedMs::FromMs((cw_.WordSpace - cw_.LetterSpace - cw_.LetterSpace) * cw_.DotTime);
      if (wordRest.units > 0) WaitForEdge(wordRest.Ms());
    }
    if (cw_.ElementIndex < length && cw_.DotTime > 0) WaitForEdge(static_cast<double>(cw_.DotTime));
    ++cw_.ElementIndex;
  }
}

void SoftwareKeyer::BoostPriority() {
  if (cw_.IsNT) scheduler_.SetPriorityClass(platform::kRealtimePriorityClass);
  scheduler_.SetThreadPriority(platform::kThreadPriorityTimeCritical);
}

void SoftwareKeyer::RestorePriority() {
  if (cw_.IsNT) scheduler_.SetPriorityClass(platform::kNormalPriorityClass);
  scheduler_.SetThreadPriority(platform::kThreadPriorityNormal);
}

}  // namespace vantrel::sending
