// Time in ten-thousandths of a millisecond, held in a 64-bit integer so that
// gaps and overheads add and subtract exactly.
#pragma once

#include <compare>
#include <cstdint>

#include "vb/vb.h"

namespace vantrel::sending {

struct FixedMs {
  int64_t units = 0;

  static constexpr int64_t kUnitsPerMs = 10000;

  // Rounds to the nearest unit, ties to even, as every conversion to this type does.
  static FixedMs FromMs(double ms) {
    return FixedMs{static_cast<int64_t>(vb::RoundHalfEven(ms * kUnitsPerMs))};
  }
  double Ms() const { return static_cast<double>(units) / kUnitsPerMs; }

  friend FixedMs operator-(FixedMs a, FixedMs b) { return FixedMs{a.units - b.units}; }
  friend auto operator<=>(FixedMs, FixedMs) = default;
};

}  // namespace vantrel::sending
