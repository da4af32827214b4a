#include "platform/linux/wake_margin.h"

#include <algorithm>

namespace vantrel::platform::linuxos {

WakeMargin::WakeMargin(const Limits& limits) : limits_(limits) {
  worst_[0] = std::max<int64_t>(limits_.initialNs - limits_.headroomNs, 0);
  Update();
}

void WakeMargin::Observe(int64_t latenessNs) {
  if (inBucket_ == kPerBucket) {
    bucket_ = (bucket_ + 1) % kBuckets;
    worst_[bucket_] = 0;
    inBucket_ = 0;
  }
  ++inBucket_;
  // A clock that reads a wake-up as early still says it was not late.
  worst_[bucket_] = std::max({worst_[bucket_], latenessNs, int64_t{0}});
  Update();
}

void WakeMargin::Update() {
  const int64_t worst = *std::max_element(worst_.begin(), worst_.end());
  marginNs_ = std::clamp(worst + limits_.headroomNs, limits_.floorNs, limits_.ceilingNs);
}

}  // namespace vantrel::platform::linuxos
