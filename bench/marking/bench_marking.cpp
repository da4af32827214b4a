// The cost of one step of the send loop's walk (NextCharacter and its
// marking) on the window's real rich text box, with a long text in it: the
// marking as it is, which colours what changed since the last step, beside
// colouring the whole history again at every step.
//
//   bench_marking [--chars N] [--steps N] [--write docs/performance.md]
#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/vantrel.h"
#include "platform/memory/memory_platform.h"
#include "platform/qt/frm_vantrel_window.h"

namespace {

using namespace vantrel;
using Clock = std::chrono::steady_clock;

constexpr const char* kBegin = "<!-- marking: begin -->";
constexpr const char* kEnd = "<!-- marking: end -->";

struct Stats {
  double median = 0, p99 = 0, max = 0;
};

Stats Summarise(std::vector<double> us) {
  std::sort(us.begin(), us.end());
  const auto at = [&](double q) { return us[static_cast<size_t>(q * (us.size() - 1))]; };
  return {at(0.5), at(0.99), us.back()};
}

// The keyer over the real window, its ports and clock in memory.
struct Rig {
  platform::qt::FrmVantrelWindow window;
  platform::memory::MemoryPlatform m;
  platform::memory::RecordingMacroLoop macroLoop{m.trace, window.CWTextBox()};
  app::Vantrel keyer{platform::Platform{window.controls(), m.clock, window.pump(), m.profile,
                                        m.wallClock, m.language, m.parallel, m.cwControl,
                                        m.linkChannel, m.tone, m.link, m.winkey, macroLoop,
                                        m.calibration},
                     {"/bench", ""}};
  Rig() { m.trace.SetMuted(true); }
};

// What marking did before: the whole history coloured as sent at every step.
void MarkWholeHistory(platform::TextBox& box, const sending::CwState& cw, int position) {
  box.SetRedraw(false);
  box.SetSelStart(0);
  box.SetSelLength(position - 1);
  box.SetSelColor(cw.TransmittedColor);
  box.SetSelStart(position - 1);
  box.SetSelLength(1);
  box.SetSelColor(cw.TransmittingColor);
  box.SetSelStart(static_cast<int>(box.Text().size()));
  box.SetRedraw(true);
  box.Refresh();
}

std::string Row(const char* way, const Stats& s) {
  char row[160];
  std::snprintf(row, sizeof row, "| %s | %.0f | %.0f | %.0f |", way, s.median, s.p99, s.max);
  return row;
}

}  // namespace

int main(int argc, char** argv) {
  int chars = 30000, steps = 200;
  std::string writePath;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--chars" && i + 1 < argc) chars = std::atoi(argv[++i]);
    else if (arg == "--steps" && i + 1 < argc) steps = std::atoi(argv[++i]);
    else if (arg == "--write" && i + 1 < argc) writePath = argv[++i];
    else {
      std::fprintf(stderr, "usage: bench_marking [--chars N] [--steps N] [--write FILE]\n");
      return 2;
    }
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);

  std::string text;
  while (static_cast<int>(text.size()) < chars) text += "CQ TEST DE W1AW W1AW K ";
  text.resize(chars);
  const int from = chars - steps - 1;

  // As it is: walk up to the stretch measured, then time each step there.
  Rig rig;
  rig.window.widget().show();
  rig.window.CWTextBox().SetText(text);  // before start-up: nothing is sent
  std::vector<double> now;
  for (int16_t position = 1; position < from + steps; ++position) {
    const auto start = Clock::now();
    int16_t at = position;
    rig.keyer.core.NextCharacter(at);
    if (position >= from) now.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
  }

  // The whole history each time, over the same stretch of the same text.
  std::vector<double> before;
  for (int position = from; position < from + steps; ++position) {
    const auto start = Clock::now();
    MarkWholeHistory(rig.window.CWTextBox(), rig.keyer.cw, position);
    before.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
  }

  const Stats a = Summarise(now), b = Summarise(before);
  std::ostringstream section;
  section << kBegin << "\n## Marking the send position\n\n"
          << "Made by `./build/bench/marking/bench_marking --steps " << steps
          << " --write docs/performance.md`: "
          << chars << " characters in the window's text box (a QTextEdit, offscreen), " << steps
          << " steps timed near the end of the text, each one `NextCharacter` with its marking. "
          << "Beside it the same steps colouring the whole history as sent every time, the "
          << "way marking went before. The shortest letter gap, at 99 WPM, is 36 ms.\n\n"
          << "| marking | median µs | p99 µs | max µs |\n|---|---:|---:|---:|\n"
          << Row("what changed since the last step", a) << "\n"
          << Row("the whole history", b) << "\n\n"
          << "Median, whole history over what changed: " << (a.median > 0 ? b.median / a.median : 0)
          << "; p99 of a step against the shortest letter gap: " << a.p99 / 36000.0 * 100 << " %.\n"
          << kEnd;
  std::printf("%s\n", section.str().c_str());
  if (!writePath.empty()) {
    std::ifstream in(writePath);
    std::stringstream old;
    old << in.rdbuf();
    std::string doc = old.str();
    const auto b0 = doc.find(kBegin), e0 = doc.find(kEnd);
    if (b0 != std::string::npos && e0 != std::string::npos) {
      doc.replace(b0, e0 + std::string(kEnd).size() - b0, section.str());
    } else {
      doc += "\n" + section.str() + "\n";
    }
    std::ofstream(writePath) << doc;
  }
  return 0;
}
