// The whole keyer on the in-memory platform, for tests that follow a
// transmission in virtual time through its trace.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/vantrel.h"
#include "platform/memory/memory_platform.h"
#include "settings/settings_store.h"
#include "support/scripted_chip.h"
#include "support/trace_queries.h"

namespace vantrel::testing {

class KeyerFixture : public ::testing::Test {
 protected:
  using Settings = std::vector<std::pair<std::string, std::string>>;

  // Writes the settings into the file, then starts the keyer as the program does.
  void Start(const Settings& settings = {}, int16_t languageId = 1033) {
    keyer.store.LocateSettingsFile(kDirectory, "");
    for (const auto& [key, value] : settings) {
      keyer.store.WriteSetting(app::SectionOf(key), key, value);
    }
    p.language.languageId = languageId;
    keyer.mMacros.OnNotice([this](const std::string& notice) { p.trace.Emit(notice); });
    keyer.winKey.OnWrite([this](const std::string& bytes) {
      p.trace.Emit("winkey " + platform::memory::Trace::Hex(bytes));
    });
    keyer.form.Form_Load();
    p.trace.Clear();
  }

  // Starts on a chip at port 3 that answers host open with `reply`.
  void StartWithChip(const std::string& keyer, const std::string& reply, Settings settings = {}) {
    chip.reply = reply;
    p.cwControl.device = &chip;
    settings.insert(settings.begin(), {{"Keyer to Use", keyer}, {"WinKey Port", "3"}});
    Start(settings);
  }

  // The chip as the keyer in use, without the menu's discovery: for what the
  // chip is told.
  void UseChip(winkey::ChipModel model) {
    keyer.winKey.SetModel(model);
    keyer.control.Use(keyer.winKey);
  }

  // A value as the settings file holds it now.
  std::string StoredSetting(const std::string& section, const std::string& key) {
    return p.files.GetPrivateProfileString(section, key, "", 2000, keyer.store.SettingsFilePath);
  }

  // Runs `event` at the first event pump at or after `ms`.
  void At(double ms, std::function<void()> event) {
    p.queue.Post(static_cast<int64_t>(ms * 1e6), std::move(event));
  }
  void Run() { p.queue.RunPosted(); }

  // Types text at the end of the box, as the keyboard does.
  void Type(const std::string& text) {
    p.CWTextBox.SetSelStart(static_cast<int>(p.CWTextBox.Text().size()));
    p.CWTextBox.SetSelColor(keyer.cw.TextForeColor);
    p.CWTextBox.SetSelText(text);
  }

  std::vector<double> TimesOf(const std::string& event) const {
    return testing::TimesOf(p.trace, event);
  }

  std::vector<std::string> EventsStartingWith(const std::vector<std::string>& prefixes) const {
    return testing::EventsStartingWith(p.trace, prefixes);
  }

  static constexpr const char* kDirectory = "/vantrel";

  platform::memory::MemoryPlatform p;
  ScriptedChip chip{""};
  app::Vantrel keyer{p.platform(), {kDirectory, ""}};
  sending::CwState& cw = keyer.cw;
  sending::TransmitControl& control = keyer.control;
  sending::SoftwareKeyer& software = keyer.software;
  sending::SendText& text = keyer.text;
};

}  // namespace vantrel::testing
