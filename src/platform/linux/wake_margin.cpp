#include "platform/linux/wake_margin.h"

#include <algorithm>

namespace vantrel::platform::linuxos {

WakeMargin::WakeMargin(const Limits& limits)
    : limits_(limits), marginNs_(std::clamp(limits.initialNs, limits.floorNs, limits.ceilingNs)) {}

void WakeMargin::Observe(int64_t latenessNs) {
  // A clock that reads a wake-up as early still says nothing about lateness.
  const int64_t late = std::max<int64_t>(latenessNs, 0);
  const int64_t need = std::clamp(late + limits_.headroomNs, limits_.floorNs, limits_.ceilingNs);
  if (need >= marginNs_) {
    marginNs_ = need;
    return;
  }
  // Rounded up, so the margin does come all the way down to what it needs.
  const int64_t step = ((marginNs_ - need) + ((int64_t{1} << limits_.decayShift) - 1)) >>
                       limits_.decayShift;
  marginNs_ -= step;
}

}  // namespace vantrel::platform::linuxos
