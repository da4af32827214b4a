#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "script.h"

namespace vantrel::sim {
namespace {

using ::testing::HasSubstr;

std::vector<ScriptEvent> Parse(const std::string& script) {
  std::istringstream in(script);
  return ParseScript(in);
}

// The message of the error that parsing `script` throws, or "" if it parses.
std::string ErrorOf(const std::string& script) {
  try {
    Parse(script);
  } catch (const ScriptError& error) {
    return error.what();
  }
  return "";
}

TEST(ParseScript, SkipsCommentsAndBlankLinesAndKeepsLineNumbers) {
  const auto events = Parse("# a CQ\n\n   \n  # indented\r\n10 send CQ\r\n20.25 menu mnuAbort\n");
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].atNs, 10'000'000);
  EXPECT_EQ(events[0].verb, "send");
  EXPECT_EQ(events[0].argument, "CQ");  // the CR of a CRLF line is not text
  EXPECT_EQ(events[0].line, 5);
  EXPECT_EQ(events[1].atNs, 20'250'000);
  EXPECT_EQ(events[1].argument, "mnuAbort");
  EXPECT_EQ(events[1].line, 6);
}

TEST(ParseScript, TextRunsFromTheOneSeparatorToTheEndOfTheLine) {
  const auto events = Parse("0 send   CQ  TEST # not a comment \n0 append \tB^T\n");
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].argument, "  CQ  TEST # not a comment ");
  EXPECT_EQ(events[1].argument, "\tB^T");
}

TEST(ParseScript, EqualTimesAreFineButTimesMustNotGoBackwards) {
  EXPECT_EQ(Parse("5 send E\n5 append T\n").size(), 2u);
  const std::string error = ErrorOf("0 send E\n# gap\n10 send T\n9.5 send A\n");
  EXPECT_THAT(error, HasSubstr("line 4"));
  EXPECT_THAT(error, HasSubstr("backwards"));
}

TEST(ParseScript, EscapesNameBytes) {
  const auto events = Parse(R"(0 send E\xBB\xabE\x41 a\b)");
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].argument, "E\xBB\xAB" "EA a\\b");
  EXPECT_EQ(static_cast<unsigned char>(events[0].argument[1]), 187);
}

TEST(ParseScript, BadLinesAreErrorsNamingTheirLine) {
  EXPECT_THAT(ErrorOf("0 send E\n1 send \\xZ1\n"), HasSubstr("line 2"));
  EXPECT_THAT(ErrorOf("0 send E\\x4"), HasSubstr("line 1"));
  EXPECT_THAT(ErrorOf("0 send E\\x"), HasSubstr("hexadecimal"));
  EXPECT_THAT(ErrorOf("0 press E"), HasSubstr("unknown verb 'press'"));
  EXPECT_THAT(ErrorOf("0 menu mnuabort"), HasSubstr("unknown menu entry 'mnuabort'"));  // the window's case
  EXPECT_THAT(ErrorOf("0 menu mnuNothing12"), HasSubstr("unknown menu entry"));           // a separator
  EXPECT_THAT(ErrorOf("0 control List1 36"), HasSubstr("from 0 to 35"));
  EXPECT_THAT(ErrorOf("0 menu mnuTX "), HasSubstr("unknown menu entry"));
  EXPECT_THAT(ErrorOf("0 send"), HasSubstr("needs an argument"));
  EXPECT_THAT(ErrorOf("0 send "), HasSubstr("needs an argument"));
  EXPECT_THAT(ErrorOf("0 menu\r\n"), HasSubstr("needs an argument"));
  EXPECT_THAT(ErrorOf("-5 send E"), HasSubstr("not a time"));
  EXPECT_THAT(ErrorOf("5ms send E"), HasSubstr("not a time"));
  EXPECT_THAT(ErrorOf("inf send E"), HasSubstr("not a time"));
}

TEST(ParseScript, WindowVerbsReadTheirArguments) {
  const auto events =
      Parse("0 key 113 4\n1 key 45\n2 focus NameField\n3 field SRXField 599\n4 field NameField\n"
            "5 resize 6000 1500\n6 minimize\n");
  ASSERT_EQ(events.size(), 7u);
  EXPECT_EQ(std::pair(events[0].first, events[0].second), std::pair(113, 4));
  EXPECT_EQ(std::pair(events[1].first, events[1].second), std::pair(45, 0));
  EXPECT_EQ(events[2].name, "NameField");
  EXPECT_EQ(std::pair(events[3].name, events[3].argument), std::pair(std::string("SRXField"), std::string("599")));
  EXPECT_EQ(events[4].argument, "");  // a field emptied
  EXPECT_EQ(std::pair(events[5].first, events[5].second), std::pair(6000, 1500));
}

TEST(ParseScript, WindowVerbsRefuseWhatTheyCannotDo) {
  EXPECT_THAT(ErrorOf("0 key F1\n"), HasSubstr("the key code must be a whole number from 1 to 255"));
  EXPECT_THAT(ErrorOf("0 key 112 8\n"), HasSubstr("the shift state"));
  EXPECT_THAT(ErrorOf("0 key 112 4 1\n"), HasSubstr("key takes CODE [SHIFT]"));
  EXPECT_THAT(ErrorOf("0 focus sBar\n"), HasSubstr("unknown focus 'sBar'"));
  EXPECT_THAT(ErrorOf("0 focus NameField now\n"), HasSubstr("a control's name only"));
  EXPECT_THAT(ErrorOf("0 field CWTextBox CQ\n"), HasSubstr("unknown field 'CWTextBox'"));
  EXPECT_THAT(ErrorOf("0 resize 6000\n"), HasSubstr("the height"));
  EXPECT_THAT(ErrorOf("0 minimize now\n"), HasSubstr("minimize takes no argument"));
  EXPECT_THAT(ErrorOf("0 slot LinkFoo W1AW\n"), HasSubstr("unknown slot 'LinkFoo'"));
  EXPECT_THAT(ErrorOf("0 control\n"), HasSubstr("control needs an argument"));
  EXPECT_THAT(ErrorOf("0 chip C4 4\n"), HasSubstr("two hexadecimal digits"));
  EXPECT_THAT(ErrorOf("0 speed 3\n"), HasSubstr("the mouse button"));
}

