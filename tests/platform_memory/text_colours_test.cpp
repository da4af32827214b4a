#include "platform/text_colours.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace vantrel::platform {
namespace {

// The same edits on one colour per character, the plain way.
struct PerCharacter {
  std::vector<Colour> colours;
  void Replace(int at, int removed, int added, Colour colour) {
    colours.erase(colours.begin() + at, colours.begin() + at + removed);
    colours.insert(colours.begin() + at, added, colour);
  }
  void Recolour(int from, int length, Colour colour) {
    std::fill(colours.begin() + from, colours.begin() + from + length, colour);
  }
};

TEST(TextColours, FollowsEveryCharacterThroughMixedEdits) {
  std::mt19937 random(7);
  TextColours runs;
  PerCharacter model;
  for (int step = 0; step < 5000; ++step) {
    const int length = static_cast<int>(model.colours.size());
    const auto pick = [&](int top) { return std::uniform_int_distribution<int>(0, top)(random); };
    const int at = pick(length);
    const int span = pick(length - at);
    const Colour colour = pick(3);
    if (pick(1) == 0) {
      const int added = pick(length < 200 ? 6 : 1);
      runs.Replace(at, span, added, colour);
      model.Replace(at, span, added, colour);
    } else {
      runs.Recolour(at, span, colour);
      model.Recolour(at, span, colour);
    }
    ASSERT_EQ(runs.Length(), static_cast<int>(model.colours.size())) << "step " << step;
    for (int i = 0; i < runs.Length(); ++i) ASSERT_EQ(runs.At(i), model.colours[i]) << i;
    for (size_t r = 1; r < runs.Runs().size(); ++r) {
      ASSERT_NE(runs.Runs()[r - 1].colour, runs.Runs()[r].colour) << "runs left unjoined";
    }
  }
}

// The send loop's marking walks a long text: the runs must not pile up.
TEST(TextColours, MarkingALongTextKeepsFewRuns) {
  constexpr Colour kUnsent = 0, kSent = 1, kSending = 2;
  TextColours runs;
  runs.Replace(0, 0, 30000, kUnsent);
  for (int position = 1; position < 30000; ++position) {
    runs.Recolour(position - 1, 1, kSent);
    runs.Recolour(position, 1, kSending);
  }
  ASSERT_EQ(runs.Runs().size(), 2u);
  EXPECT_EQ(runs.Runs()[0].length, 29999);
  EXPECT_EQ(runs.At(29999), kSending);
}

TEST(TextColours, RecolouringPastTheEndStopsAtIt) {
  TextColours runs;
  runs.Replace(0, 0, 3, 0);
  runs.Recolour(2, 10, 5);
  runs.Recolour(3, 1, 6);
  EXPECT_EQ(runs.Length(), 3);
  EXPECT_EQ(runs.At(2), 5);
}

}  // namespace
}  // namespace vantrel::platform
