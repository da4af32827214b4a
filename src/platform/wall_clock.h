#pragma once

namespace vantrel::platform {

// Local calendar time; months count from 1.
struct LocalTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

class WallClock {
 public:
  virtual ~WallClock() = default;
  virtual LocalTime Now() = 0;
};

}  // namespace vantrel::platform