TEST(ParseScript, ChipBytesAreHexadecimal) {
  std::istringstream in("0 chip C4 43 0a\n");
  EXPECT_EQ(ParseScript(in)[0].argument, "\xC4\x43\x0A");
}

TEST(ParseScript, SlotNamesItsSlotByNumber) {
  const auto events = Parse("0 slot LinkRadio 2\n1 slot LinkReceivedRST\n");
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(std::pair(events[0].first, events[0].argument), std::pair(7, std::string("2")));
  EXPECT_EQ(std::pair(events[1].first, events[1].argument), std::pair(9, std::string("")));
}

TEST(ParseScript, MacroVerbsReadAnIndexOrASlotAndTheirText) {
  const auto events = Parse("0 button 36\n1 macro 2 cq  de $mycall$~\n2 macro 3\n"
                            "3 slot LinkReceivedRST 579\n4 wait\n");
  ASSERT_EQ(events.size(), 5u);
  EXPECT_EQ(events[0].first, 36);
  EXPECT_EQ(std::pair(events[1].first, events[1].argument), std::pair(2, std::string("cq  de $mycall$~")));
  EXPECT_EQ(std::pair(events[2].first, events[2].argument), std::pair(3, std::string()));
  EXPECT_EQ(std::pair(events[3].first, events[3].argument), std::pair(9, std::string("579")));
  EXPECT_THAT(ErrorOf("0 button 0\n"), HasSubstr("the button must be a whole number from 1 to 36"));
  EXPECT_THAT(ErrorOf("0 macro 37 x\n"), HasSubstr("the macro must be"));
  EXPECT_THAT(ErrorOf("0 slot LinkRST 5\n"), HasSubstr("unknown slot 'LinkRST'"));
  EXPECT_THAT(ErrorOf("0 wait 5\n"), HasSubstr("wait takes no argument"));
}

TEST(ParseScript, EditorVerbsReadWhatTheyActOn) {
  const auto events = Parse("0 editor 14\n1 editor-field CaptionText Chr$(65)\n"
                            "2 editor-type MacroText cq\\x0Dk\n3 editor-click Hbutton5\n"
                            "4 editor-mouse enter\n5 pick-color 255\n6 pick-font 10.5 128 bold-italic Courier New\n");
  ASSERT_EQ(events.size(), 7u);
  EXPECT_EQ(events[0].first, 14);
  EXPECT_EQ(std::pair(events[1].name, events[1].argument), std::pair(std::string("CaptionText"), std::string("Chr$(65)")));
  EXPECT_EQ(events[2].argument, "cq\rk");
  EXPECT_EQ(events[3].name, "Hbutton5");
  EXPECT_EQ(events[5].first, 255);
  EXPECT_EQ(events[6].size, 10.5);
  EXPECT_EQ(std::pair(events[6].first, events[6].name), std::pair(128, std::string("bold-italic")));
  EXPECT_EQ(events[6].argument, "Courier New");
  EXPECT_THAT(ErrorOf("0 editor 37\n"), HasSubstr("the macro must be"));
  EXPECT_THAT(ErrorOf("0 editor-field Label2 x\n"), HasSubstr("MacroText or CaptionText"));
  EXPECT_THAT(ErrorOf("0 editor-click OK\n"), HasSubstr("no button 'OK'"));
  EXPECT_THAT(ErrorOf("0 editor-mouse over\n"), HasSubstr("enter or leave"));
  EXPECT_THAT(ErrorOf("0 pick-color 16777216\n"), HasSubstr("the colour"));
  EXPECT_THAT(ErrorOf("0 pick-font 10 0 heavy Arial\n"), HasSubstr("the style"));
  EXPECT_THAT(ErrorOf("0 pick-font 10 0 bold\n"), HasSubstr("SIZE COLOUR STYLE NAME"));
}

TEST(ParseScript, DialogVerbsNameTheirControls) {
  const auto events = Parse("0 dialog port\n1 click ARButton2\n2 control Pitch 700\n3 control Text2\n"
                            "4 control Format 000\n");
  EXPECT_EQ(events[2].name, "Pitch");
  EXPECT_EQ(events[2].argument, "700");
  EXPECT_EQ(events[3].name, "Text2");  // emptied
  EXPECT_EQ(events[3].argument, "");
  EXPECT_EQ(events[4].name, "");  // the logger's command, whole
  EXPECT_EQ(events[4].argument, "Format 000");
  EXPECT_THAT(ErrorOf("0 dialog winkey3\n"), HasSubstr("unknown dialog"));
  EXPECT_THAT(ErrorOf("0 click lbl\n"), HasSubstr("no dialog button"));
  EXPECT_THAT(ErrorOf("0 control Pitch\n"), HasSubstr("needs a value"));
}

}  // namespace
}  // namespace vantrel::sim
