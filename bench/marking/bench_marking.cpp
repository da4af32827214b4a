// The cost of one step of the send loop's walk (NextCharacter and its
// marking) on the window's real rich text box, with a long text in it: the
// box as it is, which paints its colours over the text, beside the same
// characters coloured in the document's own formats, which makes Qt lay the
// whole paragraph out again. The repaint that follows a step is timed too.
//
//   bench_marking [--chars N] [--steps N] [--write docs/performance.md]
#include <QApplication>
#include <QTextEdit>
#include <QWindow>
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
#include "report.h"

namespace {

using namespace vantrel;
using Clock = std::chrono::steady_clock;
using bench::Stats;
using bench::Summarise;

// The keyer over the real window, its ports and clock in memory.
struct Rig {
  platform::qt::FrmVantrelWindow window;
  platform::memory::MemoryPlatform m;
  app::Vantrel keyer{platform::Platform{window.controls(), m.clock, window.pump(), m.profile,
                                        m.wallClock, m.language, m.parallel, m.cwControl,
                                        m.linkChannel, m.sound, m.link, m.macroSetup},
                     {"/bench", ""}};
  Rig() { m.trace.SetMuted(true); }
};

// One step's colouring kept in the document's formats, the way the box
// coloured before: the character just sent and the one going out.
void MarkInDocument(QTextEdit& edit, const sending::CwState& cw, int position) {
  const auto colour = [&](int from, platform::Colour c) {
    QTextCursor cursor(edit.document());
    cursor.setPosition(from);
    cursor.setPosition(from + 1, QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setForeground(platform::qt::ToQColor(c));
    cursor.mergeCharFormat(format);
  };
  edit.setUpdatesEnabled(false);
  colour(position - 2, cw.TransmittedColor);
  colour(position - 1, cw.TransmittingColor);
  edit.setUpdatesEnabled(true);
}

double Micros(Clock::time_point since) {
  return std::chrono::duration<double, std::micro>(Clock::now() - since).count();
}

std::string Row(int chars, const char* what, const Stats& s) {
  char row[200];
  std::snprintf(row, sizeof row, "| %d | %s | %.0f | %.0f | %.0f |\n", chars, what, s.median, s.p99,
                s.max);
  return row;
}

struct Times {
  std::vector<double> step, repaint, inDocument, inDocumentRepaint;
};

// `steps` steps near the end of a text of `chars` characters, each followed
// by the repaint it causes; then the same stretch coloured in the document.
Times Measure(int chars, int steps) {
  std::string text;
  while (static_cast<int>(text.size()) < chars) text += "CQ TEST DE W1AW W1AW K ";
  text.resize(chars);
  const int from = chars - steps - 1;

  Rig rig;
  rig.window.widget().show();
  while (!rig.window.widget().windowHandle()->isExposed()) QApplication::processEvents();
  QTextEdit& edit = rig.window.CWTextBox().edit();
  rig.window.CWTextBox().SetText(text);  // before start-up: nothing is sent
  Times times;
  // The walk up to the stretch is not timed: it only brings the marking there.
  for (int16_t position = 1; position < from + steps; ++position) {
    const auto start = Clock::now();
    int16_t at = position;
    rig.keyer.software.NextCharacter(at);
    if (position < from) continue;
    times.step.push_back(Micros(start));
    const auto painting = Clock::now();
    edit.viewport()->repaint();
    times.repaint.push_back(Micros(painting));
  }
  for (int position = from; position < from + steps; ++position) {
    const auto start = Clock::now();
    MarkInDocument(edit, rig.keyer.cw, position);
    times.inDocument.push_back(Micros(start));
    const auto painting = Clock::now();
    edit.viewport()->repaint();
    times.inDocumentRepaint.push_back(Micros(painting));
  }
  return times;
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

  // A tenth of the text beside the whole: a step must not cost more as the
  // transmission grows.
  std::ostringstream table;
  Stats last{}, lastRepaint{}, lastInDocument{};
  for (const int n : {chars / 10, chars}) {
    const Times t = Measure(n, steps);
    last = Summarise(t.step);
    lastRepaint = Summarise(t.repaint);
    lastInDocument = Summarise(t.inDocument);
    table << Row(n, "painted over the text: the step", last)
          << Row(n, "painted over the text: its repaint", lastRepaint)
          << Row(n, "in the document's formats: the colouring", lastInDocument)
          << Row(n, "in the document's formats: its repaint", Summarise(t.inDocumentRepaint));
  }
  char summary[200];
  std::snprintf(summary, sizeof summary,
                "At %d characters the median step in the document's formats costs %.0f times "
                "the painted one; a step and its repaint take %.1f %% of the shortest letter "
                "gap at p99.\n",
                chars, last.median > 0 ? lastInDocument.median / last.median : 0,
                (last.p99 + lastRepaint.p99) / 36000.0 * 100);

  std::ostringstream section;
  section << "## Marking the send position\n\n"
          << "Made by `./build/bench/marking/bench_marking --steps " << steps
          << " --write docs/performance.md`. The window's text box (a QTextEdit, offscreen) "
          << "holds a long text; " << steps
          << " steps are timed near its end, each one `NextCharacter` with its marking, then the "
          << "repaint of the box that follows it. The box keeps the colours itself and paints "
          << "them over the text; beside it, the same two characters a step coloured in the "
          << "document's own formats, the way the box coloured before, which makes Qt lay the "
          << "whole paragraph out again. The shortest letter gap, at 99 WPM, is 36 ms.\n\n"
          << "| characters | timed | median µs | p99 µs | max µs |\n|---:|---|---:|---:|---:|\n"
          << table.str() << "\n"
          << summary;
  bench::Publish("marking", section.str(), writePath);
  return 0;
}
