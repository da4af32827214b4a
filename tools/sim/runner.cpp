#include "runner.h"

#include "app/vantrel.h"
#include "platform/memory/memory_platform.h"
#include "settings/settings_store.h"

namespace vantrel::sim {
namespace {

void Apply(app::Vantrel& keyer, platform::memory::MemoryPlatform& p, const ScriptEvent& event) {
  sending::SendingCore& core = keyer.core;
  if (event.verb == "send") {
    p.CWTextBox.SetText(event.argument);
  } else if (event.verb == "append") {
    // As typing does: at the end, in the colour of unsent text.
    p.CWTextBox.SetSelStart(static_cast<int>(p.CWTextBox.Text().size()));
    p.CWTextBox.SetSelColor(keyer.cw.TextForeColor);
    p.CWTextBox.SetSelText(event.argument);
  } else if (event.argument == "mnuTX") {
    core.mnuTX_Click();
  } else if (event.argument == "mnuabort") {
    core.mnuabort_click();
  } else if (event.argument == "mnuTune") {
    core.mnuTune_Click();
  } else if (event.argument == "mnuVOX") {
    core.mnuVOX_Click();
  } else if (event.argument == "mnuMOX") {
    core.mnuMOX_Click();
  }
}

}  // namespace

void Run(const RunOptions& options, const std::vector<ScriptEvent>& events,
         const std::function<void(const std::string&)>& out) {
  platform::memory::MemoryPlatform p;
  app::Vantrel keyer(p.platform());
  p.trace.SetSink([&](const std::string& line) {
    if (!options.untilNs || p.clock.NowNs() <= *options.untilNs) out(line);
  });

  for (const auto& [key, value] : options.settings) {
    keyer.store.WriteSetting(settings::SectionOf(key), key, value);
  }
  keyer.core.OnMark([&p](int16_t position) { p.trace.Emit("mark " + std::to_string(position)); });
  keyer.form.Form_Load(options.languageId);

  for (const ScriptEvent& event : events) {
    p.queue.Post(event.atNs, [&keyer, &p, &event] { Apply(keyer, p, event); });
  }
  p.queue.RunPosted(options.untilNs);
}

}  // namespace vantrel::sim
