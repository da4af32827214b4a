// What the box shares with the one on screen is held to in
// tests/platform_qt/text_box_contract_test.cpp; here, its trace.
#include "platform/memory/memory_text_box.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/memory/trace.h"

namespace vantrel::platform::memory {
namespace {

TEST(MemoryTextBoxTest, AChangeOfTheTextIsTracedQuotedAndOnlyOnce) {
  Trace trace{[] { return 0.0; }};
  MemoryTextBox box{trace, 0, "NameField", "name"};
  box.SetText("say \"hi\"\r");
  box.SetText("say \"hi\"\r");
  box.SetSelStart(0);
  box.SetSelLength(1);
  box.SetSelColor(255);  // a colour is no change
  box.SetSelText("s");
  box.SetFocus();
  EXPECT_EQ(trace.Events(), (std::vector<std::string>{R"(name "say \"hi\"\x0D")", "focus NameField"}));
}

}  // namespace
}  // namespace vantrel::platform::memory
