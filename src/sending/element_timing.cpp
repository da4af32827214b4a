#include <cmath>
#include <limits>

#include "sending/morse_table.h"
#include "sending/software_keyer.h"
#include "vb/vb.h"

namespace vantrel::sending {
namespace {

// The final stretch of every wait spins: no events, no yielding to other work.
constexpr double kSpinMs = 20;
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

// Elapsed time is computed in this one way everywhere, so that a gap and the
// overhead taken off it agree to the last bit.
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

void SoftwareKeyer::TimedWait(double ms) {
  cw_.TimerStart = scheduler_.QueryPerformanceCounter();
  const int64_t start = cw_.TimerStart;
  if (ms > kSpinMs) pump_.DoEvents();
  const int64_t spinFrom = CounterAfter(start, ms - kSpinMs);
  const int64_t end = CounterAfter(start, ms);
  bool measured = false;
  double elapsed = 0;
  while ((!measured || elapsed < ms) && !cw_.StopSending()) {
    cw_.TimerStop = scheduler_.QueryPerformanceCounter();
    // From this wait's own start: a handler run by the pump may have taken
    // readings of its own in between.
    elapsed = ElapsedMs(start, cw_.TimerStop);
    measured = true;
    if (ms - elapsed > kSpinMs) {
      if (cw_.IsNT) {
        scheduler_.SwitchToThread(spinFrom);
      } else {
        pump_.DoEvents();
      }
    } else if (elapsed < ms) {
      scheduler_.IdleUntil(end);
    }
  }
}

void SoftwareKeyer::SidetoneOn() {
  if (cw_.SidetoneEnabled) n_.tone.ToneOn();
}

// Its own duration lengthens the gap after a key-up, so it is measured and
// taken off the next gap.
void SoftwareKeyer::SidetoneOff() {
  cw_.TimerStart = scheduler_.QueryPerformanceCounter();
  if (cw_.SidetoneEnabled) n_.tone.ToneOff();
  cw_.TimerStop = scheduler_.QueryPerformanceCounter();
  cw_.SidetoneOverhead = FixedMs::FromMs(ElapsedMs(cw_.TimerStart, cw_.TimerStop));
}

void SoftwareKeyer::SendCharacter() {
  const auto length = static_cast<int16_t>(cw_.CurrentCode.size());
  cw_.ElementIndex = 1;
  while (cw_.ElementIndex <= length && !cw_.StopSending()) {
    const char element = cw_.CurrentCode[cw_.ElementIndex - 1];
    if (element == '.' || element == '-') {
      SidetoneOn();
      n_.lines.KeyLineDown();
      TimedWait(element == '.' ? static_cast<double>(cw_.DotTime) : cw_.DotTime * cw_.DashLength);
      n_.lines.KeyLineUp();
      SidetoneOff();
    } else if (element == '_') {
      cw_.RemainingWait =
          FixedMs::FromMs((cw_.WordSpace - cw_.LetterSpace - cw_.LetterSpace) * cw_.DotTime) -
          cw_.SidetoneOverhead;
      if (cw_.RemainingWait.units > 0) TimedWait(cw_.RemainingWait);
    }
    cw_.RemainingWait = FixedMs::FromMs(cw_.DotTime) - cw_.SidetoneOverhead;
    if (cw_.ElementIndex < length && cw_.RemainingWait.units > 0) TimedWait(cw_.RemainingWait);
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
