#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/memory/event_queue.h"
#include "platform/memory/virtual_clock.h"

namespace vantrel::platform::memory {
namespace {

constexpr int64_t Ms(int64_t ms) { return ms * 1'000'000; }

class EventQueueTest : public ::testing::Test {
 protected:
  // Posts an event that logs its name and the time it ran at.
  void PostLogged(int64_t atMs, const std::string& name) {
    queue.Post(Ms(atMs), [this, name] { Log(name); });
  }
  void Log(const std::string& name) { log.push_back(name + "@" + std::to_string(clock.NowMs())); }

  VirtualClock clock;
  EventQueue queue{clock};
  std::vector<std::string> log;
};

TEST_F(EventQueueTest, PostedEventWaitsForThePumpAtOrAfterItsTime) {
  PostLogged(10, "a");
  clock.AdvanceTo(Ms(9));
  queue.DoEvents();
  EXPECT_TRUE(log.empty());
  clock.AdvanceTo(Ms(25));
  queue.DoEvents();
  queue.DoEvents();
  EXPECT_EQ(log, (std::vector<std::string>{"a@25.000000"}));
  EXPECT_FALSE(queue.HasPosted());
}

TEST_F(EventQueueTest, DueEventsRunInTimeOrderThenPostingOrder) {
  PostLogged(20, "late");
  PostLogged(5, "first");
  PostLogged(5, "second");
  PostLogged(30, "not yet");
  clock.AdvanceTo(Ms(20));
  queue.DoEvents();
  EXPECT_EQ(log, (std::vector<std::string>{"first@20.000000", "second@20.000000", "late@20.000000"}));
  EXPECT_EQ(queue.NextPostedNs(), Ms(30));
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
  EXPECT_EQ(log, (std::vector<std::string>{"outer begins", "inner", "outer ends"}));
}

TEST_F(EventQueueTest, RunPostedJumpsToEachEventAndStopsBeforeLaterOnes) {
  PostLogged(10, "a");
  PostLogged(20, "b");
  PostLogged(30, "c");
  queue.RunPosted(Ms(20));
  EXPECT_EQ(log, (std::vector<std::string>{"a@10.000000", "b@20.000000"}));
  EXPECT_EQ(clock.NowNs(), Ms(20));
  EXPECT_TRUE(queue.HasPosted());
  queue.RunPosted();
  EXPECT_EQ(log.back(), "c@30.000000");
}

TEST_F(EventQueueTest, EventPostedFromAHandlerRunsInTheSameIdleLoop) {
  queue.Post(Ms(10), [this] { PostLogged(15, "follow-up"); });
  queue.RunPosted();
  EXPECT_EQ(log, (std::vector<std::string>{"follow-up@15.000000"}));
}

class MemoryTimerTest : public EventQueueTest {
 protected:
  void SetUp() override {
    timer.OnTimer([this] { Log("tick"); });
  }
  MemoryTimer timer{queue};
};

TEST_F(MemoryTimerTest, ZeroIntervalNeverFiresEvenWhenEnabled) {
  timer.SetEnabled(true);
  PostLogged(1000, "end");
  queue.RunPosted();
  EXPECT_EQ(log, (std::vector<std::string>{"end@1000.000000"}));
  EXPECT_FALSE(timer.DueNs());
}

TEST_F(MemoryTimerTest, FiresOncePerPumpHoweverLongOverdue) {
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

TEST_F(MemoryTimerTest, IdleLoopFiresItEachPeriodUntilTheLastPostedEvent) {
  timer.SetInterval(100);
  timer.SetEnabled(true);
  PostLogged(350, "end");
  queue.RunPosted();
  EXPECT_EQ(log, (std::vector<std::string>{"tick@100.000000", "tick@200.000000", "tick@300.000000",
                                           "end@350.000000"}));
  EXPECT_EQ(clock.NowNs(), Ms(350));  // timers alone do not keep the loop going
}

TEST_F(MemoryTimerTest, ReEnablingRestartsItsPeriod) {
  timer.SetInterval(100);
  timer.SetEnabled(true);
  clock.AdvanceTo(Ms(50));
  timer.SetEnabled(false);
  timer.SetEnabled(true);
  PostLogged(180, "end");
  queue.RunPosted();
  EXPECT_EQ(log, (std::vector<std::string>{"tick@150.000000", "end@180.000000"}));
}

TEST_F(MemoryTimerTest, DisablingStopsIt) {
  timer.SetInterval(100);
  timer.SetEnabled(true);
  PostLogged(150, "stop");
  queue.Post(Ms(150), [this] { timer.SetEnabled(false); });
  PostLogged(1000, "end");
  queue.RunPosted();
  EXPECT_EQ(log, (std::vector<std::string>{"tick@100.000000", "stop@150.000000", "end@1000.000000"}));
}

TEST_F(MemoryTimerTest, HandlerThatPumpsDoesNotFireItselfAgain) {
  timer.SetInterval(10);
  timer.SetEnabled(true);
  timer.OnTimer([this] {
    Log("tick");
    queue.DoEvents();
  });
  clock.AdvanceTo(Ms(10));
  queue.DoEvents();
  EXPECT_EQ(log.size(), 1u);
}

TEST_F(EventQueueTest, DestroyedTimerIsForgotten) {
  auto timer = std::make_unique<MemoryTimer>(queue);
  timer->SetInterval(10);
  timer->SetEnabled(true);
  EXPECT_EQ(queue.NextDueNs(), Ms(10));
  timer.reset();
  EXPECT_FALSE(queue.NextDueNs());
  clock.AdvanceTo(Ms(20));
  queue.DoEvents();  // must not reach the destroyed timer
}

}  // namespace
}  // namespace vantrel::platform::memory
