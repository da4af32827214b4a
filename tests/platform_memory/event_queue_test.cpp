#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/memory/event_queue.h"
#include "platform/memory/virtual_clock.h"

namespace vantrel::platform::memory {
namespace {

using Log = std::vector<std::string>;

constexpr int64_t Ms(int64_t ms) { return ms * 1'000'000; }

class EventQueueTest : public ::testing::Test {
 protected:
  EventQueueTest() { timer.OnTimer([this] { Note("tick"); }); }

  // Posts an event that notes its name and the time it ran at.
  void PostNoted(int64_t atMs, const std::string& name) {
    queue.Post(Ms(atMs), [this, name] { Note(name); });
  }
  void Note(const std::string& name) { log.push_back(name + "@" + std::to_string(clock.NowMs())); }

  VirtualClock clock;
  EventQueue queue{clock};
  MemoryTimer timer{queue};
  Log log;
};

TEST_F(EventQueueTest, DueEventsRunOnceAtTheNextPumpInTimeThenPostingOrder) {
  PostNoted(20, "late");
  PostNoted(5, "first");
  PostNoted(5, "second");
  PostNoted(30, "not yet");
  clock.AdvanceTo(Ms(20));
  queue.DoEvents();
  queue.DoEvents();
  EXPECT_EQ(log, (Log{"first@20.000000", "second@20.000000", "late@20.000000"}));
}

TEST_F(EventQueueTest, NestedPumpDoesNotRunTheSameEventTwice) {
  queue.Post(0, [this] {
    log.push_back("outer begins");
    queue.DoEvents();
    log.push_back("outer ends");
  });
  queue.Post(0, [this] { log.push_back("inner"); });
  queue.DoEvents();
  queue.DoEvents();
  EXPECT_EQ(log, (Log{"outer begins", "inner", "outer ends"}));
}

TEST_F(EventQueueTest, RunPostedJumpsToEachEventAndStopsBeforeTheLimit) {
  PostNoted(10, "a");
  queue.Post(Ms(20), [this] {
    Note("b");
    PostNoted(25, "posted by b");
  });
  PostNoted(30, "c");
  queue.RunPosted(Ms(20));
  EXPECT_EQ(log, (Log{"a@10.000000", "b@20.000000"}));
  EXPECT_EQ(clock.NowNs(), Ms(20));
  queue.RunPosted();
  EXPECT_EQ(log, (Log{"a@10.000000", "b@20.000000", "posted by b@25.000000", "c@30.000000"}));
}

// The handler pumps, as one may; bounded so that a fault fails instead of recursing.
TEST_F(EventQueueTest, TimerFiresOncePerPumpHoweverOverdueAndNotInItsOwnNestedPump) {
  timer.OnTimer([this] {
    Note("tick");
    if (log.size() < 3) queue.DoEvents();
  });
  timer.SetInterval(10);
  timer.SetEnabled(true);
  clock.AdvanceTo(Ms(100));
  queue.DoEvents();
  queue.DoEvents();
  EXPECT_EQ(log.size(), 1u);
  clock.AdvanceTo(Ms(109));
  queue.DoEvents();
  EXPECT_EQ(log.size(), 1u);  // the period counts from the firing
  clock.AdvanceTo(Ms(110));
  queue.DoEvents();
  EXPECT_EQ(log.size(), 2u);
}

TEST_F(EventQueueTest, IdleLoopFiresATimerEachPeriodFromWhenItWasEnabledUntilDisabled) {
  timer.SetInterval(100);
  queue.Post(Ms(150), [this] { timer.SetEnabled(true); });
  queue.Post(Ms(360), [this] { timer.SetEnabled(false); });
  queue.Post(Ms(500), [this] {
    Note("end");
    timer.SetEnabled(true);
  });
  queue.RunPosted();
  EXPECT_EQ(log, (Log{"tick@250.000000", "tick@350.000000", "end@500.000000"}));
  EXPECT_EQ(clock.NowNs(), Ms(500));  // timers alone do not keep the loop going
}

TEST_F(EventQueueTest, ATimerIsDueOnlyWithAnIntervalAndOnlyWhileItLives) {
  auto other = std::make_unique<MemoryTimer>(queue);
  other->SetEnabled(true);
  EXPECT_FALSE(queue.NextDueNs());  // an interval of 0 never fires
  other->SetInterval(10);
  EXPECT_EQ(queue.NextDueNs(), Ms(10));
  other.reset();
  EXPECT_FALSE(queue.NextDueNs());
  clock.AdvanceTo(Ms(20));
  queue.DoEvents();  // must not reach the destroyed timer
}

}  // namespace
}  // namespace vantrel::platform::memory
