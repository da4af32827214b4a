// The colour of every character of a rich text box, kept as runs of one
// colour: recolouring a stretch costs the runs it touches, not the length of
// the text, so marking a long transmission stays cheap.
#pragma once

#include <algorithm>
#include <iterator>
#include <vector>

#include "platform/controls.h"

namespace vantrel::platform {

class TextColours {
 public:
  struct Run {
    int length;
    Colour colour;
  };

  int Length() const {
    int total = 0;
    for (const Run& run : runs_) total += run.length;
    return total;
  }

  Colour At(int offset) const {
    for (const Run& run : runs_) {
      if (offset < run.length) return run.colour;
      offset -= run.length;
    }
    return 0;
  }

  const std::vector<Run>& Runs() const { return runs_; }

  // `removed` characters at `at` give way to `added` new ones in `colour`.
  void Replace(int at, int removed, int added, Colour colour) {
    const auto first = Split(at);
    const auto last = Split(at + removed);
    auto next = runs_.erase(runs_.begin() + first, runs_.begin() + last);
    if (added > 0) next = runs_.insert(next, Run{added, colour});
    const std::ptrdiff_t index = next - runs_.begin();
    Merge(index);
  }

  void Recolour(int from, int length, Colour colour) {
    length = std::min(length, Length() - from);
    if (from < 0 || length <= 0) return;
    const auto first = Split(from);
    const auto last = Split(from + length);
    runs_.erase(runs_.begin() + first + 1, runs_.begin() + last);
    runs_[first] = Run{length, colour};
    Merge(static_cast<std::ptrdiff_t>(first));
  }

 private:
  // Cuts the run that holds `offset` so that a run begins there; the index
  // of that run (or the end). An offset past the end is the end.
  std::ptrdiff_t Split(int offset) {
    auto run = runs_.begin();
    for (; run != runs_.end() && offset >= run->length; ++run) offset -= run->length;
    if (run == runs_.end() || offset == 0) return run - runs_.begin();
    const Run tail{run->length - offset, run->colour};
    run->length = offset;
    const auto inserted = runs_.insert(std::next(run), tail);
    return inserted - runs_.begin();
  }

  // Joins the run at `index` with neighbours of the same colour.
  void Merge(std::ptrdiff_t index) {
    if (index >= static_cast<std::ptrdiff_t>(runs_.size())) index = std::ssize(runs_) - 1;
    if (index < 0) return;
    if (index + 1 < std::ssize(runs_) && runs_[index + 1].colour == runs_[index].colour) {
      runs_[index].length += runs_[index + 1].length;
      runs_.erase(runs_.begin() + index + 1);
    }
    if (index > 0 && runs_[index - 1].colour == runs_[index].colour) {
      runs_[index - 1].length += runs_[index].length;
      runs_.erase(runs_.begin() + index);
    }
  }

  std::vector<Run> runs_;
};

}  // namespace vantrel::platform
