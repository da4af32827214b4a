// The whole keyer on the in-memory platform with the real link logic over
// the in-memory logger, whose block a test writes as the logger would.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/link_window.h"
#include "app/vantrel.h"
#include "loggerlink/logger_link.h"
#include "platform/memory/memory_platform.h"
#include "settings/settings_store.h"
#include "support/trace_queries.h"

namespace vantrel::testing {

class LinkFixture : public ::testing::Test {
 protected:
  using Settings = std::vector<std::pair<std::string, std::string>>;

  // The keyer on `channel`, or on the in-memory logger without one.
  explicit LinkFixture(platform::LinkChannel* channel = nullptr)
      : channel_(channel ? *channel : p.linkChannel) {
    link.Attach(keyer.link, window, keyer.winKey);
  }

  void Start(const Settings& settings = {}, bool loggerRunning = true) {
    p.linkChannel.loggerRunning = loggerRunning;
    keyer.store.LocateSettingsFile(kDirectory, "");
    for (const auto& [key, value] : settings) {
      keyer.store.WriteSetting(app::SectionOf(key), key, value);
    }
    keyer.mMacros.OnNotice([this](const std::string& notice) { p.trace.Emit(notice); });
    keyer.form.Form_Load();
    startup = p.trace.Events();
    p.trace.Clear();
  }

  void At(double ms, std::function<void()> event) {
    p.queue.Post(static_cast<int64_t>(ms * 1e6), std::move(event));
  }
  void Run() { p.queue.RunPosted(); }

  void LoggerWrites(loggerlink::LinkSlot slot, const std::string& text) {
    p.linkChannel.LoggerWrites(static_cast<int32_t>(slot), text);
  }
  std::string LoggerReads(loggerlink::LinkSlot slot) const {
    return p.linkChannel.SlotText(static_cast<int32_t>(slot));
  }

  std::vector<std::string> EventsStartingWith(const std::vector<std::string>& prefixes) const {
    return testing::EventsStartingWith(p.trace, prefixes);
  }
  std::vector<double> TimesOf(const std::string& event) const {
    return testing::TimesOf(p.trace, event);
  }

  platform::Platform LinkedPlatform() {
    platform::memory::MemoryPlatform& m = p;
    return platform::Platform{m.controls, m.clock,     m.queue,     m.profile, m.wallClock,
                              m.language, m.parallel,  m.cwControl, channel_,  m.sound,
                              link,       m.macroSetup};
  }

  static constexpr const char* kDirectory = "/vantrel";

  platform::memory::MemoryPlatform p;
  platform::LinkChannel& channel_;
  loggerlink::LoggerLinkLogic link{channel_, p.controls};
  app::Vantrel keyer{LinkedPlatform(), {kDirectory, ""}};
  // What start-up showed, before Start cleared the trace.
  std::vector<std::string> startup;
  int unloads = 0;
  std::vector<int16_t> windowStates;
  app::FormLinkWindow window{keyer.form, [this] { ++unloads; },
                             [this](int16_t state) { windowStates.push_back(state); }};
};

}  // namespace vantrel::testing
